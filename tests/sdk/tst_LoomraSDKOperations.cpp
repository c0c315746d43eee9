// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedSdk.h"

#include "FakePath.h"
#include "ScopedEnvironment.h"
#include "TestRegistry.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

// Particularities of single operations: refusals, the current session, kept arguments, malformed frames.
class tst_LoomraSDKOperations : public ConnectedSdkTest
{
    Q_OBJECT

private Q_SLOTS:
    void refusals_data();
    void refusals();
    void followsTheSession_data();
    void followsTheSession();
    void sendsTheCurrentValues();
    void equalValuesAreNoChange();
    void keepsArgumentsPerRequest();
    void keepsArgumentsAmongTheLabels();
    void refusedRequestStaysOpen();
    void ignoresFramesThatAreNotReplies_data();
    void ignoresFramesThatAreNotReplies();
    void logsFramesThatAreNotJson();
    void acceptsOnlyIntegralIds_data();
    void acceptsOnlyIntegralIds();
    void modelsOfBothSources();
    void modelsWithoutABridge_data();
    void modelsWithoutABridge();
    void logsOfTheBridge();
    void executorPathOfTheBridge_data();
    void executorPathOfTheBridge();
};

using Call = std::function<void(LoomraSDK &)>;
Q_DECLARE_METATYPE(Call)

void tst_LoomraSDKOperations::refusals_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QString>("words");
    const auto row = [](const char *name, const Call &call, const char *words) {
        QTest::newRow(name) << call << QString::fromUtf8(words);
    };
    const QString x = QStringLiteral("x");
    const QString blank = QStringLiteral("  ");

    row(
        "rename without id", [=](LoomraSDK &sdk) { sdk.renameSession({}, x); }, "Session ID and new name are required");
    row(
        "rename without name", [=](LoomraSDK &sdk) { sdk.renameSession(x, {}); },
        "Session ID and new name are required");
    row(
        "messages without id", [=](LoomraSDK &sdk) { sdk.loadMessages({}); },
        "Session ID is required to load messages");
    row(
        "token without anything", [=](LoomraSDK &sdk) { sdk.setProviderToken(blank, blank); }, "Provider is required");
    row(
        "token without token", [=](LoomraSDK &sdk) { sdk.setProviderToken(x, blank, x); }, "Token is required");
    row(
        "plan of nothing", [=](LoomraSDK &sdk) { sdk.getPlan({}); }, "getPlan requires a non-empty message");
    row(
        "plan of whitespace", [=](LoomraSDK &sdk) { sdk.getPlan(blank); }, "getPlan requires a non-empty message");
    row(
        "no steps", [=](LoomraSDK &sdk) { sdk.executePlan({}); }, "executePlan requires at least one step");
    row(
        "steps of numbers",
        [=](LoomraSDK &sdk) {
            sdk.executePlan({1, 2, 3});
        },
        "executePlan requires valid step objects");
    row(
        "no workspace", [=](LoomraSDK &sdk) { sdk.prepareWorkspaceTemplate(0); },
        "prepareWorkspaceTemplate requires a valid workspace id.");
    row(
        "a negative workspace", [=](LoomraSDK &sdk) { sdk.prepareWorkspaceTemplate(-1); },
        "prepareWorkspaceTemplate requires a valid workspace id.");
}

void tst_LoomraSDKOperations::refusals()
{
    QFETCH(Call, call);
    QFETCH(QString, words);
    call(fixture->sdk);
    QCOMPARE(fixture->emitted.take(), QStringList(QStringLiteral("error(\"%1\")").arg(words)));
    fixture->sdk.listAgents();
    QCOMPARE(fixture->peer.takeRequest().method, QStringLiteral("listAgents")); // nothing was sent before
}

void tst_LoomraSDKOperations::followsTheSession_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QString>("answered");
    QTest::addColumn<QString>("current");
    QTest::addColumn<bool>("changes");
    const auto row = [](const char *name, const Call &call, const char *answered, const char *current, bool changes) {
        QTest::newRow(name) << call << QString::fromUtf8(answered) << QString::fromUtf8(current) << changes;
    };
    const Call chat = [](LoomraSDK &sdk) { sdk.sendChatMessage(QStringLiteral("x")); };
    const Call create = [](LoomraSDK &sdk) { sdk.createSession(); };
    const Call change = [](LoomraSDK &sdk) { sdk.switchSession(QStringLiteral("asked")); };
    const Call remove = [](LoomraSDK &sdk) { sdk.deleteSession(QStringLiteral("asked")); };

    row("chat, none", chat, "", "s1", false);
    row("chat, same", chat, "s1", "s1", false);
    row("chat, other", chat, "s2", "s2", true);
    row("create", create, "s2", "s2", true);
    row("create, same", create, "s1", "s1", true);
    row("switch", change, "s2", "s2", true);
    row("switch, none", change, "", "", true);
    row("delete the current one", remove, "s1", "", true);
    row("delete another one", remove, "s2", "s1", false);
}

