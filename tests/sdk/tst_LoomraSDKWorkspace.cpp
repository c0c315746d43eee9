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
    void timerWantsAllFour_data();
    void timerWantsAllFour();
    void timerStopsWithTheConnection();
    void timerBeginsAnew();
    void tickChecks();
    void oneCheckAtATime();
    void lostCheckSilencesTheTimer();

    void unsolicitedCheck_data();
    void unsolicitedCheck();
    void dialogIsWanted_data();
    void dialogIsWanted();
    void noDialogForWhatIsNotShown_data();
    void noDialogForWhatIsNotShown();
    void choices_data();
    void choices();

private:
    //! Connects anew and answers with other capabilities.
    void offer(bool workspaceIntel, bool aiRuntime);
};

void tst_LoomraSDKWorkspace::offer(bool workspaceIntel, bool aiRuntime)
{
    QVERIFY(c->becomeReady(workspaceIntel, aiRuntime));
    c->heard.take();
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
    c->peer.ready();
    c->peer.takeRequest(QStringLiteral("ping"));
    const auto request = c->peer.takeRequest(QStringLiteral("getCapabilities"));
    c->heard.take();
    QVERIFY(c->deliverReply(request.id, answer));
    QCOMPARE(c->sdk.isWorkspaceIntelAvailable(), workspaceIntel);
    QCOMPARE(c->sdk.isAiRuntimeAvailable(), aiRuntime);
    QStringList expected; // both were there before; workspace intelligence first
    if (!workspaceIntel) {
        expected << QStringLiteral("workspaceIntelAvailableChanged()");
    }
    if (!aiRuntime) {
        expected << QStringLiteral("aiRuntimeAvailableChanged()");
    }
    QCOMPARE(c->heard.take(), expected);
}

