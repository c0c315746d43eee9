// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedSdk.h"

#include "DataDirectories.h"
#include "Notifications.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QGuiApplication>
#include <QJsonArray>
#include <QTest>

// From the bridge's reply to a desktop notification, and from the user's click to a request.
class tst_LoomraSDKNotifications : public ConnectedSdkTest
{
    Q_OBJECT

private Q_SLOTS:
    void actionsReachTheBridge_data();
    void actionsReachTheBridge();
    void unsolicitedSuggestionIsShown();
    void dryRunIsNotShown();

private:
    const std::unique_ptr<Notifications> m_desktop = std::make_unique<Notifications>();
};

namespace
{

constexpr char s_suggestion[] =
    R"({"type":"response","method":"aiRuntimeCheckWorkspaceNotification","id":%1,"payload":)"
    R"({"notified":true,"reason":"%2","clientNotification":{"title":"Writing","body":"Prepare it?",)"
    R"("suggestionId":"s1","suggestionType":"%3","workspaceId":4,)"
    R"("actions":[{"id":"prepare","label":"Now"},{"id":"dismiss","label":"Never"}]}}})";

QString suggestion(quint64 id, const char *reason, const char *type)
{
    return QString::fromLatin1(s_suggestion).arg(QString::number(id), QLatin1String(reason), QLatin1String(type));
}

} // namespace

void tst_LoomraSDKNotifications::actionsReachTheBridge_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("sent");
    const auto row = [](const char *name, const char *type, const char *action, const char *sent) {
        QTest::newRow(name) << QString::fromUtf8(type) << QString::fromUtf8(action) << QString::fromUtf8(sent);
    };
    row("first", "habit", "1", R"("method":"workspaceIntelPrepare","params":{"dryRun":false,"workspaceId":4})");
    row("second", "habit", "2", R"("method":"aiRuntimeDismissSuggestion","params":{"suggestionId":"s1"})");
    row("the notification itself", "habit", "default",
        R"("method":"workspaceIntelPrepare","params":{"dryRun":false,"workspaceId":4})");
    row("a candidate itself", "candidate_review", "default", "");
}

void tst_LoomraSDKNotifications::actionsReachTheBridge()
{
    QFETCH(QString, type);
    QFETCH(QString, action);
    QFETCH(QString, sent);
    fixture->sdk.checkWorkspaceSuggestionNotify();
    QVERIFY(fixture->deliver(suggestion(fixture->peer.takeRequest().id, "", type.toLatin1().constData())));
    fixture->emitted.take();
    const QJsonObject shown = m_desktop->takeShown();
    QCOMPARE(shown.value(QStringLiteral("title")).toString(), QStringLiteral("Writing"));
    m_desktop->invoke(shown, action);
    if (sent.isEmpty()) {
        QCOMPARE(
            fixture->waitForSignals(1),
            QStringList(QStringLiteral(R"(workspaceSuggestionUserChoice({"action":"review","suggestionId":"s1"}))")));
    } else {
        const QString frame = fixture->peer.takeRequest().text;
        QVERIFY2(frame.contains(sent), qPrintable(frame));
    }
}

void tst_LoomraSDKNotifications::unsolicitedSuggestionIsShown()
{
    QVERIFY(fixture->deliver(suggestion(0, "", "habit")));
    QCOMPARE(m_desktop->takeShown().value(QStringLiteral("body")).toString(), QStringLiteral("Prepare it?"));
}

void tst_LoomraSDKNotifications::dryRunIsNotShown()
{
    QVERIFY(fixture->deliver(suggestion(0, "dry_run", "habit")));
    QVERIFY(fixture->deliver(suggestion(0, "", "candidate_review")));
    // Only the second one is shown.
    const QJsonArray actions = m_desktop->takeShown().value(QStringLiteral("actions")).toArray();
    QCOMPARE(actions.at(1).toString(), QStringLiteral("Review"));
}

static int run(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    TestSetup::setAboutData();
    preferDataBesideExecutable(); // for the notifyrc file
    tst_LoomraSDKNotifications test;
    return QTest::qExec(&test, argc, argv);
}

REGISTER_TEST_MAIN(tst_LoomraSDKNotifications, run)

#include "tst_LoomraSDKNotifications.moc"
