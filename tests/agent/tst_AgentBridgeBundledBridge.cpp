// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentBridge.h"
#include "AgentBridgeParts.h"
#include "BundledBridge.h"
#include "ConnectedAgent.h"
#include "Json.h"
#include "MessageLog.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "WaitUntil.h"

#include <QJsonArray>
#include <QTest>
#include <QWebSocket>

#include <functional>
#include <memory>

namespace
{

using Call = std::function<void(AgentBridge &)>;

QString nameOf(const QString &entry)
{
    return entry.section(QLatin1Char('('), 0, 0);
}

} // namespace

Q_DECLARE_METATYPE(Call)

//! The operations of the client with the bundled bridge, so that the two can't drift apart. All rows share one bridge.
class tst_AgentBridgeBundledBridge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void operations_data();
    void operations();
    void cancelsAPrompt();
    void cleanup();
    void cleanupTestCase();

private:
    bool waitForReplies(int count)
    {
        return waitUntil([&] { return m_replies.size() >= count; });
    }

    std::unique_ptr<MessageLog> m_log;
    std::unique_ptr<BundledBridge> m_bridge;
    std::unique_ptr<AgentBridge> m_agent;
    std::unique_ptr<SignalLog> m_emitted;
    QList<QJsonObject> m_replies;
};

void tst_AgentBridgeBundledBridge::initTestCase()
{
    TestSetup::setAboutData();
    TestSetup::clearSettings();
    m_log = std::make_unique<MessageLog>();
    m_bridge = std::make_unique<BundledBridge>();
    QVERIFY(m_bridge->isListening());
    m_agent = std::make_unique<AgentBridge>();
    m_emitted = std::make_unique<SignalLog>(m_agent.get());
    // Connected after the client's slot, so that it is called after it.
    connect(socketOf(*m_agent), &QWebSocket::textMessageReceived, this, [this](const QString &frame) {
        const QJsonObject message = json(frame);
        if (message.value(QLatin1String("type")) == QLatin1String("response")) {
            m_replies.append(message);
        }
    });
    QVERIFY(waitUntil([this] { return m_agent->isServiceAvailable(); }));
}

void tst_AgentBridgeBundledBridge::cleanup()
{
    m_replies.clear();
    m_emitted->take();
    QCOMPARE(m_log->takeWarnings(), QStringList());
}

void tst_AgentBridgeBundledBridge::cleanupTestCase()
{
    m_agent.reset();
    m_bridge.reset();
    m_log.reset();
}

void tst_AgentBridgeBundledBridge::operations_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QString>("method");
    QTest::addColumn<QByteArray>("keys"); // that the client needs of the result, with values of their types
    QTest::addColumn<QStringList>("emitted"); // once or more, and nothing else

    const auto row = [](const char *name, const Call &call, const char *method, const char *keys, const char *emitted) {
        QTest::newRow(name) << call << QString::fromLatin1(method) << QByteArray(keys)
                            << QString::fromLatin1(emitted).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    };
    const char *chat = R"({"response":"","sessionId":"","usage":{"inputTokens":0,"outputTokens":0}})";
    const auto says = [](const char *prompt) {
        return [prompt = QString::fromLatin1(prompt)](AgentBridge &agent) { agent.sendIntent(prompt); };
    };
    row("prompt", says("plain"), "chat", chat, "thinkingChanged statusChanged usageReported agentReplied");
    row("prompt with every event", says("all events"), "chat", chat,
        "thinkingChanged statusChanged activePhaseChanged routedAgentChanged planStepChanged actionStarted "
        "usageReported agentReplied");
    row("prompt with widgets", says("options"), "chat",
        R"({"response":"","sessionId":"","ui":{"blocks":[]},"usage":{"inputTokens":0}})",
        "thinkingChanged statusChanged usageReported structuredReplyReceived "
        "agentReplied");
    row(
        "transcript", [](AgentBridge &agent) { agent.rephraseText(QStringLiteral("um open the files")); }, "chat",
        R"({"response":""})", "usageReported rephraseReady");
    row(
        "action",
        [](AgentBridge &agent) {
            agent.handleUiAction(QStringLiteral("option_selected"), 1, QStringLiteral(R"({"id":"a"})"));
        },
        "handleStructuredUiAction", chat, "thinkingChanged usageReported agentReplied");
    row(
        "action without data",
        [](AgentBridge &agent) { agent.handleUiAction(QStringLiteral("slider_submitted"), 1, QStringLiteral("a:b")); },
        "handleStructuredUiAction", chat, "thinkingChanged usageReported agentReplied");
    row(
        "vote",
        [](AgentBridge &agent) {
            agent.sendMessageFeedback(QStringLiteral("up"), 1, QStringLiteral("text"), QStringLiteral("query"));
        },
        "messageFeedback", R"({"ok":true})", "");
}

void tst_AgentBridgeBundledBridge::operations()
{
    QFETCH(Call, call);
    QFETCH(QString, method);
    QFETCH(QByteArray, keys);
    call(*m_agent);
    QVERIFY(waitForReplies(1));
    QCOMPARE(m_replies.size(), 1);
    const QJsonObject reply = m_replies.first();
    QCOMPARE(reply.value(QLatin1String("method")).toString(), method);
    const QString text = compactJson(reply);
    const QJsonObject payload = reply.value(QLatin1String("payload")).toObject();
    const QJsonObject pattern = json(keys);
    for (auto key = pattern.begin(); key != pattern.end(); ++key) {
        QVERIFY2(payload.value(key.key()).type() == key.value().type(),
                 qPrintable(key.key() + QLatin1Char(' ') + text));
        const QJsonObject inner = key.value().toObject();
        for (const QString &name : inner.keys()) {
            QVERIFY2(payload.value(key.key()).toObject().value(name).type() == inner.value(name).type(),
                     qPrintable(name + QLatin1Char(' ') + text));
        }
    }
    QStringList names;
    for (const QString &entry : m_emitted->take()) {
        names.append(nameOf(entry));
    }
    names.removeDuplicates();
    names.sort();
    QFETCH(QStringList, emitted);
    emitted.sort();
    QCOMPARE(names.join(QLatin1Char(' ')), emitted.join(QLatin1Char(' ')));
    QVERIFY(!m_agent->isThinking());
}

//! Both requests have a reply, which the client ignores.
void tst_AgentBridgeBundledBridge::cancelsAPrompt()
{
    m_agent->sendIntent(QStringLiteral("slow"));
    m_agent->cancelRequest();
    m_emitted->take();
    QVERIFY(waitForReplies(2));
    // Events of the prompt may have been on their way.
    const QStringList emitted = m_emitted->take();
    for (const QString &entry : emitted) {
        QVERIFY2(nameOf(entry) == QLatin1String("routedAgentChanged")
                     || nameOf(entry) == QLatin1String("activePhaseChanged"),
                 qPrintable(entry));
    }
    QVERIFY(!m_agent->isThinking());

    m_agent->sendIntent(QStringLiteral("plain"));
    QVERIFY(waitForReplies(3));
    QVERIFY(m_emitted->entries().contains(QStringLiteral("agentReplied(\"This is a plain answer.\")")));
}

REGISTER_TEST(tst_AgentBridgeBundledBridge, QCoreApplication)

#include "tst_AgentBridgeBundledBridge.moc"