void tst_LoomraSDKWorkspace::capabilitiesOutliveTheConnection()
{
    QVERIFY(c->lose());
    QVERIFY(c->sdk.isWorkspaceIntelAvailable());
    QVERIFY(c->sdk.isAiRuntimeAvailable());
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

    c->sdk.checkWorkspaceSuggestionNotify();
    QCOMPARE(c->heard.take(),
             QStringList(QStringLiteral(
                 "error(\"Workspace intelligence and AI runtime must both be enabled for this action.\")")));
    c->sdk.refreshWorkspaceIntelPanel();
    c->sdk.refreshWorkspaceTemplates();
    c->sdk.refreshAiRuntimePanel();
    QCOMPARE(c->heard.take(), QStringList());
    c->sdk.setWorkspaceIntelObservationEnabled(true);
    c->sdk.setWorkspaceTemplateEnabled(QStringLiteral("a"), true);
    c->sdk.prepareWorkspaceTemplate(0);
    QCOMPARE(c->heard.take().count(QStringLiteral("error(\"Workspace intelligence is not available.\")")),
             workspaceIntel ? 0 : 3);
    c->sdk.setAiRuntimeEnabled(true);
    c->sdk.setAiRuntimeExecutionGating(QStringLiteral("ask"));
    c->sdk.clearAiRuntimeDismissedSuggestions();
    QCOMPARE(c->heard.take(),
             aiRuntime ? QStringList()
                       : QStringList({QStringLiteral("error(\"AI runtime is not available.\")"),
                                      QStringLiteral("error(\"AI runtime is not available.\")"),
                                      QStringLiteral("error(\"SDK not ready or AI runtime unavailable.\")")}));
    c->sdk.refreshRuntimeHealth(); // wants neither
    c->peer.takeRequest(QStringLiteral("workspaceRuntimeGetHealth"));

    QStringList sent;
    while (!c->peer.isAllTaken()) {
        sent.append(c->peer.takeRequest().method);
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
    c->sdk.refreshWorkspaceIntelPanel();
    const auto settings = c->peer.takeRequest();
    QVERIFY(c->deliverReply(settings.id, QStringLiteral(R"({"observationEnabled":"true","dwellSummary":"old"})")));
    QCOMPARE(c->heard.take(), QStringList());
    const auto summary = c->peer.takeRequest();
    QCOMPARE(summary.text, QStringLiteral(R"({"id":4,"method":"workspaceIntelGetDwellSummary","params":{"days":14}})"));
    QVERIFY(c->deliverReply(summary.id, QStringLiteral(R"({"topApp":"kate"})")));
    QCOMPARE(c->heard.take(),
             QStringList(QStringLiteral(
                 R"(workspaceIntelPanelUpdated({"dwellSummary":{"topApp":"kate"},"observationEnabled":"true"}))")));
}

//! The second request can fail alone: no panel then, and the next refresh begins anew.
void tst_LoomraSDKWorkspace::panelWithoutSummary()
{
    c->sdk.refreshWorkspaceIntelPanel();
    QVERIFY(c->deliverReply(c->peer.takeRequest().id, QStringLiteral(R"({"first":1})")));
    const auto summary = c->peer.takeRequest();
    c->peer.fail(summary, QStringLiteral("no summary"));
    QCOMPARE(c->waitForSignals(1), QStringList(QStringLiteral("error(\"no summary\")")));
    c->sdk.refreshWorkspaceIntelPanel();
    QVERIFY(c->deliverReply(c->peer.takeRequest().id, QStringLiteral(R"({"second":2})")));
    QVERIFY(c->deliverReply(c->peer.takeRequest().id, QStringLiteral("[1]")));
    QCOMPARE(c->heard.take(),
             QStringList(QStringLiteral(R"(workspaceIntelPanelUpdated({"dwellSummary":{},"second":2}))")));
}

void tst_LoomraSDKWorkspace::minutesAreBounded_data()
{
    QTest::addColumn<int>("minutes");
    QTest::addColumn<int>("kept");
    QTest::newRow("none") << 0 << 1;
    QTest::newRow("negative") << -7 << 1;
    QTest::newRow("least") << 1 << 1;
    QTest::newRow("most") << 1440 << 1440;
    QTest::newRow("more") << 5000 << 1440;
}

void tst_LoomraSDKWorkspace::minutesAreBounded()
{
    QFETCH(int, minutes);
    QFETCH(int, kept);
    c->sdk.setWorkspaceSuggestionReminderMinutes(minutes);
    QCOMPARE(c->sdk.workspaceSuggestionReminderMinutes(), kept);
    QCOMPARE(c->config.workspaceSuggestionReminderMinutes(), kept);
    QCOMPARE(c->heard.take(), QStringList(QStringLiteral("workspaceSuggestionReminderMinutesChanged()")));
    c->sdk.setWorkspaceSuggestionReminderMinutes(minutes);
    QCOMPARE(c->heard.take(), QStringList());
    c->sdk.setWorkspaceSuggestionReminderMinutes(5);
}

void tst_LoomraSDKWorkspace::settingsAreStored()
{
    c->sdk.setWorkspaceSuggestionReminderEnabled(true);
    c->sdk.setWorkspaceSuggestionReminderMinutes(17);
    {
        ConfigManager config;
        const LoomraSDK another(&config);
        QCOMPARE(another.isWorkspaceSuggestionReminderEnabled(), true);
        QCOMPARE(another.workspaceSuggestionReminderMinutes(), 17);
    }
    c->sdk.setWorkspaceSuggestionReminderEnabled(false);
    c->sdk.setWorkspaceSuggestionReminderMinutes(5);
}

void tst_LoomraSDKWorkspace::timerWantsAllFour_data()
{
    QTest::addColumn<bool>("isEnabled");
    QTest::addColumn<bool>("workspaceIntel");
    QTest::addColumn<bool>("aiRuntime");
    for (int i = 0; i < 8; ++i) {
        QTest::newRow(qPrintable(QString::number(i, 2))) << bool(i & 4) << bool(i & 2) << bool(i & 1);
    }
}

void tst_LoomraSDKWorkspace::timerWantsAllFour()
{
    QFETCH(bool, isEnabled);
    QFETCH(bool, workspaceIntel);
    QFETCH(bool, aiRuntime);
    c->sdk.setWorkspaceSuggestionReminderEnabled(isEnabled);
    offer(workspaceIntel, aiRuntime);
    const QTimer *timer = c->timer("reminderTimer");
    QCOMPARE(timer->isActive(), isEnabled && workspaceIntel && aiRuntime);
    if (timer->isActive()) {
        QCOMPARE(timer->interval(), 5 * s_minute);
        c->sdk.setWorkspaceSuggestionReminderMinutes(1440);
        QCOMPARE(timer->interval(), 1440 * s_minute);
        c->sdk.setWorkspaceSuggestionReminderMinutes(5);
    }
    c->sdk.setWorkspaceSuggestionReminderEnabled(false);
    QVERIFY(!timer->isActive());
}

void tst_LoomraSDKWorkspace::timerStopsWithTheConnection()
{
    c->sdk.setWorkspaceSuggestionReminderEnabled(true);
    const QTimer *timer = c->timer("reminderTimer");
    QVERIFY(timer->isActive());
    QVERIFY(c->lose());
    QVERIFY(!timer->isActive());
    QVERIFY(c->connect());
    QVERIFY(!timer->isActive());
    QVERIFY(c->becomeReady());
    QVERIFY(timer->isActive());
    c->sdk.stopBridgeProcess(false);
    QVERIFY(!timer->isActive());
    c->sdk.setWorkspaceSuggestionReminderEnabled(false);
}

//! 300 ms after "ready" its phase begins once more.
void tst_LoomraSDKWorkspace::timerBeginsAnew()
{
    c->sdk.setWorkspaceSuggestionReminderEnabled(true);
    QTimer *timer = c->timer("reminderTimer");
    timer->stop();
    QTRY_VERIFY(timer->isActive());
    c->sdk.setWorkspaceSuggestionReminderEnabled(false);
}

void tst_LoomraSDKWorkspace::tickChecks()
{
    c->sdk.setWorkspaceSuggestionReminderEnabled(true);
    c->expire("reminderTimer");
    const auto check = c->peer.takeRequest();
    QCOMPARE(check.method, QStringLiteral("aiRuntimeCheckWorkspaceNotification"));
    QVERIFY(c->log.has(QtDebugMsg, QStringLiteral("LoomraSDK: periodic workspace suggestion check; interval_min=5")));
    c->sdk.setWorkspaceSuggestionReminderEnabled(false);
    c->expire("reminderTimer"); // one that was on its way
    QVERIFY(c->peer.isAllTaken());
}

void tst_LoomraSDKWorkspace::oneCheckAtATime()
{
    c->sdk.setWorkspaceSuggestionReminderEnabled(true);
    c->expire("reminderTimer");
    const auto check = c->peer.takeRequest();
    c->expire("reminderTimer");
    c->sdk.listAgents();
    c->peer.takeRequest(QStringLiteral("listAgents"));
    QVERIFY(c->peer.isAllTaken());
    QVERIFY(c->deliverReply(check.id, QStringLiteral("{}")));
    c->expire("reminderTimer");
    QCOMPARE(c->peer.takeRequest().method, check.method);
    c->sdk.setWorkspaceSuggestionReminderEnabled(false);
}

void tst_LoomraSDKWorkspace::lostCheckSilencesTheTimer()
{
    c->sdk.setWorkspaceSuggestionReminderEnabled(true);
    c->sdk.checkWorkspaceSuggestionNotify();
    const auto lost = c->peer.takeRequest();
    QVERIFY(c->lose());
    QVERIFY(c->connect());
    QVERIFY(c->becomeReady());
    c->expire("reminderTimer");
    c->sdk.checkWorkspaceSuggestionNotify(); // by hand it goes on
    const auto byHand = c->peer.takeRequest();
    QCOMPARE(byHand.method, lost.method);
    QCOMPARE(byHand.id, lost.id + 3); // ping and capabilities between, and no check of the timer
    QVERIFY(c->deliverReply(byHand.id, QStringLiteral("{}")));
    c->expire("reminderTimer");
    c->sdk.listAgents();
    QCOMPARE(c->peer.takeRequest().method, QStringLiteral("listAgents"));
    c->sdk.setWorkspaceSuggestionReminderEnabled(false);
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
    QVERIFY(c->deliver(frame));
    QCOMPARE(c->heard.take(),
             isTaken ? QStringList(QStringLiteral(R"(workspaceSuggestionNotifyResult({"a":1}))")) : QStringList());
}

void tst_LoomraSDKWorkspace::dialogIsWanted_data()
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

void tst_LoomraSDKWorkspace::dialogIsWanted()
{
    QFETCH(QByteArray, wish);
    QFETCH(bool, isWanted);
    const ScopedEnvironment variable("LOOMRA_WORKSPACE_NOTIFY_INAPP", wish);
    c->sdk.checkWorkspaceSuggestionNotify();
    const auto check = c->peer.takeRequest();
    const QString notification = QStringLiteral(R"({"body":"b","title":"t","workspaceId":4})");
    const QString result = QStringLiteral(R"({"clientNotification":%1,"notified":true})").arg(notification);
    QVERIFY(c->deliverReply(check.id, result));
    QStringList expected {QStringLiteral("workspaceSuggestionNotifyResult(%1)").arg(result)};
    if (isWanted) {
        expected << QStringLiteral("workspaceSuggestionShowInAppDialog(\"%1\")").arg(notification);
    }
    QCOMPARE(c->heard.take(), expected);
}

void tst_LoomraSDKWorkspace::noDialogForWhatIsNotShown_data()
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

void tst_LoomraSDKWorkspace::noDialogForWhatIsNotShown()
{
    QFETCH(QString, result);
    const ScopedEnvironment variable("LOOMRA_WORKSPACE_NOTIFY_INAPP", "1");
    c->sdk.checkWorkspaceSuggestionNotify();
    QVERIFY(c->deliverReply(c->peer.takeRequest().id, result));
    QCOMPARE(c->heard.take(), QStringList(QStringLiteral("workspaceSuggestionNotifyResult(%1)").arg(result)));
}

void tst_LoomraSDKWorkspace::choices_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("notification");
    QTest::addColumn<QString>("sent"); // method, or nothing
    QTest::addColumn<QString>("heard");
    const auto row = [](const char *name, const char *action, const char *notification, const char *sent,
                        const char *heard = "") {
        QTest::newRow(name) << QString::fromUtf8(action) << QString::fromUtf8(notification) << QString::fromUtf8(sent)
                            << QString::fromUtf8(heard);
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
    QFETCH(QString, heard);
    c->sdk.applyWorkspaceSuggestionAction(action, notification);
    QCOMPARE(c->heard.take().join(QLatin1Char('\n')), heard);
    c->sdk.listAgents();
    QCOMPARE(c->peer.takeRequest().method, sent.isEmpty() ? QStringLiteral("listAgents") : sent);
    if (!sent.isEmpty()) {
        c->peer.takeRequest(QStringLiteral("listAgents"));
    }
    // Without a bridge only a review has an effect.
    QVERIFY(c->lose());
    c->heard.take();
    c->sdk.applyWorkspaceSuggestionAction(action, notification);
    QCOMPARE(c->heard.take().join(QLatin1Char('\n')), heard);
}

REGISTER_TEST(tst_LoomraSDKWorkspace, QCoreApplication)

#include "tst_LoomraSDKWorkspace.moc"
