// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedSdk.h"
#include "ScopedEnvironment.h"
#include "TestRegistry.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

namespace
{

constexpr int s_minute = 60000; // ms

} // namespace

// Workspace intelligence, AI runtime, and the suggestions of both.
class tst_LoomraSDKWorkspace : public ConnectedSdkTest
{
    Q_OBJECT

private Q_SLOTS:
    void capabilities_data();
    void capabilities();
    void capabilitiesOutliveTheConnection();
    void unavailable_data();
    void unavailable();
    void panelIsOneObject();
    void panelWithoutSummary();

    void minutesAreBounded_data();
    void minutesAreBounded();
    void settingsAreStored();
    void timerNeedsAllConditions_data();
    void timerNeedsAllConditions();
    void timerStopsWithTheConnection();
    void timerRestartsAfterReady();
    void timerSendsACheck();
    void oneCheckAtATime();
    void lostCheckStopsTheTimersChecks();

    void unsolicitedCheck_data();
    void unsolicitedCheck();
    void dialogFollowsTheVariable_data();
    void dialogFollowsTheVariable();
    void noDialogWithoutNotification_data();
    void noDialogWithoutNotification();
    void choices_data();
    void choices();

private:
    //! Sends "ready" again, with other capabilities.
    void offer(bool workspaceIntel, bool aiRuntime);
};

void tst_LoomraSDKWorkspace::offer(bool workspaceIntel, bool aiRuntime)
{
    QVERIFY(fixture->becomeReady(workspaceIntel, aiRuntime));
    fixture->emitted.take();
}

void tst_LoomraSDKWorkspace::capabilities_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("workspaceIntel");
    QTest::addColumn<bool>("aiRuntime");
    const auto row = [](const char *answer, bool workspaceIntel, bool aiRuntime) {
        QTest::newRow(answer) << QString::fromUtf8(answer) << workspaceIntel << aiRuntime;
    };
    row(R"({"workspaceIntelligence":{"enabled":true},"aiRuntime":{"enabled":true}})", true, true);
    row(R"({"workspaceIntelligence":{"enabled":true}})", true, false);
    row(R"({"workspaceIntelligence":{"enabled":"true"},"aiRuntime":{"enabled":1}})", false, false);
    row(R"({"workspaceIntelligence":true,"aiRuntime":{"enabled":true}})", false, true);
    row("{}", false, false);
    row("[]", false, false);
}

void tst_LoomraSDKWorkspace::capabilities()
{
    QFETCH(QString, answer);
    QFETCH(bool, workspaceIntel);
    QFETCH(bool, aiRuntime);
    fixture->peer.ready();
    fixture->peer.takeRequest(QStringLiteral("ping"));
    const auto request = fixture->peer.takeRequest(QStringLiteral("getCapabilities"));
    fixture->emitted.take();
    QVERIFY(fixture->deliverReply(request.id, answer));
    QCOMPARE(fixture->sdk.isWorkspaceIntelAvailable(), workspaceIntel);
    QCOMPARE(fixture->sdk.isAiRuntimeAvailable(), aiRuntime);
    QStringList expected; // both were available before
    if (!workspaceIntel) {
        expected << QStringLiteral("workspaceIntelAvailableChanged()");
    }
    if (!aiRuntime) {
        expected << QStringLiteral("aiRuntimeAvailableChanged()");
    }
    QCOMPARE(fixture->emitted.take(), expected);
}

void tst_LoomraSDKWorkspace::capabilitiesOutliveTheConnection()
{
    QVERIFY(fixture->lose());
    QVERIFY(fixture->sdk.isWorkspaceIntelAvailable());
    QVERIFY(fixture->sdk.isAiRuntimeAvailable());
}

void tst_LoomraSDKWorkspace::unavailable_data()
{
    QTest::addColumn<bool>("workspaceIntel");
    QTest::addColumn<bool>("aiRuntime");
    QTest::newRow("neither") << false << false;
    QTest::newRow("workspace intelligence") << true << false;
    QTest::newRow("AI runtime") << false << true;
}

