// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentBridge.h"
#include "AgentBridgeParts.h"
#include "Members.h"
#include "MessageLog.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QFile>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <QWebSocket>

using Members::Kind;

namespace
{

constexpr quint64 s_limit = 64 * 1024 * 1024; // bytes

const QString s_connecting = QStringLiteral("[AgentBridge] Connecting to Loomra bridge ws://127.0.0.1:8765/ws");

} // namespace

class tst_AgentBridgeMembers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void hasDefaultValues();
    void offersItsMembersToQml();
    void readsStoredChoices_data();
    void readsStoredChoices();
    void choicesAreStored();
    void writingTheSameValueDoesNothing();
};

void tst_AgentBridgeMembers::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_AgentBridgeMembers::init()
{
    TestSetup::clearSettings();
}

void tst_AgentBridgeMembers::hasDefaultValues()
{
    MessageLog log;
    const AgentBridge agent;

    QCOMPARE(agent.isThinking(), false);
    QCOMPARE(agent.currentAgent(), QStringLiteral("auto"));
    QCOMPARE(agent.currentModel(), QString());
    QCOMPARE(agent.activePhase(), QString());
    QCOMPARE(agent.routedAgent(), QString());
    QCOMPARE(agent.planStepIndex(), -1);
    QCOMPARE(agent.planStepTotal(), 0);
    QCOMPARE(agent.planStepCapability(), QString());
    QCOMPARE(agent.planStepPhase(), QString());
    QCOMPARE(agent.inputMode(), QStringLiteral("text"));
    QCOMPARE(agent.isServiceAvailable(), false);
    QCOMPARE(agent.parent(), nullptr);

    // The constructor starts the first attempt.
    QCOMPARE(agent.status(), QStringLiteral("connecting"));
    QVERIFY(log.has(QtDebugMsg, s_connecting));

    QVERIFY(timerOf(agent));
    QCOMPARE(timerOf(agent)->interval(), 3000);
    QVERIFY(timerOf(agent)->isSingleShot());
    QVERIFY(!timerOf(agent)->isActive());

    QVERIFY(socketOf(agent));
    QCOMPARE(socketOf(agent)->origin(), QString());
    QCOMPARE(socketOf(agent)->version(), QWebSocketProtocol::Version13);
    QCOMPARE(socketOf(agent)->requestUrl(), QUrl(QStringLiteral("ws://127.0.0.1:8765/ws")));
    QCOMPARE(socketOf(agent)->maxAllowedIncomingFrameSize(), s_limit);
    QCOMPARE(socketOf(agent)->maxAllowedIncomingMessageSize(), s_limit);
    QCOMPARE(log.warnings(), QStringList());
}

void tst_AgentBridgeMembers::offersItsMembersToQml()
{
    const QMetaObject &type = AgentBridge::staticMetaObject;

    QCOMPARE(Members::properties(type),
             (QStringList {
                 QStringLiteral("bool isThinking thinkingChanged(bool)"),
                 QStringLiteral("QString status statusChanged(QString)"),
                 QStringLiteral("QString currentAgent currentAgentChanged(QString) writable"),
                 QStringLiteral("QString currentModel currentModelChanged(QString) writable"),
                 QStringLiteral("QString activePhase activePhaseChanged(QString)"),
                 QStringLiteral("QString routedAgent routedAgentChanged(QString)"),
                 QStringLiteral("int planStepIndex planStepChanged()"),
                 QStringLiteral("int planStepTotal planStepChanged()"),
                 QStringLiteral("QString planStepCapability planStepChanged()"),
                 QStringLiteral("QString planStepPhase planStepChanged()"),
                 QStringLiteral("QString inputMode inputModeChanged(QString) writable"),
             }));

    QCOMPARE(Members::methods(type, Kind::Signal),
             (QStringList {
                 QStringLiteral("agentReplied(QString) response"),
                 QStringLiteral("structuredReplyReceived(QString) uiJson"),
                 QStringLiteral("uiActionResult(QString) response"),
                 QStringLiteral("usageReported(int,int) inputTokens,outputTokens"),
                 QStringLiteral("toolExecuted(QString,QString) tool,result"),
                 QStringLiteral("thinkingChanged(bool) isThinking"),
                 QStringLiteral("statusChanged(QString) status"),
                 QStringLiteral("errorOccurred(QString) error"),
                 QStringLiteral("rephraseReady(QString,QString) original,rephrased"),
                 QStringLiteral("actionStarted(QString) actionName"),
                 QStringLiteral("actionFinished(QString) actionName"),
                 QStringLiteral("currentAgentChanged(QString) agentId"),
                 QStringLiteral("currentModelChanged(QString) model"),
                 QStringLiteral("activePhaseChanged(QString) phase"),
                 QStringLiteral("routedAgentChanged(QString) agent"),
                 QStringLiteral("planStepChanged()"),
                 QStringLiteral("inputModeChanged(QString) mode"),
             }));
    QStringList operations = Members::methods(type, Kind::Operation);
    operations.sort();
    QCOMPARE(
        operations,
        (QStringList {
            QStringLiteral("cancelRequest()"),
            QStringLiteral("copyToClipboard(QString) text"),
            QStringLiteral("handleUiAction(QString,int,QString) actionType,messageIndex,data"),
            QStringLiteral("isServiceAvailable()"),
            QStringLiteral("rephraseText(QString) text"),
            QStringLiteral("sendIntent(QString) text"),
            QStringLiteral("sendMessageFeedback(QString,int,QString) vote,messageIndex,messageText"),
            QStringLiteral("sendMessageFeedback(QString,int,QString,QString) vote,messageIndex,messageText,userQuery"),
        }));
    QCOMPARE(Members::answers(type), QStringList {QStringLiteral("bool isServiceAvailable()")});
}

