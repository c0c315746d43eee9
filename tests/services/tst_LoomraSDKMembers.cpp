// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "services/ConfigManager.h"
#include "services/LoomraSDK.h"
#include "support/MessageLog.h"
#include "support/TestSetup.h"

#include <QMetaProperty>
#include <QTest>

#include <initializer_list>

namespace
{

QStringList sorted(std::initializer_list<const char *> lines)
{
    QStringList list;
    for (const char *line : lines) {
        list.append(QString::fromLatin1(line));
    }
    list.sort();
    return list;
}

//! "name(Type,Type) argument,argument" of the class's own methods for which the condition holds.
template<typename Condition>
QStringList methodsWhere(Condition condition)
{
    const QMetaObject &type = LoomraSDK::staticMetaObject;
    QStringList methods;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        if (condition(method)) {
            methods.append(
                QString::fromLatin1(method.methodSignature() + ' ' + method.parameterNames().join(',')).trimmed());
        }
    }
    methods.sort();
    return methods;
}

} // namespace

//! What loomraSDK offers to QML, and what it holds before it is initialised.
class tst_LoomraSDKMembers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void properties();
    void operations();
    void theirSignals();
    void firstValues();
    void remindersAreThoseOfTheSettings();
    void executorPathFromTheEnvironment_data();
    void executorPathFromTheEnvironment();
};

void tst_LoomraSDKMembers::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_LoomraSDKMembers::properties()
{
    const QMetaObject &type = LoomraSDK::staticMetaObject;
    QStringList properties;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        QVERIFY(property.isReadable());
        properties.append(QStringLiteral("%1 %2 %3%4")
                              .arg(QString::fromLatin1(property.typeName()), QString::fromLatin1(property.name()),
                                   QString::fromLatin1(property.notifySignal().methodSignature()),
                                   property.isWritable() ? QStringLiteral(" writable") : QString()));
    }
    properties.sort();
    QCOMPARE(properties,
             sorted({
                 "bool connected connectedChanged()",
                 "bool ready readyChanged()",
                 "QString currentSessionId currentSessionIdChanged()",
                 "QString currentModel currentModelChanged() writable",
                 "QString currentAgent currentAgentChanged() writable",
                 "bool executorPathEnabled executorPathEnabledChanged() writable",
                 "bool workspaceIntelAvailable workspaceIntelAvailableChanged()",
                 "bool aiRuntimeAvailable aiRuntimeAvailableChanged()",
                 "bool workspaceSuggestionReminderEnabled workspaceSuggestionReminderEnabledChanged() writable",
                 "int workspaceSuggestionReminderMinutes workspaceSuggestionReminderMinutesChanged() writable",
             }));
}

