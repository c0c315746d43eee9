// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "TestRegistry.h"
#include "Timeouts.h"

#include "AgentBridge.h"
#include "LoomraSDK.h"

#include <QGuiApplication>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

//! A plan from the request to its undo: the real window, the real clients and the bundled bridge.
class tst_PlanLife : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fromRequestToUndo();
};

void tst_PlanLife::fromRequestToUndo()
{
    Conversation bar;
    bar.expectWarning("[AgentBridge] WebSocket error:");
    bar.bridge.close();
    QProcess demo;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LOOMRA_DEMO_DELAY_MS"), QStringLiteral("200"));
    demo.setProcessEnvironment(environment);
    demo.start(QStringLiteral("node"),
               {qEnvironmentVariable("TOVICTL_SOURCE_DIR") + QStringLiteral("/tools/sdk-bridge/bridge.js")});
    QVERIFY(demo.waitForReadyRead(Timeouts::Program));
    QVERIFY(bar.begin());
    QTRY_COMPARE_WITH_TIMEOUT(bar.property("bridgeStatus").toString(), QStringLiteral("idle"), Timeouts::Program);
    auto *sdk = qobject_cast<LoomraSDK *>(bar.property("sdk").value<QObject *>());
    QVERIFY(sdk);

    // Asked before the client is ready.
    bar.invoke("appendUserMessage", {QStringLiteral("Volume 30 and list my open windows")});
    bar.invoke("requestPlan", {QStringLiteral(" Volume 30 and list my open windows ")});
    QVERIFY(bar.log.count(QStringLiteral("[OmniBar] SDK not ready yet, deferring getPlan until ready")) == 1);
    sdk->setConnectOnly(true);
    sdk->initialize();
    QTRY_VERIFY_WITH_TIMEOUT(bar.isSeen(bar.item("planCard")), Timeouts::Program);
    QVERIFY(bar.settle());
    QCOMPARE(bar.item("planSummary")->property("text").toString(),
             QStringLiteral("Demonstration: nothing on this desktop is changed. Volume 30…"));
    QCOMPARE(bar.textsIn(bar.item("planSteps")),
             (QStringList {QStringLiteral("audio.volume.set {\"level\":30}"), QStringLiteral("window.list")}));

    // Every step reports its phases.
    QStringList phases;
    QObject::connect(bar.agent(), &AgentBridge::planStepChanged, bar.window(), [&] {
        if (QQuickItem *shown = bar.item("planProgressText")) {
            phases.append(shown->property("text").toString());
        }
    });
    bar.setProperty("userExpanded", true); // or the window would make room for the volume
    QVERIFY(bar.settle());
    bar.click("planRunBtn");
    QTRY_COMPARE(
        bar.rows().last(),
        QStringLiteral("assistant: Volume set to 30%. 3 windows open. Demonstration: nothing on this desktop is "
                       "changed. (Undo available)"));
    QCOMPARE(
        phases,
        (QStringList {QStringLiteral("Step 1/2: audio volume set…"), QStringLiteral("Step 1/2: audio volume set ✓"),
                      QStringLiteral("Step 2/2: window list…"), QStringLiteral("Step 2/2: window list ✓")}));

    const QString volumeShown =
        QStringLiteral("assistant: Volume is at 30%. Demonstration: nothing on this desktop is changed.");
    // A plan that only reads runs at once, on the bridge's word.
    bar.invoke("requestPlan", {QStringLiteral("volume")});
    QTRY_COMPARE(bar.rows().last(), volumeShown);

    phases.clear();
    bar.invoke("requestPlan", {QStringLiteral("volume 20 and close the nonesuch")});
    QTRY_VERIFY(bar.isSeen(bar.item("planCard")));
    QVERIFY(bar.settle());
    bar.click("planRunBtn");
    QTRY_COMPARE(bar.rows().last(),
                 QStringLiteral("assistant: Failed: No window is named \"nonesuch\"; Demonstration: "
                                "nothing on this desktop is changed."));
    QCOMPARE(phases.last(), QStringLiteral("Step 2/2: window close ✗"));
    QCOMPARE(bar.property("planDoneLabel").toString(), QStringLiteral("✗ No window is named \"nonesuch\""));

    // What ran before the failure is undone.
    QSignalSpy reverted(sdk, &LoomraSDK::auditReverted);
    const QString action = bar.property("lastActionId").toString();
    bar.click("undoBtn");
    QTRY_COMPARE(reverted.count(), 1);
    QCOMPARE(reverted.first().first().toString(), action);
    QCOMPARE(bar.rows().last(), QStringLiteral("assistant: Undo requested. Changes reverted if possible."));
    bar.invoke("requestPlan", {QStringLiteral("volume")});
    QTRY_COMPARE(bar.rows().last(), volumeShown);

    bar.invoke("requestPlan", {QStringLiteral("change the setting cursor.size to 32")});
    QTRY_VERIFY(bar.isSeen(bar.item("planCard")));
    QVERIFY(bar.settle());
    bar.click("planRunBtn");
    QTRY_COMPARE(bar.rows().last(),
                 QStringLiteral("assistant: Setting applied (cursor.size). Demonstration: nothing on this desktop is "
                                "changed. (Undo available)"));

    // A plan that is never done leaves nothing.
    const int rows = bar.count();
    bar.invoke("requestPlan", {QStringLiteral("shut down")});
    QVERIFY(bar.property("planRequestInFlight").toBool());
    QTRY_VERIFY(!bar.property("planRequestInFlight").toBool());
    QVERIFY(!bar.property("planCardShown").toBool());
    QCOMPARE(bar.count(), rows);

    sdk->stopBridgeProcess(true);
    demo.terminate();
    QVERIFY(demo.waitForFinished());
}

REGISTER_TEST(tst_PlanLife, QGuiApplication)

#include "tst_PlanLife.moc"
