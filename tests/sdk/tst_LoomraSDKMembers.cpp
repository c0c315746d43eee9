// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeProcessTimes.h"
#include "ConfigManager.h"
#include "LoomraSDK.h"
#include "Members.h"
#include "MessageLog.h"
#include "ScopedEnvironment.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QTest>

#include <initializer_list>

using Members::Kind;

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

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

} // namespace

//! The members that loomraSDK offers to QML, and their values before it is initialised.
class tst_LoomraSDKMembers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void fixedValues();
    void properties();
    void operations();
    void emittedSignals();
    void defaultValues();
    void remindersComeFromTheSettings();
    void executorPathFromTheEnvironment_data();
    void executorPathFromTheEnvironment();
};

void tst_LoomraSDKMembers::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_LoomraSDKMembers::properties()
{
    QCOMPARE(sorted(Members::properties(LoomraSDK::staticMetaObject)),
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
    // An argument with a default value adds an entry without it.
    QCOMPARE(sorted(Members::methods(LoomraSDK::staticMetaObject, Kind::Operation)),
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

    // Only the one that reads the disk returns a value; all others are asynchronous.
    QCOMPARE(Members::answers(LoomraSDK::staticMetaObject), QStringList {QStringLiteral("QString eventLogDir()")});
}

void tst_LoomraSDKMembers::emittedSignals()
{
    // QML signal handlers use the arguments by these names.
    QCOMPARE(sorted(Members::methods(LoomraSDK::staticMetaObject, Kind::Signal)),
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

void tst_LoomraSDKMembers::defaultValues()
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

void tst_LoomraSDKMembers::remindersComeFromTheSettings()
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

    const ScopedEnvironment variable("LOOMRA_EXECUTOR_PATH", value);
    ConfigManager config;
    const LoomraSDK sdk(&config);

    QCOMPARE(sdk.isExecutorPathEnabled(), enabled);
}

void tst_LoomraSDKMembers::fixedValues()
{
    QCOMPARE(BridgeProcessTimes::ConnectAfterStart, std::chrono::milliseconds(1000));
    QCOMPARE(BridgeProcessTimes::ConnectAfterService, std::chrono::milliseconds(500));
    QCOMPARE(BridgeProcessTimes::RestartAfterToggle, std::chrono::milliseconds(500));
    QCOMPARE(BridgeProcessTimes::StartTimeout, std::chrono::milliseconds(5000));
    QCOMPARE(BridgeProcessTimes::CloseDelay, std::chrono::milliseconds(150));
    QCOMPARE(BridgeProcessTimes::TerminateTimeout, std::chrono::milliseconds(10000));
    QCOMPARE(BridgeProcessTimes::KillTimeout, std::chrono::milliseconds(2000));
    QCOMPARE(BridgeProcessTimes::ReminderAfterReady, std::chrono::milliseconds(300));
}

REGISTER_TEST(tst_LoomraSDKMembers, QCoreApplication)
#include "tst_LoomraSDKMembers.moc"
