// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedAgent.h"
#include "TestRegistry.h"

#include <QTest>

// Events that report progress.
class tst_AgentBridgeEvents : public ConnectedAgentTest
{
    Q_OBJECT

private Q_SLOTS:
    void progressEvents_data();
    void progressEvents();
    void ignoresOtherEvents_data();
    void ignoresOtherEvents();
    void routedAgentIsKnownBeforeThePhase();
    void planStepIsEmittedEvenIfUnchanged();

    void goodReplyClearsTheProgress();
    void errorKeepsTheProgress();
};

void tst_AgentBridgeEvents::progressEvents_data()
{
    QTest::addColumn<QStringList>("payloads");
    QTest::addColumn<QStringList>("emitted");

    const QStringList routed {QStringLiteral("routedAgentChanged(\"a\")"),
                              QStringLiteral("activePhaseChanged(\"routing\")")};
    const QString routing = QStringLiteral(R"({"event":"agent.routed","agent":"a"})");
    const QString executing = QStringLiteral(R"({"event":"plan.phase","phase":"executing"})");
    const QString step = QStringLiteral("planStepChanged()");
    const auto phase = [](const char *name) {
        return QStringLiteral("activePhaseChanged(\"%1\")").arg(QLatin1String(name));
    };

    QTest::newRow("tool") << QStringList {QStringLiteral(
        R"({"event":"tool.executed","tool":"kde_launch_app","result":"ok"})")}
                          << QStringList {QStringLiteral("actionStarted(\"kde_launch_app\")")};
    QTest::newRow("tool twice") << QStringList {QStringLiteral(R"({"event":"tool.executed","tool":"t"})"),
                                                QStringLiteral(R"({"event":"tool.executed","tool":"t"})")}
                                << QStringList {QStringLiteral("actionStarted(\"t\")"),
                                                QStringLiteral("actionStarted(\"t\")")};
    QTest::newRow("empty tool") << QStringList {QStringLiteral(R"({"event":"tool.executed","tool":""})")}
                                << QStringList();
    QTest::newRow("no tool") << QStringList {QStringLiteral(R"({"event":"tool.executed"})")} << QStringList();
    QTest::newRow("tool no string") << QStringList {QStringLiteral(R"({"event":"tool.executed","tool":{"name":"t"}})")}
                                    << QStringList();

    QTest::newRow("routed") << QStringList {routing} << routed;
    QTest::newRow("routed twice") << QStringList {routing, routing} << routed;
    QTest::newRow("routed elsewhere") << QStringList {routing,
                                                      QStringLiteral(R"({"event":"agent.routed","agent":"b"})")}
                                      << (routed + QStringList {QStringLiteral("routedAgentChanged(\"b\")")});
    QTest::newRow("routed again after a phase")
        << QStringList {routing, executing, routing} << (routed + QStringList {phase("executing"), phase("routing")});
    QTest::newRow("routed to nobody") << QStringList {QStringLiteral(R"({"event":"agent.routed"})")}
                                      << QStringList {phase("routing")};

    QTest::newRow("phase") << QStringList {executing} << QStringList {phase("executing")};
    QTest::newRow("phase twice") << QStringList {executing, executing} << QStringList {phase("executing")};
    QTest::newRow("any phase") << QStringList {QStringLiteral(R"({"event":"plan.phase","phase":"<b>50%1</b>"})")}
                               << QStringList {phase("<b>50%1</b>")};
    QTest::newRow("phase cleared") << QStringList {executing, QStringLiteral(R"({"event":"plan.phase"})")}
                                   << QStringList {phase("executing"), phase("")};
    QTest::newRow("no phase at first") << QStringList {QStringLiteral(R"({"event":"plan.phase"})")} << QStringList();

    QTest::newRow("step") << QStringList {QStringLiteral(R"({"event":"plan.step","index":0,"total":2})")}
                          << QStringList {step};
    QTest::newRow("bare step") << QStringList {QStringLiteral(R"({"event":"plan.step"})")} << QStringList {step};
}

void tst_AgentBridgeEvents::progressEvents()
{
    QFETCH(QStringList, payloads);
    const auto deliverAll = [&] {
        for (const QString &payload : qAsConst(payloads)) {
            if (!fixture->deliver(QStringLiteral("{\"type\":\"event\",\"payload\":") + payload + QLatin1Char('}'))) {
                return false;
            }
        }
        return true;
    };
    fixture->prompt();
    QVERIFY(deliverAll());
    QTEST(fixture->emitted.take(), "emitted"); // neither thinkingChanged nor statusChanged
    QCOMPARE(fixture->agent.status(), QStringLiteral("thinking"));
}

void tst_AgentBridgeEvents::ignoresOtherEvents_data()
{
    QTest::addColumn<QString>("frame");
    QTest::newRow("ready") << R"({"type":"event","payload":{"event":"ready"}})";
    QTest::newRow("unknown") << R"({"type":"event","payload":{"event":"weather","tool":"t","phase":"p"}})";
    QTest::newRow("other case") << R"({"type":"event","payload":{"event":"Plan.Phase","phase":"p"}})";
    QTest::newRow("nameless") << R"({"type":"event","payload":{"phase":"p"}})";
    QTest::newRow("name no string") << R"({"type":"event","payload":{"event":["plan.step"]}})";
    QTest::newRow("payload no object") << R"({"type":"event","payload":["plan.step"]})";
    QTest::newRow("bare") << R"({"type":"event"})";
    QTest::newRow("with the id of a request") << R"({"type":"event","id":1,"result":{"response":"hi"}})";
}

