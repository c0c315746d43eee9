// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BundledBridge.h"
#include "ConfigManager.h"
#include "Json.h"
#include "LoomraSDK.h"
#include "MessageLog.h"
#include "SdkOperations.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "WaitUntil.h"

#include <QJsonArray>
#include <QTest>
#include <QWebSocket>

#include <algorithm>
#include <functional>
#include <memory>

Q_DECLARE_METATYPE(const SdkOperation *)

namespace
{

//! What the bridge has, for operations that need the id of something that exists.
struct Known
{
    QString session;
    QString spareSession;
    QString automation;
    QString spareAutomation;
    QString action;
    QStringList reminders;
    int workspace = 0;
    QString suggestion;
};

using Call = std::function<void(LoomraSDK &, const Known &)>;

constexpr char s_step[] = R"({"capabilityId":"audio.volume.set","params":{"level":20}})";

//! In place of the table's call, whose arguments are made up.
const QHash<QString, Call> &calls()
{
    static const QHash<QString, Call> s_calls {
        {QStringLiteral("readFile"), [](auto &sdk, auto &) { sdk.readFile(QStringLiteral("README.md")); }},
        {QStringLiteral("getFiles, path"), [](auto &sdk, auto &) { sdk.getFiles(QStringLiteral("src")); }},
        {QStringLiteral("switchSession"), [](auto &sdk, auto &known) { sdk.switchSession(known.session); }},
        {QStringLiteral("deleteSession"), [](auto &sdk, auto &known) { sdk.deleteSession(known.spareSession); }},
        {QStringLiteral("renameSession"),
         [](auto &sdk, auto &known) { sdk.renameSession(known.session, QStringLiteral("Kitchen")); }},
        {QStringLiteral("loadMessages"), [](auto &sdk, auto &known) { sdk.loadMessages(known.session); }},
        {QStringLiteral("executePlan"), [](auto &sdk, auto &) { sdk.executePlan({json(s_step)}); }},
        {QStringLiteral("auditRevert"), [](auto &sdk, auto &known) { sdk.auditRevert(known.action); }},
        {QStringLiteral("automationCreate"),
         [](auto &sdk, auto &) { sdk.automationCreate(json(R"({"type":"time","at":"20:00"})"), {json(s_step)}); }},
        {QStringLiteral("automationUpdate"),
         [](auto &sdk, auto &known) { sdk.automationUpdate(known.automation, json(R"({"name":"Evening"})")); }},
        {QStringLiteral("automationDelete"),
         [](auto &sdk, auto &known) { sdk.automationDelete(known.spareAutomation); }},
        {QStringLiteral("automationPause"),
         [](auto &sdk, auto &known) { sdk.automationPause(known.automation, true); }},
        {QStringLiteral("automationPause, resume"),
         [](auto &sdk, auto &known) { sdk.automationPause(known.automation, false); }},
        {QStringLiteral("reminderCancel"),
         [](auto &sdk, auto &known) { sdk.reminderCancel(known.reminders.value(0)); }},
        {QStringLiteral("setWorkspaceTemplateEnabled, id"),
         [](auto &sdk, auto &known) { sdk.setWorkspaceTemplateEnabled(QString(), false, known.workspace); }},
        {QStringLiteral("prepareWorkspaceTemplate"),
         [](auto &sdk, auto &known) { sdk.prepareWorkspaceTemplate(known.workspace); }},
        {QStringLiteral("prepareWorkspaceTemplate, message"),
         [](auto &sdk, auto &known) { sdk.prepareWorkspaceTemplate(known.workspace, QStringLiteral("now")); }},
        {QStringLiteral("automationCreate, condition"),
         [](auto &sdk, auto &) {
             sdk.automationCreate(json(R"({"type":"time"})"), {json(s_step)}, json(R"({"weekday":true})"));
         }},
        {QStringLiteral("reminderCancel, no id back"),
         [](auto &sdk, auto &known) { sdk.reminderCancel(known.reminders.value(1)); }},
        {QStringLiteral("setAiRuntimeExecutionGating"),
         [](auto &sdk, auto &) { sdk.setAiRuntimeExecutionGating(QStringLiteral("auto_safe")); }},
        {QStringLiteral("setWorkspaceTemplateEnabled"),
         [](auto &sdk, auto &) { sdk.setWorkspaceTemplateEnabled(QStringLiteral("focus-dev"), true); }},
        {QStringLiteral("applyWorkspaceSuggestionAction, dismiss"),
         [](auto &sdk, auto &known) {
             sdk.applyWorkspaceSuggestionAction(QStringLiteral("dismiss"),
                                                QStringLiteral(R"({"suggestionId":"%1"})").arg(known.suggestion));
         }},
        {QStringLiteral("applyWorkspaceSuggestionAction, prepared"),
         [](auto &sdk, auto &known) {
             sdk.applyWorkspaceSuggestionAction(QStringLiteral("prepare"),
                                                QStringLiteral(R"({"workspaceId":%1})").arg(known.workspace));
         }},
        {QStringLiteral("applyWorkspaceSuggestionAction, prepare"),
         [](auto &sdk, auto &known) {
             sdk.applyWorkspaceSuggestionAction(QStringLiteral("prepare"),
                                                QStringLiteral(R"({"workspaceId":%1})").arg(known.workspace));
         }},
    };
    return s_calls;
}

//! The errors that the bridge is meant to send.
const QHash<QString, QString> &errors()
{
    static const QHash<QString, QString> s_errors {
        {QStringLiteral("sendChatMessage, context"), QStringLiteral("The message is empty")},
        {QStringLiteral("auditListRecent, limit"),
         QStringLiteral("The parameter \"limit\" must be from 1 to 9007199254740991")},
        {QStringLiteral("setWorkspaceTemplateEnabled, neither"),
         QStringLiteral("One of the parameters \"slug\" and \"id\" must be there")},
    };
    return s_errors;
}

//! What the client needs of a reply: the result of the table's first row for the operation, unless the client passes
//! any object on.
QJsonObject patternOf(const SdkOperation &operation)
{
    static const QHash<QString, QJsonObject> s_patterns {
        {QStringLiteral("aiRuntimeCheckWorkspaceNotification"),
         json(R"({"notified":true,"reason":"","clientNotification":{"title":"","body":"","suggestionId":"",
                  "suggestionType":"","actions":[{"id":"","label":""}]}})")},
        {QStringLiteral("getDeniedPermissions"), json(R"({"denied":[]})")}, // of any kind
    };
    const auto pattern = s_patterns.constFind(QLatin1String(operation.method));
    if (pattern != s_patterns.constEnd()) {
        return *pattern;
    }
    const auto &rows = sdkOperations();
    const auto first = std::find_if(
        rows.begin(), rows.end(), [&](const SdkOperation &row) { return qstrcmp(row.method, operation.method) == 0; });
    const QJsonObject result = json(first->result);
    const bool isPassedOn = result.contains(QLatin1String("a"));
    return isPassedOn ? QJsonObject() : result;
}