void tst_LoomraSDKWorkspace::unavailable()
{
    QFETCH(bool, workspaceIntel);
    QFETCH(bool, aiRuntime);
    offer(workspaceIntel, aiRuntime);

    fixture->sdk.checkWorkspaceSuggestionNotify();
    QCOMPARE(fixture->emitted.take(),
             QStringList(QStringLiteral(
                 "error(\"Workspace intelligence and AI runtime must both be enabled for this action.\")")));
    fixture->sdk.refreshWorkspaceIntelPanel();
    fixture->sdk.refreshWorkspaceTemplates();
    fixture->sdk.refreshAiRuntimePanel();
    QCOMPARE(fixture->emitted.take(), QStringList());
    fixture->sdk.setWorkspaceIntelObservationEnabled(true);
    fixture->sdk.setWorkspaceTemplateEnabled(QStringLiteral("a"), true);
    fixture->sdk.prepareWorkspaceTemplate(0);
    QCOMPARE(fixture->emitted.take().count(QStringLiteral("error(\"Workspace intelligence is not available.\")")),
             workspaceIntel ? 0 : 3);
    fixture->sdk.setAiRuntimeEnabled(true);
    fixture->sdk.setAiRuntimeExecutionGating(QStringLiteral("ask"));
    fixture->sdk.clearAiRuntimeDismissedSuggestions();
    QCOMPARE(fixture->emitted.take(),
             aiRuntime ? QStringList()
                       : QStringList({QStringLiteral("error(\"AI runtime is not available.\")"),
                                      QStringLiteral("error(\"AI runtime is not available.\")"),
                                      QStringLiteral("error(\"SDK not ready or AI runtime unavailable.\")")}));
    // These need neither.
    fixture->sdk.refreshRuntimeHealth();
    fixture->peer.takeRequest(QStringLiteral("workspaceRuntimeGetHealth"));
    fixture->sdk.refreshRuntimeJobs();
    fixture->peer.takeRequest(QStringLiteral("workspaceRuntimeListJobs"));

    QStringList sent;
    while (!fixture->peer.isAllTaken()) {
        sent.append(fixture->peer.takeRequest().method);
    }
    QStringList expected;
    if (workspaceIntel) {
        expected << QStringLiteral("workspaceIntelGetSettings") << QStringLiteral("workspaceIntelListApproved")
                 << QStringLiteral("workspaceIntelSetSettings") << QStringLiteral("workspaceIntelSetTemplateEnabled");
    }
    if (aiRuntime) {
        expected << QStringLiteral("aiRuntimeGetStatus") << QStringLiteral("aiRuntimeSetSetting")
                 << QStringLiteral("aiRuntimeSetSetting") << QStringLiteral("aiRuntimeClearDismissedSuggestions");
    }
    QCOMPARE(sent, expected);
}

void tst_LoomraSDKWorkspace::panelIsOneObject()
{
    fixture->sdk.refreshWorkspaceIntelPanel();
    const auto settings = fixture->peer.takeRequest();
    QVERIFY(
        fixture->deliverReply(settings.id, QStringLiteral(R"({"observationEnabled":"true","dwellSummary":"old"})")));
    QCOMPARE(fixture->emitted.take(), QStringList());
    const auto summary = fixture->peer.takeRequest();
    QCOMPARE(summary.text, QStringLiteral(R"({"id":4,"method":"workspaceIntelGetDwellSummary","params":{"days":14}})"));
    QVERIFY(fixture->deliverReply(summary.id, QStringLiteral(R"({"topApp":"kate"})")));
    QCOMPARE(fixture->emitted.take(),
             QStringList(QStringLiteral(
                 R"(workspaceIntelPanelUpdated({"dwellSummary":{"topApp":"kate"},"observationEnabled":"true"}))")));
}

//! If only the second request fails there is no panel, and the next refresh starts from the beginning.
void tst_LoomraSDKWorkspace::panelWithoutSummary()
{
    fixture->sdk.refreshWorkspaceIntelPanel();
    QVERIFY(fixture->deliverReply(fixture->peer.takeRequest().id, QStringLiteral(R"({"first":1})")));
    const auto summary = fixture->peer.takeRequest();
    fixture->peer.fail(summary, QStringLiteral("no summary"));
    QCOMPARE(fixture->waitForSignals(1), QStringList(QStringLiteral("error(\"no summary\")")));
    fixture->sdk.refreshWorkspaceIntelPanel();
    QVERIFY(fixture->deliverReply(fixture->peer.takeRequest().id, QStringLiteral(R"({"second":2})")));
    QVERIFY(fixture->deliverReply(fixture->peer.takeRequest().id, QStringLiteral("[1]")));
    QCOMPARE(fixture->emitted.take(),
             QStringList(QStringLiteral(R"(workspaceIntelPanelUpdated({"dwellSummary":{},"second":2}))")));
}

