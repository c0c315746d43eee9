// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeSessions.h"
#include "DesktopRun.h"
#include "FaultInjection.h"
#include "Files.h"
#include "MachineFaults.h"
#include "ScreenReader.h"
#include "VoiceRun.h"

#include "Notifications.h"
#include "PrivateNetwork.h"
#include "ScriptedBridge.h"
#include "Timeouts.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <csignal>
#include <memory>

using namespace std::chrono_literals;

namespace
{

//! The view's two clients of the bridge, each with a socket of its own.
constexpr int s_clients = 2;

//! Frames that are no message of a bridge, or hold values of other types than expected.
constexpr const char *s_rubbish[] = {
    "",
    "{",
    "null",
    "[]",
    "7",
    R"("text")",
    "{}",
    R"({"type":7})",
    R"({"type":"event"})",
    R"({"type":"event","payload":7})",
    R"({"type":"event","payload":{"event":{}}})",
    R"({"type":"response","id":{},"payload":[]})",
    R"({"type":"response","id":1,"payload":"text"})",
    R"({"type":"response","id":2,"payload":{"workspaceIntelligence":7,"aiRuntime":[]}})",
    R"({"type":"response","method":"aiRuntimeCheckWorkspaceNotification","payload":{"notified":1,"clientNotification":7}})",
    R"({"type":"ready","sdkInitialized":"maybe"})",
};

const QString s_button = QStringLiteral("push button");

//! What the view says about the agent.
QStringList shows(const char *status)
{
    return {QStringLiteral("Warden Desk\nStatus: ") + QLatin1String(status)};
}

//! A suggestion that the bridge sends unasked, which becomes a notification of the desktop.
void suggest(ScriptedBridge &bridge, const QString &title)
{
    const QJsonObject notification {{QStringLiteral("title"), title}};
    const QJsonObject payload {{QStringLiteral("notified"), true},
                               {QStringLiteral("clientNotification"), notification}};
    const QJsonObject frame {{QStringLiteral("type"), QStringLiteral("response")},
                             {QStringLiteral("method"), QStringLiteral("aiRuntimeCheckWorkspaceNotification")},
                             {QStringLiteral("payload"), payload}};
    bridge.sendRaw(QString::fromUtf8(QJsonDocument(frame).toJson(QJsonDocument::Compact)));
}

bool waitUntilReady(ScriptedBridge &bridge, DesktopRun &run)
{
    const auto timesReady = [&run] { return run.errors().count("Bridge is ready, sdkInitialized: "); };
    const int before = timesReady();
    const auto isOpen = [&bridge](int client) {
        return bridge.connection(bridge.connectionCount() - client) != nullptr;
    };
    if (!QTest::qWaitFor([&] { return bridge.connectionCount() >= s_clients && isOpen(1) && isOpen(2); },
                         Timeouts::Program)) {
        return false;
    }
    bridge.ready();
    return QTest::qWaitFor([&] { return timesReady() > before; }, Timeouts::Program);
}

} // namespace

//! What the tray view shows and keeps when something around it fails.
class tst_TrayFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void machine_data() { MachineFaults::addRows(); }
    void machine();
    void debugLogOnAFullDisk();
    void noAudioAndNoNotificationServer();
    void bridgeCannotRun();
    void bridgeHangsAndIsKilled();
    void bridgeSendsRubbish();
    void bridgeEndsBeforeItReplies();
    void suspended();
    void displayGoesAway();

private:
    QString inHome(const char *path) const { return m_home->filePath(QString::fromLatin1(path)); }
    //! Has another program in place of the bundled bridge.
    void replaceBridge(const QByteArray &script);
    //! The bridge that the view runs, 0 if there is none.
    qint64 bridgeOf(const DesktopRun &run) const;
    QStringList status() const { return m_reader->shown(QStringLiteral("label")); }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<ScreenReader> m_reader;
    FaultInjection m_faults;
    QProcessEnvironment m_environment;
};

void tst_TrayFaults::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    m_reader.reset();
    m_reader = std::make_unique<ScreenReader>(ScreenReader::Events::None);
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert(QStringLiteral("HOME"), m_home->path());
    m_environment.insert(QStringLiteral("LOOMRA_BRIDGE_PATH"), BridgeSessions::bundledBridge());
    m_faults.setDisk(FaultState::Works);
    m_faults.setClock(0s);
    m_faults.addTo(m_environment, {m_home->path()});
}

void tst_TrayFaults::replaceBridge(const QByteArray &script)
{
    QVERIFY(writeFile(inHome("bridge/bridge.js"), script));
    m_environment.insert(QStringLiteral("LOOMRA_BRIDGE_PATH"), inHome("bridge"));
}

qint64 tst_TrayFaults::bridgeOf(const DesktopRun &run) const
{
    return contentOf(QStringLiteral("/proc/%1/task/%1/children").arg(run.processId())).trimmed().toLongLong();
}