//! The name of a signal in the log.
QString nameOf(const QString &entry)
{
    return entry.section(QLatin1Char('('), 0, 0);
}

//! Where a value lacks something that the pattern has, or has it in another type; empty if it fits.
QString misfit(const QJsonValue &pattern, const QJsonValue &value, const QString &path)
{
    if (pattern.type() != value.type()) {
        return QStringLiteral("%1 is of type %2").arg(path, QString::number(value.type()));
    }
    if (pattern.isArray()) {
        const QJsonArray rows = pattern.toArray();
        if (rows.isEmpty()) {
            return {};
        }
        return misfit(rows.first(), value.toArray().first(), path + QStringLiteral("[0]"));
    }
    const QJsonObject object = pattern.toObject();
    for (auto key = object.begin(); key != object.end(); ++key) {
        const QString found =
            misfit(key.value(), value.toObject().value(key.key()), path + QLatin1Char('.') + key.key());
        if (!found.isEmpty()) {
            return found;
        }
    }
    return {};
}

} // namespace

//! The operations of the client with the bundled bridge, so that the two can't drift apart. All rows share one bridge.
class tst_LoomraSDKBundledBridge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void operations_data();
    void operations();
    void cleanupTestCase();
    void init();
    void cleanup();

private:
    QStringList takeEmitted();
    //! Waits until each request has its reply, also those that follow from replies. @return all replies since the last
    //! call
    QList<QJsonObject> settle();
    //! Calls an operation that sends one request. @return the result
    QJsonObject result(const std::function<void(LoomraSDK &)> &call);

    std::unique_ptr<MessageLog> m_log;
    std::unique_ptr<BundledBridge> m_bridge;
    std::unique_ptr<ConfigManager> m_config;
    std::unique_ptr<LoomraSDK> m_sdk;
    std::unique_ptr<SignalLog> m_emitted;
    QList<QJsonObject> m_replies;
    QSet<int> m_answered;
    Known m_known;
};