void tst_AgentBridgeMembers::readsStoredChoices_data()
{
    QTest::addColumn<QVariant>("storedAgent");
    QTest::addColumn<QVariant>("storedModel");
    QTest::addColumn<QString>("agent");
    QTest::addColumn<QString>("model");

    const auto text = [](const char *value) { return QVariant(QString::fromLatin1(value)); };
    QTest::newRow("none") << QVariant() << QVariant() << "auto"
                          << "";
    QTest::newRow("both") << text("planner") << text("p/m") << "planner"
                          << "p/m";
    QTest::newRow("empty") << text("") << text("") << "auto"
                           << "";
    QTest::newRow("whitespace stays") << text(" a ") << text(" p/m ") << " a "
                                      << " p/m ";
    QTest::newRow("lists") << QVariant(QStringList {QStringLiteral("a"), QStringLiteral("b")})
                           << QVariant(QStringList {QStringLiteral("a"), QStringLiteral("b")}) << "auto"
                           << "";
}

void tst_AgentBridgeMembers::readsStoredChoices()
{
    QFETCH(QVariant, storedAgent);
    QFETCH(QVariant, storedModel);
    if (storedAgent.isValid()) {
        QSettings().setValue(QStringLiteral("omniBar/currentAgent"), storedAgent);
        QSettings().setValue(QStringLiteral("omniBar/currentModel"), storedModel);
    }
    MessageLog log;
    const AgentBridge agent;
    QTEST(agent.currentAgent(), "agent");
    QTEST(agent.currentModel(), "model");
}

void tst_AgentBridgeMembers::choicesAreStored()
{
    MessageLog log;
    {
        AgentBridge agent;
        SignalLog emitted(&agent);
        agent.setCurrentAgent(QStringLiteral("planner"));
        QVERIFY(log.has(QtDebugMsg, QStringLiteral("[AgentBridge] Agent changed to: \"planner\"")));
        log.clear();
        QVERIFY(agent.setProperty("currentModel", QStringLiteral("loomra/big")));
        QVERIFY(agent.setProperty("inputMode", QStringLiteral("voice")));
        QCOMPARE(log.lines().size(), 0);
        QCOMPARE(emitted.entries(),
                 (QStringList {QStringLiteral("currentAgentChanged(\"planner\")"),
                               QStringLiteral("currentModelChanged(\"loomra/big\")"),
                               QStringLiteral("inputModeChanged(\"voice\")")}));
    }

    // Read directly from the file that other programs use.
    const QString path = TestSetup::settingsFile();
    QVERIFY2(QFile::exists(path), qPrintable(path));
    const QSettings file(path, QSettings::IniFormat);
    QCOMPARE(file.allKeys(),
             (QStringList {QStringLiteral("omniBar/currentAgent"), QStringLiteral("omniBar/currentModel")}));
    QCOMPARE(file.value(QStringLiteral("omniBar/currentAgent")).toString(), QStringLiteral("planner"));
    QCOMPARE(file.value(QStringLiteral("omniBar/currentModel")).toString(), QStringLiteral("loomra/big"));

    const AgentBridge next;
    QCOMPARE(next.currentAgent(), QStringLiteral("planner"));
    QCOMPARE(next.currentModel(), QStringLiteral("loomra/big"));
    QCOMPARE(next.inputMode(), QStringLiteral("text"));
}

void tst_AgentBridgeMembers::writingTheSameValueDoesNothing()
{
    MessageLog log;
    AgentBridge agent;
    SignalLog emitted(&agent);
    log.clear();
    agent.setCurrentAgent(QStringLiteral("auto"));
    agent.setCurrentModel(QString());
    agent.setInputMode(QStringLiteral("text"));
    QCOMPARE(emitted.entries(), QStringList());
    QCOMPARE(log.lines().size(), 0);
    QVERIFY(!QSettings().contains(QStringLiteral("omniBar/currentAgent")));
    QVERIFY(!QSettings().contains(QStringLiteral("omniBar/currentModel")));
}

REGISTER_TEST(tst_AgentBridgeMembers, QCoreApplication)
#include "tst_AgentBridgeMembers.moc"