void tst_LoomraSDKWorkspace::minutesAreBounded_data()
{
    QTest::addColumn<int>("minutes");
    QTest::addColumn<int>("kept");
    QTest::newRow("none") << 0 << 1;
    QTest::newRow("negative") << -7 << 1;
    QTest::newRow("minimum") << 1 << 1;
    QTest::newRow("maximum") << 1440 << 1440;
    QTest::newRow("above the maximum") << 5000 << 1440;
}

void tst_LoomraSDKWorkspace::minutesAreBounded()
{
    QFETCH(int, minutes);
    QFETCH(int, kept);
    fixture->sdk.setWorkspaceSuggestionReminderMinutes(minutes);
    QCOMPARE(fixture->sdk.workspaceSuggestionReminderMinutes(), kept);
    QCOMPARE(fixture->config.workspaceSuggestionReminderMinutes(), kept);
    QCOMPARE(fixture->emitted.take(), QStringList(QStringLiteral("workspaceSuggestionReminderMinutesChanged()")));
    fixture->sdk.setWorkspaceSuggestionReminderMinutes(minutes);
    QCOMPARE(fixture->emitted.take(), QStringList());
    fixture->sdk.setWorkspaceSuggestionReminderMinutes(5);
}

void tst_LoomraSDKWorkspace::settingsAreStored()
{
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(true);
    fixture->sdk.setWorkspaceSuggestionReminderMinutes(17);
    {
        ConfigManager config;
        const LoomraSDK another(&config);
        QCOMPARE(another.isWorkspaceSuggestionReminderEnabled(), true);
        QCOMPARE(another.workspaceSuggestionReminderMinutes(), 17);
    }
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(false);
    fixture->sdk.setWorkspaceSuggestionReminderMinutes(5);
}

void tst_LoomraSDKWorkspace::timerNeedsAllConditions_data()
{
    QTest::addColumn<bool>("isEnabled");
    QTest::addColumn<bool>("workspaceIntel");
    QTest::addColumn<bool>("aiRuntime");
    for (int i = 0; i < 8; ++i) {
        QTest::newRow(qPrintable(QString::number(i, 2))) << bool(i & 4) << bool(i & 2) << bool(i & 1);
    }
}

void tst_LoomraSDKWorkspace::timerNeedsAllConditions()
{
    QFETCH(bool, isEnabled);
    QFETCH(bool, workspaceIntel);
    QFETCH(bool, aiRuntime);
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(isEnabled);
    offer(workspaceIntel, aiRuntime);
    const QTimer *timer = fixture->timer("reminderTimer");
    QCOMPARE(timer->isActive(), isEnabled && workspaceIntel && aiRuntime);
    if (timer->isActive()) {
        QCOMPARE(timer->interval(), 5 * s_minute);
        fixture->sdk.setWorkspaceSuggestionReminderMinutes(1440);
        QCOMPARE(timer->interval(), 1440 * s_minute);
        fixture->sdk.setWorkspaceSuggestionReminderMinutes(5);
    }
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(false);
    QVERIFY(!timer->isActive());
}

void tst_LoomraSDKWorkspace::timerStopsWithTheConnection()
{
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(true);
    const QTimer *timer = fixture->timer("reminderTimer");
    QVERIFY(timer->isActive());
    QVERIFY(fixture->lose());
    QVERIFY(!timer->isActive());
    QVERIFY(fixture->connect());
    QVERIFY(!timer->isActive());
    QVERIFY(fixture->becomeReady());
    QVERIFY(timer->isActive());
    fixture->sdk.stopBridgeProcess(false);
    QVERIFY(!timer->isActive());
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(false);
}

//! The timer is restarted 300 ms after "ready".
void tst_LoomraSDKWorkspace::timerRestartsAfterReady()
{
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(true);
    QTimer *timer = fixture->timer("reminderTimer");
    timer->stop();
    QTRY_VERIFY(timer->isActive());
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(false);
}

void tst_LoomraSDKWorkspace::timerSendsACheck()
{
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(true);
    fixture->expire("reminderTimer");
    const auto check = fixture->peer.takeRequest();
    QCOMPARE(check.method, QStringLiteral("aiRuntimeCheckWorkspaceNotification"));
    QVERIFY(
        fixture->log.has(QtDebugMsg, QStringLiteral("LoomraSDK: periodic workspace suggestion check; interval_min=5")));
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(false);
    fixture->expire("reminderTimer"); // a timeout that was already queued
    QVERIFY(fixture->peer.isAllTaken());
}