void tst_LoomraSDKBundledBridge::initTestCase()
{
    TestSetup::setAboutData();
    m_log = std::make_unique<MessageLog>();
    m_bridge = std::make_unique<BundledBridge>();
    QVERIFY(m_bridge->isListening());
    m_config = std::make_unique<ConfigManager>();
    m_sdk = std::make_unique<LoomraSDK>(m_config.get());
    m_sdk->setConnectOnly(true);
    m_emitted = std::make_unique<SignalLog>(m_sdk.get());
    // Connected after the client's slot, so that it is called after it.
    connect(m_sdk->findChild<QWebSocket *>(), &QWebSocket::textMessageReceived, this, [this](const QString &frame) {
        const QJsonObject message = json(frame);
        if (message.value(QLatin1String("type")) == QLatin1String("response")) {
            m_replies.append(message);
            m_answered.insert(message.value(QLatin1String("id")).toInt());
        }
    });
    m_sdk->reconnectBridge();
    QVERIFY(waitUntil([this] { return m_sdk->isWorkspaceIntelAvailable() && m_sdk->isAiRuntimeAvailable(); }));

    const auto ids = [this](const char *list, const std::function<void(LoomraSDK &)> &call) {
        QStringList ids;
        const QJsonArray rows = result(call).value(QLatin1String(list)).toArray();
        for (const QJsonValue row : rows) {
            ids.append(row.toObject().value(QLatin1String("id")).toVariant().toString());
        }
        return ids;
    };
    for (QString *session : {&m_known.session, &m_known.spareSession}) {
        m_sdk->sendChatMessage(QStringLiteral("hi"));
        settle();
        *session = m_sdk->currentSessionId();
        m_sdk->createSession();
        settle();
    }
    const QStringList automations = ids("automations", [](LoomraSDK &sdk) { sdk.automationList(); });
    m_known.automation = automations.value(0);
    m_known.spareAutomation = automations.value(1);
    m_sdk->executePlan({json(s_step)});
    settle();
    m_known.action = ids("actions", [](LoomraSDK &sdk) { sdk.auditListRecent(); }).value(0);
    m_known.reminders = ids("reminders", [](LoomraSDK &sdk) { sdk.reminderList(); });
    m_known.workspace = ids("workspaces", [](LoomraSDK &sdk) { sdk.refreshWorkspaceTemplates(); }).value(0).toInt();
    m_known.suggestion = result([](LoomraSDK &sdk) { sdk.checkWorkspaceSuggestionNotify(); })
                             .value(QLatin1String("clientNotification"))
                             .toObject()
                             .value(QLatin1String("suggestionId"))
                             .toString();
    QVERIFY(!m_known.suggestion.isEmpty());
}

//! Undoes what a row may have switched off.
void tst_LoomraSDKBundledBridge::init()
{
    m_sdk->setAiRuntimeEnabled(true);
    m_sdk->setWorkspaceTemplateEnabled(QString(), true, m_known.workspace);
    m_sdk->emergencyResume();
    settle();
    takeEmitted();
}

void tst_LoomraSDKBundledBridge::cleanup()
{
    QCOMPARE(m_log->takeWarnings(), QStringList());
}

QStringList tst_LoomraSDKBundledBridge::takeEmitted()
{
    QStringList emitted = m_emitted->take();
    emitted.removeAll(QStringLiteral("readyChanged()")); // of settle()
    return emitted;
}

