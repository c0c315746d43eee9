// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeSessions.h"
#include "DesktopRun.h"
#include "Files.h"

#include "PrivateNetwork.h"
#include "Timeouts.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

namespace
{

//! After this time a child that doesn't end is killed, in ms.
constexpr int s_bridgeTimeout = 10000;

//! The process id of the bridge that the program has started; 0 if there is none.
qint64 bridgeOf(const DesktopRun &run)
{
    return Program::run({QStringLiteral("-P"), QString::number(run.processId()), QStringLiteral("-f"),
                         QStringLiteral("bridge.js")},
                        QProcessEnvironment::systemEnvironment(), QStringLiteral("pgrep"))
        .output.trimmed()
        .toLongLong();
}

bool isAlive(qint64 pid)
{
    return kill(static_cast<pid_t>(pid), 0) == 0;
}

} // namespace

//! The started main window with its own real bridge.
class tst_MainWindowLife : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void runsItsBridge();
    void closesWhileTheBridgeHangs();
    void sharesSessionsWithTheOmniBar();

private:
    bool start(DesktopRun &run);
    static void press(const DesktopRun &run, const QByteArray &keys)
    {
        const QList<QByteArray> list = keys.split(' ');
        for (const QByteArray &key : list) {
            run.press(key);
        }
    }

    std::unique_ptr<QTemporaryDir> m_home;
    QProcessEnvironment m_environment;
};

void tst_MainWindowLife::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert(QStringLiteral("HOME"), m_home->path());
    m_environment.insert(QStringLiteral("LOOMRA_BRIDGE_PATH"), BridgeSessions::bundledBridge());
    m_environment.insert(QStringLiteral("LOOMRA_DEMO_SESSIONS"), QStringLiteral("0"));
}

void tst_MainWindowLife::cleanup()
{
    // A failed test has killed its program, whose bridge is left.
    const QList<QByteArray> pids =
        Program::run({QStringLiteral("-ti"), QStringLiteral(":8765"), QStringLiteral("-sTCP:LISTEN")},
                     QProcessEnvironment::systemEnvironment(), QStringLiteral("lsof"))
            .output.split('\n');
    for (const QByteArray &pid : pids) {
        if (pid.toInt() > 0) {
            kill(pid.toInt(), SIGKILL);
        }
    }
}

bool tst_MainWindowLife::start(DesktopRun &run)
{
    return run.waitForWindow()
        && QTest::qWaitFor([&run] { return run.errors().contains("Bridge is ready, sdkInitialized: true\n"); },
                           Timeouts::Program)
        && run.takeKeyboard();
}

void tst_MainWindowLife::runsItsBridge()
{
    DesktopRun run({QStringLiteral("--main")}, m_environment);
    QVERIFY2(start(run), run.errors().constData());
    const qint64 bridge = bridgeOf(run);
    QVERIFY(bridge != 0);

    QVERIFY2(run.closeWindow(), run.errors().constData());

    QVERIFY(!isAlive(bridge));
    QVERIFY2(run.errors().contains("Bridge process finished with exit code: 0\n"), run.errors().constData());
    QCOMPARE(run.unexpectedWords(), QString());
}

void tst_MainWindowLife::closesWhileTheBridgeHangs()
{
    DesktopRun run({QStringLiteral("-m")}, m_environment);
    QVERIFY2(start(run), run.errors().constData());
    const qint64 bridge = bridgeOf(run);
    QVERIFY(bridge != 0);
    QCOMPARE(kill(static_cast<pid_t>(bridge), SIGSTOP), 0);

    QElapsedTimer time;
    time.start();
    run.press("alt+F4");
    QVERIFY(run.waitForEnd());

    QVERIFY2(time.elapsed() >= s_bridgeTimeout, qPrintable(QString::number(time.elapsed())));
    QVERIFY2(time.elapsed() < 2 * s_bridgeTimeout, qPrintable(QString::number(time.elapsed())));
    QVERIFY(!run.crashed());
    QCOMPARE(run.exitCode(), 0);
    QVERIFY(!isAlive(bridge));
}

void tst_MainWindowLife::sharesSessionsWithTheOmniBar()
{
    m_environment.insert(QStringLiteral("LOOMRA_DEMO_DELAY_MS"), QStringLiteral("0"));
    DesktopRun window({QStringLiteral("--main")}, m_environment);
    QVERIFY2(start(window), window.errors().constData());
    const QByteArray toNewButton = "Tab Tab";

    // Past the button of the drawer.
    press(window, toNewButton + " space");
    QTRY_COMPARE_WITH_TIMEOUT(BridgeSessions::names(), QByteArray("[New session]"), Timeouts::Program);
    press(window, "Tab F2 A t t i c Return");
    QTRY_COMPARE_WITH_TIMEOUT(BridgeSessions::names(), QByteArray("[Attic]"), Timeouts::Program);
    press(window, "shift+Tab space");
    QTRY_COMPARE_WITH_TIMEOUT(BridgeSessions::names(), QByteArray("[New session,Attic]"), Timeouts::Program);

    // The other window deletes the current session of this one.
    const QTemporaryDir home;
    m_environment.insert(QStringLiteral("HOME"), home.path());
    m_environment.insert(QStringLiteral("LOOMRA_DEBUG"), QStringLiteral("1"));
    const auto isListed = [&home] {
        return contentOf(home.filePath(QStringLiteral(".local/share/loomra-kde/loomra-debug.log")))
            .contains("listSessions response");
    };
    DesktopRun bar({}, m_environment);
    QVERIFY2(bar.waitForWindow(), bar.errors().constData());
    QTRY_VERIFY_WITH_TIMEOUT(bar.errors().contains("Bridge is ready, sdkInitialized: true\n"), Timeouts::Program);
    QVERIFY(bar.takeKeyboard());
    // The menu completes the command. In the popup, the last stop is the button of the first row.
    press(bar, "slash s e Return");
    QTRY_VERIFY_WITH_TIMEOUT(isListed(), Timeouts::Program);
    press(bar, "shift+Tab Return");
    QTRY_COMPARE_WITH_TIMEOUT(BridgeSessions::names(), QByteArray("[Attic]"), Timeouts::Program);
    QVERIFY2(bar.closeWindow(), bar.errors().constData());

    // The row is still shown here: deleting it again is refused, and the window goes on.
    QVERIFY(window.takeKeyboard());
    press(window, "Tab Up Delete");
    QTRY_VERIFY_WITH_TIMEOUT(window.errors().contains("[MainWindow] There is no session"), Timeouts::Program);
    press(window, "Down Delete");
    QTRY_COMPARE_WITH_TIMEOUT(BridgeSessions::names(), QByteArray("[]"), Timeouts::Program);
    QVERIFY2(window.closeWindow(), window.errors().constData());
}

REGISTER_PRIVATE_NETWORK_TEST(tst_MainWindowLife, QCoreApplication)

#include "tst_MainWindowLife.moc"