void tst_LoomraSDKMembers::operations()
{
    const QStringList operations = methodsWhere([](const QMetaMethod &method) {
        return method.methodType() != QMetaMethod::Signal && method.access() == QMetaMethod::Public;
    });
    // An argument with a default may be left out, which makes an entry without it.
    QCOMPARE(operations,
             sorted({
                 "initialize()",
                 "reconnectBridge()",
                 "eventLogDir()",

                 "sendChatMessage(QString) message",
                 "sendChatMessage(QString,QJsonObject) message,context",
                 "generateCode(QString) prompt",
                 "generateCode(QString,QString) prompt,language",
                 "generateCode(QString,QString,QJsonObject) prompt,language,context",
                 "editCode(QString,QString) code,instruction",
                 "editCode(QString,QString,QJsonObject) code,instruction,context",
                 "getFiles()",
                 "getFiles(QString) path",
                 "readFile(QString) path",
                 "writeFile(QString,QString) path,content",
                 "listSessions()",
                 "createSession()",
                 "switchSession(QString) sessionId",
                 "deleteSession(QString) sessionId",
                 "renameSession(QString,QString) sessionId,newName",
                 "loadMessages(QString) sessionId",
                 "listAgents()",
                 "listModels()",
                 "checkFreeProviders()",
                 "getTokenStatus()",
                 "getTokenStatus(QString) provider",
                 "setProviderToken(QString,QString) provider,token",
                 "setProviderToken(QString,QString,QString) provider,token,tokenKey",

                 "getPlan(QString) message",
                 "executePlan(QVariantList) steps",
                 "auditListRecent()",
                 "auditListRecent(int) limit",
                 "auditRevert(QString) actionId",
                 "automationList()",
                 "automationCreate(QJsonObject,QJsonArray) trigger,steps",
                 "automationCreate(QJsonObject,QJsonArray,QJsonObject) trigger,steps,condition",
                 "automationUpdate(QString,QJsonObject) id,params",
                 "automationDelete(QString) id",
                 "automationPause(QString,bool) id,pause",
                 "reminderList()",
                 "reminderCancel(QString) id",
                 "getDesktopState()",
                 "emergencyStop()",
                 "emergencyResume()",
                 "getDeniedPermissions()",
                 "getSystemReport()",
                 "getQuickStatus()",
                 "refreshPowerProfile()",
                 "getAppLogSummary()",
                 "getKdeLogs()",
                 "getAppMetrics()",
                 "getServiceHealth()",
                 "getSystemDashboard()",

                 "refreshWorkspaceIntelPanel()",
                 "setWorkspaceIntelObservationEnabled(bool) enabled",
                 "refreshWorkspaceTemplates()",
                 "setWorkspaceTemplateEnabled(QString,bool) slug,enabled",
                 "setWorkspaceTemplateEnabled(QString,bool,int) slug,enabled,workspaceId",
                 "prepareWorkspaceTemplate(int) workspaceId",
                 "prepareWorkspaceTemplate(int,QString) workspaceId,message",
                 "refreshAiRuntimePanel()",
                 "setAiRuntimeEnabled(bool) enabled",
                 "setAiRuntimeExecutionGating(QString) mode",
                 "refreshRuntimeHealth()",
                 "refreshRuntimeJobs()",
                 "checkWorkspaceSuggestionNotify()",
                 "clearAiRuntimeDismissedSuggestions()",
                 "applyWorkspaceSuggestionAction(QString,QString) actionId,clientNotificationJson",
             }));

    // All are one-way, but for the one that only looks at the disk.
    const QStringList answering = methodsWhere([](const QMetaMethod &method) {
        return method.methodType() != QMetaMethod::Signal && method.access() == QMetaMethod::Public
            && method.returnType() != QMetaType::Void;
    });
    QCOMPARE(answering, sorted({"eventLogDir()"}));
    const int answer = LoomraSDK::staticMetaObject.indexOfMethod("eventLogDir()");
    QCOMPARE(LoomraSDK::staticMetaObject.method(answer).returnType(), int(QMetaType::QString));
}