void tst_LoomraSDKOperations::followsTheSession()
{
    QFETCH(Call, call);
    QFETCH(QString, answered);
    QFETCH(QString, current);
    QFETCH(bool, changes);
    fixture->sdk.createSession();
    const QString payload = QStringLiteral(R"({"sessionId":"%1"})");
    QVERIFY(fixture->deliverReply(fixture->peer.takeRequest().id, payload.arg(QStringLiteral("s1"))));
    QCOMPARE(fixture->sdk.currentSessionId(), QStringLiteral("s1"));
    fixture->emitted.take();

    call(fixture->sdk);
    QVERIFY(fixture->deliverReply(fixture->peer.takeRequest().id, payload.arg(answered)));
    QCOMPARE(fixture->sdk.currentSessionId(), current);
    QCOMPARE(fixture->emitted.take().contains(QStringLiteral("currentSessionIdChanged()")), changes);
}

void tst_LoomraSDKOperations::sendsTheCurrentValues()
{
    fixture->sdk.setCurrentModel(QStringLiteral("a/b"));
    fixture->sdk.setCurrentAgent(QString());
    QCOMPARE(fixture->emitted.take(),
             QStringList({QStringLiteral("currentModelChanged()"), QStringLiteral("currentAgentChanged()")}));
    fixture->sdk.sendChatMessage(QStringLiteral("x"));
    const QJsonObject params = fixture->peer.takeRequest().params;
    QCOMPARE(params.value(QStringLiteral("model")).toString(), QStringLiteral("a/b"));
    QVERIFY(params.value(QStringLiteral("agent")).isString()); // empty, but present
    QVERIFY(params.value(QStringLiteral("sessionId")).isString());
}

void tst_LoomraSDKOperations::equalValuesAreNoChange()
{
    fixture->sdk.setCurrentModel(QStringLiteral("default"));
    fixture->sdk.setCurrentAgent(QStringLiteral("build"));
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(false);
    fixture->sdk.setWorkspaceSuggestionReminderMinutes(5);
    fixture->sdk.setExecutorPathEnabled(true);
    QCOMPARE(fixture->emitted.take(), QStringList());
}

//! Each reply uses the argument of its own request, in any order.
void tst_LoomraSDKOperations::keepsArgumentsPerRequest()
{
    fixture->sdk.auditRevert(QStringLiteral("a1"));
    fixture->sdk.automationDelete(QStringLiteral("b1"));
    fixture->sdk.auditRevert(QStringLiteral("a2"));
    const auto first = fixture->peer.takeRequest();
    const auto second = fixture->peer.takeRequest();
    const auto third = fixture->peer.takeRequest();
    fixture->peer.fail(first, QStringLiteral("no"));
    fixture->peer.reply(third, QJsonObject());
    fixture->peer.reply(second, QJsonObject());
    QCOMPARE(fixture->waitForSignals(3),
             QStringList({QStringLiteral("error(\"no\")"), QStringLiteral("auditReverted(\"a2\")"),
                          QStringLiteral("automationDeleted(\"b1\")")}));
}

//! Labels and kept arguments share one table, in which the argument's key is the id plus 10000.
void tst_LoomraSDKOperations::keepsArgumentsAmongTheLabels()
{
    fixture->sdk.auditRevert(QStringLiteral("listAgents"));
    QCOMPARE(fixture->peer.takeRequest().id, quint64(3));
    QVERIFY(fixture->deliverReply(10002, QStringLiteral("{}")));
    QVERIFY(fixture->deliverReply(10004, QStringLiteral("{}")));
    QCOMPARE(fixture->emitted.take(), QStringList());
    QVERIFY(fixture->deliverReply(10003, QStringLiteral(R"({"agents":[1]})")));
    QCOMPARE(fixture->emitted.take(), QStringList(QStringLiteral("agentsListed([1])")));
    QVERIFY(fixture->deliverReply(3, QStringLiteral("{}")));
    QCOMPARE(fixture->emitted.take(), QStringList(QStringLiteral("auditReverted(\"\")")));
}