void tst_TrayFaults::machine()
{
    QFETCH(MachineFaults::Fault, fault);
    MachineFaults::arrange(fault, m_environment, m_faults);
    DesktopRun run({QStringLiteral("--tray")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("Bridge is ready, sdkInitialized: true\n"), Timeouts::Program);
    if (fault == MachineFaults::Fault::NoSessionBus) { // and thus no screen reader
        QVERIFY(run.takeKeyboard());
        for (const char *key : {"Tab", "Tab", "Tab", "Tab", "space"}) {
            run.press(key);
        }
    } else {
        QTRY_COMPARE_WITH_TIMEOUT(status(), shows("idle"), Timeouts::Program);
        QVERIFY(m_reader->press(s_button, QStringLiteral("View Logs")));
    }
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("[TrayIcon] View Logs\n"), Timeouts::Program);
    const qint64 bridge = bridgeOf(run);
    QVERIFY(bridge != 0);
    QVERIFY2(run.closeWindow(), run.errors().constData());
    QVERIFY(!VoiceUser::isAnyAlive({bridge}));
    QVERIFY2(run.errors().contains(MachineFaults::words(fault)), run.errors().constData());
}

void tst_TrayFaults::debugLogOnAFullDisk()
{
    const QString log = inHome(".local/share/loomra-kde/loomra-debug.log");
    m_environment.insert(QStringLiteral("LOOMRA_DEBUG"), QStringLiteral("1"));
    ScriptedBridge bridge;
    DesktopRun run({QStringLiteral("--tray")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QVERIFY(waitUntilReady(bridge, run));
    const QByteArray before = contentOf(log);
    QVERIFY(before.endsWith('\n'));

    m_faults.setDisk(FaultState::Full);
    QVERIFY(waitUntilReady(bridge, run));
    QCOMPARE(contentOf(log), before);
    QCOMPARE(status(), shows("idle"));

    // There is room again.
    m_faults.setDisk(FaultState::Works);
    QVERIFY(waitUntilReady(bridge, run));
    QTRY_VERIFY_WITH_TIMEOUT(contentOf(log).size() > before.size(), Timeouts::Program);
    QVERIFY2(contentOf(log).startsWith(before), contentOf(log).constData());
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

void tst_TrayFaults::noAudioAndNoNotificationServer()
{
    const SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine, m_home->path());
    QVERIFY(writeFile(inHome(".config/kde.org/loomra-kde.conf"), "[voice]\nsttBackend=moonshine\n"));
    ScriptedBridge bridge;
    DesktopRun run({QStringLiteral("--tray")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QVERIFY(waitUntilReady(bridge, run));
    // Intentional: the wake word opens the microphone in this view too.
    QVERIFY(VoiceUser::wake());
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("MoonshineWorker: loaded"), Timeouts::Program);
    suggest(bridge, QStringLiteral("First"));
    QTRY_COMPARE_WITH_TIMEOUT(status(), shows("idle"), Timeouts::Program);

    // When the desktop's notification service is back, it gets what is suggested from then on.
    Notifications server;
    QVERIFY(server.isRunning());
    suggest(bridge, QStringLiteral("Second"));
    QCOMPARE(server.takeShown().value(QLatin1String("title")).toString(), QStringLiteral("Second"));
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

//! Other programs are in the place of the bridge. Each that ends is started again, and so is the bridge at last.
void tst_TrayFaults::bridgeCannotRun()
{
    replaceBridge("process.exit(3)");
    DesktopRun run({QStringLiteral("--tray")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("Bridge process finished with exit code: 3\n"), Timeouts::Program);
    QVERIFY(!status().contains(shows("idle").constFirst()));

    replaceBridge("require('fs').writeSync(1, Buffer.from([...Array(256).keys()])); none();");
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("ReferenceError: none is not defined"), Timeouts::Program);
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("Bridge process finished with exit code: 1\n"), Timeouts::Program);
    QVERIFY(!status().contains(shows("idle").constFirst()));

    replaceBridge("setInterval(() => {}, 1e6); console.log('It hangs')");
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("Bridge output: \"It hangs"), Timeouts::Program);
    QVERIFY(!status().contains(shows("idle").constFirst()));

    replaceBridge("require('" + QFile::encodeName(BridgeSessions::bundledBridge()) + "/bridge.js')");
    QCOMPARE(::kill(static_cast<pid_t>(bridgeOf(run)), SIGKILL), 0);
    QTRY_COMPARE_WITH_TIMEOUT(status(), shows("idle"), Timeouts::Program);
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

void tst_TrayFaults::bridgeHangsAndIsKilled()
{
    DesktopRun run({QStringLiteral("--tray")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_COMPARE_WITH_TIMEOUT(status(), shows("idle"), Timeouts::Program);
    const qint64 first = bridgeOf(run);
    QVERIFY(first != 0);

    // The connection stays open, and the window works.
    QCOMPARE(::kill(static_cast<pid_t>(first), SIGSTOP), 0);
    QVERIFY(m_reader->press(s_button, QStringLiteral("View Logs")));
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("[TrayIcon] View Logs\n"), Timeouts::Program);
    QCOMPARE(status(), shows("idle"));

    QCOMPARE(::kill(static_cast<pid_t>(first), SIGKILL), 0);
    QTRY_COMPARE_WITH_TIMEOUT(status(), shows("disconnected"), Timeouts::Program);
    QTRY_COMPARE_WITH_TIMEOUT(status(), shows("idle"), Timeouts::Program);
    const qint64 second = bridgeOf(run);
    QVERIFY(second != 0 && second != first);
    QVERIFY2(run.closeWindow(), run.errors().constData());
    QVERIFY(!VoiceUser::isAnyAlive({second}));
}

void tst_TrayFaults::bridgeSendsRubbish()
{
    ScriptedBridge bridge;
    Notifications server;
    DesktopRun run({QStringLiteral("--tray")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QVERIFY(waitUntilReady(bridge, run));
    for (const char *frame : s_rubbish) {
        bridge.sendRaw(QString::fromLatin1(frame));
    }
    bridge.sendRaw(QString(100000, QLatin1Char('[')));
    suggest(bridge, QStringLiteral("All the same"));
    QCOMPARE(server.takeShown().value(QLatin1String("title")).toString(), QStringLiteral("All the same"));
    QCOMPARE(status(), shows("idle"));
    QCOMPARE(bridge.connectionCount(), s_clients);

    // Also an error of no request is a failure of the bridge.
    bridge.sendRaw(QStringLiteral(R"({"type":"error","id":"x","error":7})"));
    QTRY_COMPARE_WITH_TIMEOUT(status(), shows("error"), Timeouts::Program);
    bridge.drop();
    QTRY_COMPARE_WITH_TIMEOUT(status(), shows("idle"), Timeouts::Program);
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

void tst_TrayFaults::bridgeEndsBeforeItReplies()
{
    ScriptedBridge bridge;
    DesktopRun run({QStringLiteral("--tray")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    const struct
    {
        const char *request;
        std::chrono::hours clock;
    } rounds[] = {{"ping", 24h}, {"getCapabilities", -24h}};
    for (const auto &[request, clock] : rounds) { // these are all requests of this view
        QVERIFY(waitUntilReady(bridge, run));
        QTRY_COMPARE_WITH_TIMEOUT(status(), shows("idle"), Timeouts::Program);
        QVERIFY(bridge.takeRequest(QLatin1String(request)).id != 0);
        bridge.close();
        QTRY_VERIFY_WITH_TIMEOUT(status() != shows("idle"), Timeouts::Program);
        // The next attempt comes neither at once nor in a day.
        m_faults.setClock(clock);
        QVERIFY(bridge.listen());
    }
    QTRY_COMPARE_WITH_TIMEOUT(status(), shows("idle"), Timeouts::Program);
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

void tst_TrayFaults::suspended()
{
    ScriptedBridge bridge;
    DesktopRun run({QStringLiteral("--tray")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QVERIFY(waitUntilReady(bridge, run));
    QTRY_COMPARE_WITH_TIMEOUT(status(), shows("idle"), Timeouts::Program);
    Notifications server;

    // What comes meanwhile isn't lost.
    run.send(SIGSTOP);
    suggest(bridge, QStringLiteral("Meanwhile"));
    run.send(SIGCONT);
    QCOMPARE(server.takeShown().value(QLatin1String("title")).toString(), QStringLiteral("Meanwhile"));

    // The bridge ends meanwhile.
    run.send(SIGSTOP);
    bridge.close();
    run.send(SIGCONT);
    QTRY_VERIFY_WITH_TIMEOUT(status() != shows("idle"), Timeouts::Program);
    QVERIFY(bridge.listen());
    QTRY_COMPARE_WITH_TIMEOUT(status(), shows("idle"), Timeouts::Program);
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

void tst_TrayFaults::displayGoesAway()
{
    DesktopRun run({QStringLiteral("--tray")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_COMPARE_WITH_TIMEOUT(status(), shows("idle"), Timeouts::Program);
    const qint64 bridge = bridgeOf(run);
    QVERIFY(bridge != 0);
    run.loseDisplay();
    QVERIFY(run.waitForEnd());
    QVERIFY(!run.crashed());
    QCOMPARE(run.exitCode(), 1);
    QVERIFY2(run.errors().contains("The X11 connection broke"), run.errors().constData());
    QTRY_VERIFY_WITH_TIMEOUT(!VoiceUser::isAnyAlive({bridge}), Timeouts::Program);
}

REGISTER_PRIVATE_NETWORK_TEST(tst_TrayFaults, QCoreApplication)
#include "tst_TrayFaults.moc"