void tst_LoomraSDKMembers::theirSignals()
{
    const QStringList signalNames =
        methodsWhere([](const QMetaMethod &method) { return method.methodType() == QMetaMethod::Signal; });
    // QML's handlers know the arguments by these names.
    QCOMPARE(signalNames,
             sorted({
                 "error(QString) error",
                 "connectedChanged()",
                 "readyChanged()",
                 "currentSessionIdChanged()",
                 "currentModelChanged()",
                 "currentAgentChanged()",
                 "executorPathEnabledChanged()",

                 "chatResponse(QString) response",
                 "chatStreamChunk(QString) chunk",
                 "codeGenerated(QString) code",
                 "codeEdited(QString) code",
                 "filesReceived(QStringList) files",
                 "fileContentReceived(QString,QString) path,content",
                 "fileWritten(QString) path",
                 "sessionsListed(QJsonArray) sessions",
                 "sessionCreated(QString) sessionId",
                 "sessionSwitched(QString) sessionId",
                 "sessionDeleted(QString) sessionId",
                 "sessionRenamed(QString,QString) sessionId,newName",
                 "modelsListed(QJsonArray) models",
                 "freeProvidersChecked(QJsonObject) result",
                 "tokenStatusReceived(QJsonObject) status",
                 "providerTokenUpdated(QJsonObject) status",
                 "messagesLoaded(QJsonArray) messages",
                 "agentsListed(QJsonArray) agents",

                 "planReceived(QJsonObject) payload",
                 "planExecuted(QJsonObject) payload",
                 "auditRecentListed(QJsonArray) actions",
                 "auditReverted(QString) actionId",
                 "automationListed(QJsonArray) automations",
                 "automationCreated(QString) id",
                 "automationUpdated(QString) id",
                 "automationDeleted(QString) id",
                 "remindersListed(QJsonArray) reminders",
                 "reminderCancelled(QString) id",
                 "deniedPermissionsReceived(QJsonArray) denied",
                 "desktopStateReceived(QJsonObject) state",
                 "systemReportReceived(QJsonObject) report",
                 "quickStatusReceived(QJsonObject) status",
                 "powerProfileReceived(QJsonObject) profile",
                 "appLogSummaryReceived(QJsonObject) summary",
                 "kdeLogsReceived(QJsonObject) logs",
                 "appMetricsReceived(QJsonObject) metrics",
                 "serviceHealthReceived(QJsonObject) health",
                 "systemDashboardReceived(QJsonObject) dashboard",

                 "workspaceIntelAvailableChanged()",
                 "aiRuntimeAvailableChanged()",
                 "workspaceSuggestionReminderEnabledChanged()",
                 "workspaceSuggestionReminderMinutesChanged()",
                 "workspaceIntelPanelUpdated(QJsonObject) payload",
                 "workspaceTemplatesListed(QJsonArray) workspaces",
                 "workspaceTemplatePrepareFinished(QJsonObject) result",
                 "aiRuntimePanelUpdated(QJsonObject) payload",
                 "runtimeHealthUpdated(QJsonObject) payload",
                 "runtimeJobsUpdated(QJsonArray) jobs",
                 "workspaceSuggestionNotifyResult(QJsonObject) payload",
                 "workspaceSuggestionUserChoice(QJsonObject) payload",
                 "workspaceSuggestionShowInAppDialog(QString) clientNotificationJson",
             }));
}

void tst_LoomraSDKMembers::firstValues()
{
    MessageLog log;
    ConfigManager config;
    const LoomraSDK sdk(&config);

    QCOMPARE(sdk.property("connected"), QVariant(false));
    QCOMPARE(sdk.property("ready"), QVariant(false));
    QCOMPARE(sdk.property("currentSessionId"), QVariant(QString()));
    QCOMPARE(sdk.property("currentModel"), QVariant(QStringLiteral("default")));
    QCOMPARE(sdk.property("currentAgent"), QVariant(QStringLiteral("build")));
    QCOMPARE(sdk.property("executorPathEnabled"), QVariant(true));
    QCOMPARE(sdk.property("workspaceIntelAvailable"), QVariant(false));
    QCOMPARE(sdk.property("aiRuntimeAvailable"), QVariant(false));
    QCOMPARE(sdk.property("workspaceSuggestionReminderEnabled"), QVariant(false));
    QCOMPARE(sdk.property("workspaceSuggestionReminderMinutes"), QVariant(5));
    QCOMPARE(log.lines().size(), 0);
}

void tst_LoomraSDKMembers::remindersAreThoseOfTheSettings()
{
    ConfigManager config;
    config.setWorkspaceSuggestionReminderEnabled(true);
    config.setWorkspaceSuggestionReminderMinutes(17);
    const LoomraSDK sdk(&config);

    QCOMPARE(sdk.isWorkspaceSuggestionReminderEnabled(), true);
    QCOMPARE(sdk.workspaceSuggestionReminderMinutes(), 17);
}

void tst_LoomraSDKMembers::executorPathFromTheEnvironment_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("enabled");

    QTest::newRow("empty") << QByteArray("") << true;
    QTest::newRow("0") << QByteArray("0") << false;
    QTest::newRow("False") << QByteArray("False") << false;
    QTest::newRow("no") << QByteArray("no") << true;
}

void tst_LoomraSDKMembers::executorPathFromTheEnvironment()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, enabled);

    qputenv("LOOMRA_EXECUTOR_PATH", value);
    ConfigManager config;
    const LoomraSDK sdk(&config);
    qunsetenv("LOOMRA_EXECUTOR_PATH");

    QCOMPARE(sdk.isExecutorPathEnabled(), enabled);
}

QTEST_GUILESS_MAIN(tst_LoomraSDKMembers)
#include "tst_LoomraSDKMembers.moc"