//! Its label stays, as if it had been sent.
void tst_LoomraSDKOperations::refusedRequestStaysOpen()
{
    QVERIFY(fixture->lose());
    fixture->sdk.listAgents();
    QVERIFY(fixture->connect());
    QVERIFY(fixture->becomeReady());
    fixture->emitted.take();
    QVERIFY(fixture->deliverReply(3, QStringLiteral(R"({"agents":[1]})")));
    QCOMPARE(fixture->emitted.take(), QStringList(QStringLiteral("agentsListed([1])")));
}

void tst_LoomraSDKOperations::ignoresFramesThatAreNotReplies_data()
{
    QTest::addColumn<QString>("frame");
    QTest::addColumn<QString>("emitted");
    const auto row = [](const char *frame, const char *emitted = "") {
        QTest::newRow(frame) << QString::fromUtf8(frame) << QString::fromUtf8(emitted);
    };
    row(R"({"type":"stream","id":3,"payload":{"agents":["x"]}})");
    row(R"({"type":"event","id":3,"payload":{"event":"tool.executed","tool":"x"}})");
    row(R"({"type":"event","payload":"ready"})");
    row(R"({"type":"event"})");
    row(R"({"type":"error","error":{}})");
    row(R"({"type":"error","error":{"message":"all is lost"}})", R"(error("all is lost"))");
    row(R"({"type":"error","id":99,"error":{"code":"E9"}})", R"(error("E9"))");
    row(R"({"type":"response","id":99,"payload":{},"error":{"message":"not mine"}})");
    row(R"({"type":"response","payload":{"agents":[]}})");
    row(R"({"id":99,"result":{"agents":[]}})");
    row(R"({"type":"response","id":99,"method":"listAgents","payload":{"agents":[]}})");
    row("[]");
    row("[{\"type\":\"ready\"}]");
    row("null");
    row("{}");
    row("");
    row("not JSON");
    row("{\"type\":\"ready\"");
}

void tst_LoomraSDKOperations::ignoresFramesThatAreNotReplies()
{
    QFETCH(QString, frame);
    QFETCH(QString, emitted);
    fixture->sdk.listAgents();
    const auto request = fixture->peer.takeRequest();
    QCOMPARE(request.id, quint64(3));
    QVERIFY(fixture->deliver(frame));
    QCOMPARE(fixture->emitted.take().join(QLatin1Char('\n')), emitted);
    // Connection and request are still open.
    fixture->peer.reply(request, QJsonObject {{QStringLiteral("agents"), QJsonArray {1}}});
    QCOMPARE(fixture->waitForSignals(1), QStringList(QStringLiteral("agentsListed([1])")));
}

void tst_LoomraSDKOperations::logsFramesThatAreNotJson()
{
    QVERIFY(fixture->deliver(QStringLiteral("not JSON")));
    QVERIFY(fixture->log.has(QtDebugMsg, QStringLiteral("Failed to parse JSON message: \"illegal value\"")));
    QVERIFY(fixture->deliver(QStringLiteral("{7}")));
    QVERIFY(fixture->log.has(QtDebugMsg, QStringLiteral("Failed to parse JSON message: \"unterminated object\"")));
    QCOMPARE(fixture->log.count(QStringLiteral("Failed to parse JSON message:")), 2);
    QCOMPARE(fixture->emitted.take(), QStringList());
}

void tst_LoomraSDKOperations::acceptsOnlyIntegralIds_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("isKnown");
    QTest::newRow("integer") << QStringLiteral("3") << true;
    QTest::newRow("whole") << QStringLiteral("3.0") << true;
    QTest::newRow("fraction") << QStringLiteral("3.5") << false;
    QTest::newRow("text") << QStringLiteral("\"3\"") << false;
    QTest::newRow("negative") << QStringLiteral("-3") << false;
    QTest::newRow("too large") << QStringLiteral("4294967299") << false; // 2^32 + 3
    QTest::newRow("null") << QStringLiteral("null") << false;
    QTest::newRow("object") << QStringLiteral("{}") << false;
}