void tst_LoomraSDKWorkspace::oneCheckAtATime()
{
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(true);
    fixture->expire("reminderTimer");
    const auto check = fixture->peer.takeRequest();
    fixture->expire("reminderTimer");
    fixture->sdk.listAgents();
    fixture->peer.takeRequest(QStringLiteral("listAgents"));
    QVERIFY(fixture->peer.isAllTaken());
    QVERIFY(fixture->deliverReply(check.id, QStringLiteral("{}")));
    fixture->expire("reminderTimer");
    QCOMPARE(fixture->peer.takeRequest().method, check.method);
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(false);
}

void tst_LoomraSDKWorkspace::lostCheckStopsTheTimersChecks()
{
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(true);
    fixture->sdk.checkWorkspaceSuggestionNotify();
    const auto lost = fixture->peer.takeRequest();
    QVERIFY(fixture->lose());
    QVERIFY(fixture->connect());
    QVERIFY(fixture->becomeReady());
    fixture->expire("reminderTimer");
    fixture->sdk.checkWorkspaceSuggestionNotify(); // a manual check still works
    const auto byHand = fixture->peer.takeRequest();
    QCOMPARE(byHand.method, lost.method);
    QCOMPARE(byHand.id, lost.id + 3); // only ping and capabilities in between
    QVERIFY(fixture->deliverReply(byHand.id, QStringLiteral("{}")));
    fixture->expire("reminderTimer");
    fixture->sdk.listAgents();
    QCOMPARE(fixture->peer.takeRequest().method, QStringLiteral("listAgents"));
    fixture->sdk.setWorkspaceSuggestionReminderEnabled(false);
}

void tst_LoomraSDKWorkspace::unsolicitedCheck_data()
{
    QTest::addColumn<QString>("frame");
    QTest::addColumn<bool>("isTaken");
    const auto row = [](const char *frame, bool isTaken) {
        QTest::newRow(frame) << QString::fromUtf8(frame) << isTaken;
    };
    row(R"({"type":"response","method":"aiRuntimeCheckWorkspaceNotification","payload":{"a":1}})", true);
    row(R"({"type":"response","id":77,"method":"aiRuntimeCheckWorkspaceNotification","payload":{"a":1}})", true);
    row(R"({"type":"response","method":"aiRuntimeCheckWorkspaceNotification","payload":[1]})", false);
    row(R"({"type":"response","method":"aiRuntimeCheckWorkspaceNotification"})", false);
    row(R"({"type":"response","method":"other","payload":{"a":1}})", false);
    row(R"({"method":"aiRuntimeCheckWorkspaceNotification","payload":{"a":1},"result":{"a":1}})", false);
}

void tst_LoomraSDKWorkspace::unsolicitedCheck()
{
    QFETCH(QString, frame);
    QFETCH(bool, isTaken);
    QVERIFY(fixture->deliver(frame));
    QCOMPARE(fixture->emitted.take(),
             isTaken ? QStringList(QStringLiteral(R"(workspaceSuggestionNotifyResult({"a":1}))")) : QStringList());
}

void tst_LoomraSDKWorkspace::dialogFollowsTheVariable_data()
{
    QTest::addColumn<QByteArray>("wish");
    QTest::addColumn<bool>("isWanted");
    QTest::newRow("unset") << QByteArray() << false;
    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("true") << QByteArray("true") << true;
    QTest::newRow("TRUE") << QByteArray("TRUE") << true;
    QTest::newRow("yes") << QByteArray("yes") << false;
    QTest::newRow("0") << QByteArray("0") << false;
}

void tst_LoomraSDKWorkspace::dialogFollowsTheVariable()
{
    QFETCH(QByteArray, wish);
    QFETCH(bool, isWanted);
    const ScopedEnvironment variable("LOOMRA_WORKSPACE_NOTIFY_INAPP", wish);
    fixture->sdk.checkWorkspaceSuggestionNotify();
    const auto check = fixture->peer.takeRequest();
    const QString notification = QStringLiteral(R"({"body":"b","title":"t","workspaceId":4})");
    const QString result = QStringLiteral(R"({"clientNotification":%1,"notified":true})").arg(notification);
    QVERIFY(fixture->deliverReply(check.id, result));
    QStringList expected {QStringLiteral("workspaceSuggestionNotifyResult(%1)").arg(result)};
    if (isWanted) {
        expected << QStringLiteral("workspaceSuggestionShowInAppDialog(\"%1\")").arg(notification);
    }
    QCOMPARE(fixture->emitted.take(), expected);
}