void tst_AgentBridgeEvents::ignoresOtherEvents()
{
    QFETCH(QString, frame);
    fixture->prompt();
    QVERIFY(fixture->deliver(frame));
    QCOMPARE(fixture->emitted.take(), QStringList());
    QCOMPARE(fixture->log.lines().size(), 1); // only that it was received
}

void tst_AgentBridgeEvents::routedAgentIsKnownBeforeThePhase()
{
    QString agentAtPhase;
    connect(&fixture->agent, &AgentBridge::activePhaseChanged, this,
            [&] { agentAtPhase = fixture->agent.routedAgent(); });
    QVERIFY(
        fixture->deliver(QStringLiteral(R"({"type":"event","payload":{"event":"agent.routed","agent":"planner"}})")));
    QCOMPARE(agentAtPhase, QStringLiteral("planner"));
    QCOMPARE(fixture->agent.activePhase(), QStringLiteral("routing"));
}

void tst_AgentBridgeEvents::planStepIsEmittedEvenIfUnchanged()
{
    const QString frame = QStringLiteral(
        R"({"type":"event","payload":{"event":"plan.step","index":1.9,"total":3,"capabilityId":"c","phase":"p"}})");
    for (int i = 0; i < 2; ++i) {
        QVERIFY(fixture->deliver(frame));
        QCOMPARE(fixture->emitted.take(), QStringList {QStringLiteral("planStepChanged()")});
        QCOMPARE(fixture->agent.planStepIndex(), 1);
        QCOMPARE(fixture->agent.planStepTotal(), 3);
        QCOMPARE(fixture->agent.planStepCapability(), QStringLiteral("c"));
        QCOMPARE(fixture->agent.planStepPhase(), QStringLiteral("p"));
    }
    // Missing values return to their defaults.
    QVERIFY(fixture->deliver(QStringLiteral(R"({"type":"event","payload":{"event":"plan.step","total":1e300}})")));
    QCOMPARE(fixture->agent.planStepIndex(), -1);
    QCOMPARE(fixture->agent.planStepTotal(), 2147483647);
    QCOMPARE(fixture->agent.planStepCapability(), QString());
    QCOMPARE(fixture->agent.planStepPhase(), QString());
}

void tst_AgentBridgeEvents::goodReplyClearsTheProgress()
{
    const ScriptedBridge::Request request = fixture->prompt();
    fixture->peer.event(QStringLiteral("agent.routed"), json(QStringLiteral(R"({"agent":"planner"})")));
    fixture->peer.event(QStringLiteral("plan.step"),
                        json(QStringLiteral(R"({"index":1,"total":2,"capabilityId":"theme.apply","phase":"run"})")));
    QTRY_COMPARE(fixture->agent.planStepIndex(), 1);
    fixture->emitted.take();

    QVERIFY(fixture->deliver(QStringLiteral(R"({"id":%1,"result":{"response":"hi","ui":{}}})").arg(request.id)));
    QCOMPARE(
        fixture->emitted.take(),
        (QStringList {QStringLiteral("structuredReplyReceived(\"{}\")"), QStringLiteral("activePhaseChanged(\"\")"),
                      QStringLiteral("routedAgentChanged(\"\")"), QStringLiteral("planStepChanged()")}
         + AgentSignals::GoodReply));
    QCOMPARE(fixture->agent.planStepIndex(), -1);
    QCOMPARE(fixture->agent.planStepTotal(), 0);
    QCOMPARE(fixture->agent.planStepCapability(), QString());
    QCOMPARE(fixture->agent.planStepPhase(), QString());
}

void tst_AgentBridgeEvents::errorKeepsTheProgress()
{
    for (const char *frame : {R"({"id":%1,"error":"no"})", R"({"id":%1})", R"({"id":%1,"result":{}})",
                              R"({"type":"error","id":%1,"error":{"message":"no"}})"}) {
        const ScriptedBridge::Request request = fixture->prompt();
        fixture->peer.event(QStringLiteral("agent.routed"), json(QStringLiteral(R"({"agent":"planner"})")));
        fixture->peer.event(QStringLiteral("plan.step"), json(QStringLiteral(R"({"index":1,"total":2})")));
        fixture->peer.event(QStringLiteral("plan.phase"), json(QStringLiteral(R"({"phase":"executing"})")));
        QTRY_COMPARE(fixture->agent.activePhase(), QStringLiteral("executing"));
        QVERIFY(fixture->deliver(QString::fromLatin1(frame).arg(request.id)));
        QCOMPARE(fixture->agent.status(), QStringLiteral("error"));
        QCOMPARE(fixture->agent.activePhase(), QStringLiteral("executing"));
        QCOMPARE(fixture->agent.routedAgent(), QStringLiteral("planner"));
        QCOMPARE(fixture->agent.planStepIndex(), 1);
        QVERIFY(!fixture->log.takeWarnings().isEmpty());
    }
}

REGISTER_TEST(tst_AgentBridgeEvents, QCoreApplication)
#include "tst_AgentBridgeEvents.moc"
