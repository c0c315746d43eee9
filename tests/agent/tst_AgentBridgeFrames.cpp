// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentBridgeParts.h"
#include "ConnectedAgent.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTimer>
#include <QWebSocket>

namespace
{

constexpr quint64 s_limit = 64 * 1024 * 1024; // bytes

const QString s_tooLarge = QStringLiteral("Connection to Loomra bridge closed because a message was too large");

} // namespace

class tst_AgentBridgeFrames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void rejectsOversizedMessages_data();
    void rejectsOversizedMessages();
    void acceptsLongMessages();
    void survivesGarbage();
    void survivesBinaryFrames();
};

void tst_AgentBridgeFrames::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_AgentBridgeFrames::init()
{
    TestSetup::clearSettings();
}

void tst_AgentBridgeFrames::rejectsOversizedMessages_data()
{
    QTest::addColumn<bool>("isOneFrame");
    QTest::addColumn<bool>("isThinking");
    QTest::newRow("in one frame") << true << true;
    QTest::newRow("in many frames") << false << true;
    QTest::newRow("without a request") << true << false;
}

void tst_AgentBridgeFrames::rejectsOversizedMessages()
{
    QFETCH(bool, isOneFrame);
    QFETCH(bool, isThinking);
    ConnectedAgent fixture;
    QVERIFY(fixture.begin());
    if (isThinking) {
        fixture.prompt();
    }
    if (isOneFrame) {
        fixture.peer.announce(s_limit + 1);
    } else {
        socketOf(fixture.agent)->setMaxAllowedIncomingMessageSize(1000);
        fixture.peer.connection(0)->setOutgoingFrameSize(100);
        fixture.peer.sendRaw(QString(1001, QLatin1Char(' ')));
    }
    QTRY_VERIFY(timerOf(fixture.agent)->isActive());
    QStringList expected = failure(s_tooLarge) + QStringList {QStringLiteral("statusChanged(\"disconnected\")")};
    if (!isThinking) {
        expected.removeOne(AgentSignals::NotThinking);
    }
    QCOMPARE(fixture.emitted.take(), expected);
    QVERIFY(!fixture.agent.isServiceAvailable());
    QVERIFY(!fixture.agent.isThinking());
    QCOMPARE(fixture.log.count(QStringLiteral("[AgentBridge] Received WebSocket message:")), 0);
    QCOMPARE(fixture.log.takeWarnings(), QStringList(QStringLiteral("[AgentBridge] ") + s_tooLarge));

    endPause(fixture.agent);
    QVERIFY(fixture.peer.waitForConnection(2));
    QTRY_COMPARE(fixture.agent.status(), QStringLiteral("idle"));
    fixture.prompt();

    // The next connection is lost for another reason.
    fixture.peer.drop();
    QTRY_COMPARE(fixture.agent.status(), QStringLiteral("disconnected"));
    QVERIFY(fixture.agent.isThinking());
    QVERIFY(!fixture.emitted.entries().join(QLatin1Char(' ')).contains(QLatin1String("errorOccurred")));
}

void tst_AgentBridgeFrames::acceptsLongMessages()
{
    ConnectedAgent fixture;
    QVERIFY(fixture.begin());
    const ScriptedBridge::Request request = fixture.prompt();
    const QString text(8 * 1024 * 1024, QLatin1Char('x'));
    QString reply;
    connect(&fixture.agent, &AgentBridge::agentReplied, this, [&](const QString &response) { reply = response; });
    fixture.peer.reply(request, answer(text));
    QTRY_VERIFY_WITH_TIMEOUT(!reply.isEmpty(), 60000);
    QVERIFY(reply == text);
    QCOMPARE(fixture.log.warnings(), QStringList());
}

void tst_AgentBridgeFrames::survivesGarbage()
{
    ConnectedAgent fixture;
    QVERIFY(fixture.begin());
    const ScriptedBridge::Request request = fixture.prompt();

    QRandomGenerator random(20260101);
    const QString good = QStringLiteral(R"({"type":"response","id":99,"payload":{"response":"hi","usage":{}}})");
    const int rounds = 400;
    for (int i = 0; i < rounds; ++i) {
        QString frame;
        if (i % 2 == 0) { // random characters, including lone surrogates
            const int length = random.bounded(1, 300);
            for (int j = 0; j < length; ++j) {
                frame.append(QChar(static_cast<ushort>(random.bounded(0x10000))));
            }
        } else { // a valid frame with a few wrong characters
            frame = good;
            for (int j = random.bounded(1, 4); j > 0; --j) {
                frame[random.bounded(frame.size())] = QLatin1Char(static_cast<char>(random.bounded(0x20, 0x7f)));
            }
        }
        fixture.peer.sendRaw(frame);
    }
    QTRY_COMPARE(fixture.log.count(QStringLiteral("[AgentBridge] Received WebSocket message:")), rounds);

    // No signals, and the open request is still answered.
    QCOMPARE(fixture.emitted.entries(), QStringList());
    QVERIFY(fixture.agent.isThinking());
    QCOMPARE(fixture.peer.connectionCount(), 1);
    fixture.peer.reply(request, answer(QStringLiteral("still here")));
    QTRY_COMPARE(fixture.agent.status(), QStringLiteral("idle"));
    QCOMPARE(fixture.emitted.entries().first(), QStringLiteral("agentReplied(\"still here\")"));
}

void tst_AgentBridgeFrames::survivesBinaryFrames()
{
    ConnectedAgent fixture;
    QVERIFY(fixture.begin());
    const ScriptedBridge::Request request = fixture.prompt();
    fixture.peer.connection(0)->sendBinaryMessage(QByteArray(1000, '\xff'));
    fixture.peer.reply(request, answer(QStringLiteral("hi")));
    QTRY_COMPARE(fixture.agent.status(), QStringLiteral("idle"));
    QCOMPARE(fixture.log.count(QStringLiteral("[AgentBridge] Received WebSocket message:")), 1);
}

REGISTER_TEST(tst_AgentBridgeFrames, QCoreApplication)
#include "tst_AgentBridgeFrames.moc"