void tst_LoomraSDKWorkspace::noDialogWithoutNotification_data()
{
    QTest::addColumn<QString>("result");
    const auto row = [](const char *result) { QTest::newRow(result) << QString::fromUtf8(result); };
    row(R"({"clientNotification":{"title":"t"},"notified":false})");
    row(R"({"clientNotification":{"title":"t"},"notified":true,"reason":"dry_run"})");
    row(R"({"clientNotification":{"title":""},"notified":true})");
    row(R"({"clientNotification":{},"notified":true})");
    row(R"({"clientNotification":"t","notified":true})");
    row(R"({"notified":true})");
    row(R"({"clientNotification":{"title":"t"},"notified":"true"})");
}

void tst_LoomraSDKWorkspace::noDialogWithoutNotification()
{
    QFETCH(QString, result);
    const ScopedEnvironment variable("LOOMRA_WORKSPACE_NOTIFY_INAPP", "1");
    fixture->sdk.checkWorkspaceSuggestionNotify();
    QVERIFY(fixture->deliverReply(fixture->peer.takeRequest().id, result));
    QCOMPARE(fixture->emitted.take(), QStringList(QStringLiteral("workspaceSuggestionNotifyResult(%1)").arg(result)));
}

void tst_LoomraSDKWorkspace::choices_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("notification");
    QTest::addColumn<QString>("sent"); // method, may be empty
    QTest::addColumn<QString>("emitted");
    const auto row = [](const char *name, const char *action, const char *notification, const char *sent,
                        const char *emitted = "") {
        QTest::newRow(name) << QString::fromUtf8(action) << QString::fromUtf8(notification) << QString::fromUtf8(sent)
                            << QString::fromUtf8(emitted);
    };
    row("dismiss", "dismiss", R"({"suggestionId":"s"})", "aiRuntimeDismissSuggestion");
    row("dismiss nothing", "dismiss", R"({"suggestionId":"","workspaceId":1})", "");
    row("prepare", "prepare", R"({"workspaceId":4.0})", "workspaceIntelPrepare");
    row("prepare a text", "prepare", R"({"workspaceId":"4"})", "");
    row("prepare nothing", "prepare", R"({"suggestionId":"s"})", "");
    row("review", "review", R"({"suggestionId":"s"})", "",
        R"(workspaceSuggestionUserChoice({"action":"review","suggestionId":"s"}))");
    row("review nothing", "review", "{}", "",
        R"(workspaceSuggestionUserChoice({"action":"review","suggestionId":""}))");
    row("something else", "open", R"({"suggestionId":"s","workspaceId":1})", "");
    row("nothing", "", R"({"suggestionId":"s","workspaceId":1})", "");
    row("Dismiss", "Dismiss", R"({"suggestionId":"s"})", "");
    row("no JSON", "review", "not JSON", "");
    row("no object", "review", R"(["s"])", "");
    row("no text", "review", "", "");
}

void tst_LoomraSDKWorkspace::choices()
{
    QFETCH(QString, action);
    QFETCH(QString, notification);
    QFETCH(QString, sent);
    QFETCH(QString, emitted);
    fixture->sdk.applyWorkspaceSuggestionAction(action, notification);
    QCOMPARE(fixture->emitted.take().join(QLatin1Char('\n')), emitted);
    fixture->sdk.listAgents();
    QCOMPARE(fixture->peer.takeRequest().method, sent.isEmpty() ? QStringLiteral("listAgents") : sent);
    if (!sent.isEmpty()) {
        fixture->peer.takeRequest(QStringLiteral("listAgents"));
    }
    // Without a bridge only a review has an effect.
    QVERIFY(fixture->lose());
    fixture->emitted.take();
    fixture->sdk.applyWorkspaceSuggestionAction(action, notification);
    QCOMPARE(fixture->emitted.take().join(QLatin1Char('\n')), emitted);
}

REGISTER_TEST(tst_LoomraSDKWorkspace, QCoreApplication)

#include "tst_LoomraSDKWorkspace.moc"
