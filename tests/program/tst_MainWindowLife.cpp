// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeSessions.h"
#include "DesktopRun.h"

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

    void runsItsBridge();
    void closesWhileTheBridgeHangs();

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
    m_environment.insert(QStringLiteral("LOOMRA_BRIDGE_PATH"), BridgeSessions::demoBridge());
    m_environment.insert(QStringLiteral("LOOMRA_DEMO_SESSIONS"), QStringLiteral("0"));
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

REGISTER_PRIVATE_NETWORK_TEST(tst_MainWindowLife, QCoreApplication)

#include "tst_MainWindowLife.moc"