void tst_LoomraSDKOperations::acceptsOnlyIntegralIds()
{
    QFETCH(QString, id);
    QFETCH(bool, isKnown);
    fixture->sdk.listAgents();
    QCOMPARE(fixture->peer.takeRequest().id, quint64(3));
    QVERIFY(fixture->deliver(QStringLiteral(R"({"type":"response","id":%1,"payload":{}})").arg(id)));
    QCOMPARE(fixture->emitted.take(), isKnown ? QStringList(QStringLiteral("agentsListed([])")) : QStringList());
}

void tst_LoomraSDKOperations::modelsOfBothSources()
{
    FakePath path;
    path.add(QStringLiteral("loomra"), "echo a/b; echo c/d-free");
    fixture->sdk.listModels();
    QVERIFY(fixture->deliverReply(fixture->peer.takeRequest().id,
                                  QStringLiteral(R"({"models":[{"fullId":"a/b","free":true}]})")));
    QCOMPARE(fixture->emitted.take(),
             QStringList(
                 QStringLiteral(R"(modelsListed([{"free":true,"fullId":"a/b"},{"displayName":"c/d-free","free":true,)"
                                R"("fullId":"c/d-free","id":"d-free","name":"d-free","provider":"c"}]))")));
}

//! Without a bridge that is ready the models of the agent CLI are listed. Without either an error is reported.
void tst_LoomraSDKOperations::modelsWithoutABridge_data()
{
    QTest::addColumn<bool>("isConnected");
    QTest::newRow("lost") << false;
    QTest::newRow("not ready yet") << true;
}

void tst_LoomraSDKOperations::modelsWithoutABridge()
{
    QFETCH(bool, isConnected);
    QVERIFY(fixture->lose());
    QVERIFY(!isConnected || fixture->connect());
    QCOMPARE(fixture->sdk.isConnected(), isConnected);
    fixture->emitted.take();
    {
        FakePath path;
        path.add(QStringLiteral("loomra"), "echo a/b");
        fixture->sdk.listModels();
        QCOMPARE(
            fixture->emitted.take(),
            QStringList(QStringLiteral(R"(modelsListed([{"displayName":"a/b","free":false,"fullId":"a/b","id":"b",)"
                                       R"("name":"b","provider":"a"}]))")));
    }
    fixture->sdk.listModels();
    QCOMPARE(fixture->emitted.take(),
             QStringList(QStringLiteral("error(\"SDK not ready. Please wait for initialization.\")")));
}

void tst_LoomraSDKOperations::logsOfTheBridge()
{
    const QTemporaryDir state;
    const ScopedEnvironment stateHome("XDG_STATE_HOME", QFile::encodeName(state.path()));
    const QString directory = fixture->sdk.eventLogDir();
    QCOMPARE(directory, state.filePath(QStringLiteral("loomra-bridge/logs")));
    QVERIFY(QFileInfo(directory).isDir());
}

void tst_LoomraSDKOperations::executorPathOfTheBridge_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("off") << QStringLiteral(R"({"executorPathEnabled":false})") << false;
    QTest::newRow("on") << QStringLiteral(R"({"executorPathEnabled":true})") << true;
    QTest::newRow("no bool") << QStringLiteral(R"({"executorPathEnabled":"yes"})") << false;
    QTest::newRow("missing") << QStringLiteral("{}") << true;
    QTest::newRow("no object") << QStringLiteral("[]") << true;
}

//! The bridge's reply changes the property, but not the environment or the child process.
void tst_LoomraSDKOperations::executorPathOfTheBridge()
{
    QFETCH(QString, answer);
    QFETCH(bool, enabled);
    const QByteArray before = qgetenv("LOOMRA_EXECUTOR_PATH");
    fixture->peer.ready(); // a second "ready" leads to a second ping
    const auto ping = fixture->peer.takeRequest(QStringLiteral("ping"));
    fixture->peer.takeRequest(QStringLiteral("getCapabilities"));
    QCOMPARE(fixture->emitted.take(), QStringList(QStringLiteral("readyChanged()")));
    QVERIFY(fixture->deliverReply(ping.id, answer));
    QCOMPARE(fixture->sdk.isExecutorPathEnabled(), enabled);
    QCOMPARE(fixture->emitted.take(),
             enabled ? QStringList() : QStringList(QStringLiteral("executorPathEnabledChanged()")));
    QCOMPARE(qgetenv("LOOMRA_EXECUTOR_PATH"), before);
}

REGISTER_TEST(tst_LoomraSDKOperations, QCoreApplication)

#include "tst_LoomraSDKOperations.moc"