void tst_LoomraSDKBundledBridge::cleanupTestCase()
{
    m_sdk.reset();
    m_bridge.reset();
    m_log.reset();
}

QList<QJsonObject> tst_LoomraSDKBundledBridge::settle()
{
    QList<QJsonObject> replies;
    m_replies.clear();
    while (true) {
        // A "ready" makes the client send two requests that no operation sends. Ids are consecutive, so the last one
        // tells how many requests there are.
        QMetaObject::invokeMethod(m_sdk.get(), "onWebSocketTextMessageReceived",
                                  Q_ARG(QString, QStringLiteral(R"({"type":"ready"})")));
        int last = 0;
        const bool isAnswered = waitUntil([&] {
            for (const QJsonObject &reply : qAsConst(m_replies)) {
                if (reply.value(QLatin1String("method")) == QLatin1String("getCapabilities")) {
                    last = reply.value(QLatin1String("id")).toInt();
                }
            }
            return last > 0
                && std::count_if(m_answered.cbegin(), m_answered.cend(), [last](int id) { return id <= last; }) == last;
        });
        if (!isAnswered) {
            QTest::qFail("a request has no reply", __FILE__, __LINE__);
            return replies;
        }
        const int before = replies.size();
        for (const QJsonObject &reply : qAsConst(m_replies)) {
            const QString method = reply.value(QLatin1String("method")).toString();
            if (method != QLatin1String("ping") && method != QLatin1String("getCapabilities")) {
                replies.append(reply);
            }
        }
        m_replies.clear();
        if (replies.size() == before) {
            return replies; // no reply has led to another request
        }
    }
}

QJsonObject tst_LoomraSDKBundledBridge::result(const std::function<void(LoomraSDK &)> &call)
{
    call(*m_sdk);
    return settle().value(0).value(QLatin1String("payload")).toObject();
}

void tst_LoomraSDKBundledBridge::operations_data()
{
    QTest::addColumn<const SdkOperation *>("operation");
    QSet<QString> names;
    for (const SdkOperation &operation : sdkOperations()) {
        QTest::newRow(operation.name) << &operation;
        names.insert(QString::fromLatin1(operation.name));
    }
    for (const QString &name : calls().keys() + errors().keys()) {
        QVERIFY2(names.contains(name), qPrintable(name));
    }
}

void tst_LoomraSDKBundledBridge::operations()
{
    QFETCH(const SdkOperation *, operation);
    const QString name = QString::fromLatin1(operation->name);
    if (const Call call = calls().value(name)) {
        call(*m_sdk, m_known);
    } else {
        operation->call(*m_sdk);
    }
    const QList<QJsonObject> replies = settle();
    const QStringList emitted = takeEmitted();

    QVERIFY(!replies.isEmpty());
    QStringList methods;
    for (const QJsonObject &reply : replies) {
        methods.append(reply.value(QLatin1String("method")).toString());
    }
    QCOMPARE(methods.first(), QLatin1String(operation->method));
    if (errors().contains(name)) {
        QCOMPARE(emitted, QStringList(QStringLiteral("error(\"%1\")").arg(errors().value(name))));
        return;
    }

    QStringList names;
    for (const QString &entry : emitted) {
        names.append(nameOf(entry));
    }
    QVERIFY2(!names.contains(QLatin1String("error")), qPrintable(emitted.join(QLatin1Char('\n'))));
    for (const QString &entry : operation->emitted) {
        const QString signal = nameOf(entry);
        const bool isMeant = signal != QLatin1String("error") && signal != QLatin1String("currentSessionIdChanged");
        QVERIFY2(!isMeant || names.contains(signal), qPrintable(signal));
    }
    for (const QString &method : operation->next) {
        QVERIFY2(methods.contains(method), qPrintable(method));
    }
    const QJsonValue payload = replies.first().value(QLatin1String("payload"));
    QVERIFY(payload.isObject());
    QCOMPARE(misfit(patternOf(*operation), payload, QStringLiteral("payload")), QString());
}

REGISTER_TEST(tst_LoomraSDKBundledBridge, QCoreApplication)

#include "tst_LoomraSDKBundledBridge.moc"
