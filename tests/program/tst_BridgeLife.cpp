// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BrokenModule.h"
#include "DesktopRun.h"
#include "Files.h"

#include "NodeProcess.h"
#include "PrivateNetwork.h"
#include "Timeouts.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>
#include <sys/stat.h>

namespace
{

//! For what takes the program some seconds: clearing the port, starting a bridge, a turn of its reconnect timer. In ms.
constexpr int s_exitFailedLoad = 255;
//! The window's two clients of the bridge, each with a socket of its own.
constexpr int s_clients = 2;
constexpr mode_t s_privateFile = 0600;

const QString s_listen =
    QStringLiteral("require('net').createServer().listen(8765, '127.0.0.1', () => console.log('listening'))");

QString bundledBridge()
{
    return qEnvironmentVariable("TOVICTL_SOURCE_DIR") + QStringLiteral("/tools/sdk-bridge");
}

QList<QByteArray> linesOf(const QString &program, const QStringList &arguments)
{
    QList<QByteArray> lines =
        Program::run(arguments, QProcessEnvironment::systemEnvironment(), program).output.split('\n');
    lines.removeAll({});
    return lines;
}

//! The established connections of the bridge's port, seen from the bridge's side.
int connectionCount()
{
    return linesOf(QStringLiteral("ss"),
                   {QStringLiteral("-Htn"), QStringLiteral("state"), QStringLiteral("established"),
                    QStringLiteral("sport = :8765")})
        .size();
}

bool isListening()
{
    return !linesOf(QStringLiteral("ss"), {QStringLiteral("-Hltn"), QStringLiteral("sport = :8765")}).isEmpty();
}

//! The bridges that are children of a process.
QList<qint64> bridgesOf(qint64 parent)
{
    QList<qint64> pids;
    for (const QByteArray &line :
         linesOf(QStringLiteral("pgrep"),
                 {QStringLiteral("-P"), QString::number(parent), QStringLiteral("-f"), QStringLiteral("bridge.js")})) {
        pids.append(line.toLongLong());
    }
    return pids;
}

//! The one bridge that is a child of the program, once both clients are connected; otherwise 0.
qint64 connectedBridgeOf(const DesktopRun &run)
{
    const QList<qint64> pids = bridgesOf(run.processId());
    return pids.size() == 1 && connectionCount() == s_clients ? pids.first() : 0;
}

bool isAlive(qint64 pid)
{
    return kill(static_cast<pid_t>(pid), 0) == 0;
}

} // namespace

//! The bridge beside the built program: a child of the tray view, a service of its own for the OmniBar. The bridge is a
//! real one.
class tst_BridgeLife : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void trayRunsTheBridge();
    void trayEndsItsBridgeOnSignals_data();
    void trayEndsItsBridgeOnSignals();
    void trayBringsAKilledBridgeBack();
    void trayClearsThePort();
    void trayLeavesNoBridgeWhenKilled();
    void trayLeavesOtherProgramsAlone();
    void failedLoadEndsTheBridge();
    void omniBarFindsAService();
    void omniBarLeavesARunningBridge();

private:
    QString inHome(const char *path) const { return m_home->filePath(QString::fromLatin1(path)); }
    QString debugLog() const { return inHome(".local/share/loomra-kde/loomra-debug.log"); }

    std::unique_ptr<QTemporaryDir> m_home;
    QProcessEnvironment m_environment;
};

void tst_BridgeLife::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert(QStringLiteral("HOME"), m_home->path());
    m_environment.insert(QStringLiteral("TOVICTL_SYSTEMCTL_LOG"), inHome("systemctl.log"));
    m_environment.insert(QStringLiteral("LOOMRA_BRIDGE_PATH"), bundledBridge());
    QVERIFY(!isListening());
}

void tst_BridgeLife::cleanup()
{
    // A failed test has killed its program, and the bridge that is left would disturb the next test.
    for (const QByteArray &pid :
         linesOf(QStringLiteral("lsof"),
                 {QStringLiteral("-ti"), QStringLiteral(":8765"), QStringLiteral("-sTCP:LISTEN")})) {
        kill(pid.toInt(), SIGKILL);
    }
    QTRY_VERIFY_WITH_TIMEOUT(!isListening(), Timeouts::Program);
    m_home.reset();
}

void tst_BridgeLife::trayRunsTheBridge()
{
    m_environment.insert(QStringLiteral("LOOMRA_DEBUG"), QStringLiteral("1"));
    qint64 bridge = 0;
    {
        DesktopRun run({QStringLiteral("--tray")}, m_environment);
        QVERIFY2(run.waitForWindow(), run.errors().constData());
        QTRY_VERIFY_WITH_TIMEOUT((bridge = connectedBridgeOf(run)) != 0, Timeouts::Program);
        QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("Bridge is ready, sdkInitialized: true\n"), Timeouts::Program);

        QVERIFY2(run.closeWindow(), run.errors().constData());
        // It exited on SIGTERM; a killed process would have another exit code.
        QVERIFY2(run.errors().contains("Bridge process finished with exit code: 0\n"), run.errors().constData());
        QCOMPARE(run.unexpectedWords(), QString());
        QCOMPARE(run.output(), QByteArray());
    }
    QVERIFY(!isAlive(bridge));
    QVERIFY(!isListening());
    QVERIFY(!QFile::exists(inHome("systemctl.log")));

    // The files of the run: the settings, readable by their owner only, and the event log.
    struct stat settings = {};
    QCOMPARE(stat(QFile::encodeName(inHome(".config/loomra-kderc")).constData(), &settings), 0);
    QCOMPARE(settings.st_mode & ~mode_t(S_IFMT), s_privateFile);
    QList<QByteArray> lines = contentOf(debugLog()).split('\n');
    QCOMPARE(lines.takeLast(), QByteArray());
    QStringList messages;
    for (const QByteArray &line : qAsConst(lines)) {
        QJsonParseError error {};
        const QJsonObject entry = QJsonDocument::fromJson(line, &error).object();
        QVERIFY2(error.error == QJsonParseError::NoError, line.constData());
        QCOMPARE(entry.keys(),
                 (QStringList {QStringLiteral("data"), QStringLiteral("location"), QStringLiteral("message"),
                               QStringLiteral("timestamp")}));
        messages.append(entry.value(QLatin1String("message")).toString());
    }
    QCOMPARE(messages.value(0), QStringLiteral("initialize called"));
    QVERIFY(messages.contains(QStringLiteral("Bridge stdout")));
    QVERIFY(messages.contains(QStringLiteral("Received ready message")));
    QCOMPARE(messages.last(), QStringLiteral("Bridge process finished"));
}

void tst_BridgeLife::trayEndsItsBridgeOnSignals_data()
{
    QTest::addColumn<int>("signal");

    QTest::newRow("end of the session") << SIGTERM;
    QTest::newRow("interrupt key") << SIGINT;
    QTest::newRow("end of the terminal") << SIGHUP;
}

void tst_BridgeLife::trayEndsItsBridgeOnSignals()
{
    QFETCH(int, signal);
    DesktopRun run({QStringLiteral("--tray")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    qint64 bridge = 0;
    QTRY_VERIFY_WITH_TIMEOUT((bridge = connectedBridgeOf(run)) != 0, Timeouts::Program);

    run.send(signal);

    QVERIFY(run.waitForEnd());
    QVERIFY(!run.crashed());
    QCOMPARE(run.exitCode(), 0);
    QVERIFY(!isAlive(bridge));
    QVERIFY2(run.errors().contains("Bridge process finished with exit code: 0\n"), run.errors().constData());
}

void tst_BridgeLife::trayBringsAKilledBridgeBack()
{
    DesktopRun run({QStringLiteral("--tray")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    qint64 first = 0;
    QTRY_VERIFY_WITH_TIMEOUT((first = connectedBridgeOf(run)) != 0, Timeouts::Program);

    QCOMPARE(kill(static_cast<pid_t>(first), SIGKILL), 0);

    qint64 second = 0;
    QTRY_VERIFY_WITH_TIMEOUT((second = connectedBridgeOf(run)) != 0 && second != first, Timeouts::Program);
    QVERIFY2(run.closeWindow(), run.errors().constData());
    QVERIFY(!isAlive(second));
    // It was not requested.
    QVERIFY(!QFile::exists(debugLog()));
}

void tst_BridgeLife::trayClearsThePort()
{
    NodeProcess foreign(QStringLiteral("node"), s_listen);
    QVERIFY(foreign.isReady());

    DesktopRun run({QStringLiteral("-t")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());

    QTRY_COMPARE_WITH_TIMEOUT(foreign.state(), QProcess::NotRunning, Timeouts::Program);
    QCOMPARE(foreign.exitStatus(), QProcess::CrashExit);
    QCOMPARE(foreign.exitCode(), SIGKILL);
    QTRY_VERIFY_WITH_TIMEOUT(connectedBridgeOf(run) != 0, Timeouts::Program);
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

void tst_BridgeLife::trayLeavesNoBridgeWhenKilled()
{
    DesktopRun run({QStringLiteral("-t")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    qint64 bridge = 0;
    QTRY_VERIFY_WITH_TIMEOUT((bridge = connectedBridgeOf(run)) != 0, Timeouts::Program);

    run.send(SIGKILL);

    QVERIFY(run.waitForEnd());
    QTRY_VERIFY_WITH_TIMEOUT(!isListening(), Timeouts::Program);
    QTRY_VERIFY_WITH_TIMEOUT(!isAlive(bridge), Timeouts::Program);
}

void tst_BridgeLife::trayLeavesOtherProgramsAlone()
{
    NodeProcess other(QStringLiteral("other"), s_listen);
    QVERIFY(other.isReady());

    DesktopRun run({QStringLiteral("-t")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());

    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("Bridge exited gracefully (port may be in use). Not restarting.\n"),
                             Timeouts::Program);
    QVERIFY2(run.errors().contains("Bridge process finished with exit code: 0\n"), run.errors().constData());
    QCOMPARE(bridgesOf(run.processId()), QList<qint64>());
    QVERIFY2(run.closeWindow(), run.errors().constData());
    QCOMPARE(other.state(), QProcess::Running);
    QVERIFY(!other.waitForFinished(0));
    QVERIFY(isListening());
}

//! The window's file fails to load when the bridge already runs.
void tst_BridgeLife::failedLoadEndsTheBridge()
{
    QVERIFY(BrokenModule::write(m_home->filePath(QStringLiteral("modules"))));
    m_environment.insert(QStringLiteral("QML2_IMPORT_PATH"), inHome("modules"));
    const Program::Result result = Program::run({QStringLiteral("--main")}, m_environment);

    QVERIFY(result.finished);
    QCOMPARE(result.exitCode, s_exitFailedLoad);
    QVERIFY2(result.errors.contains("Bridge process started successfully"), result.errors.constData());
    QVERIFY2(result.errors.contains("Bridge process finished with exit code: "), result.errors.constData());
    QVERIFY(!isListening());
}

void tst_BridgeLife::omniBarFindsAService()
{
    DesktopRun run({}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    // The service is requested at the start, but not again after failed attempts.
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().count("\nWebSocket error: ") >= 2, Timeouts::Program);

    QProcess service;
    service.start(QStringLiteral("node"), {bundledBridge() + QStringLiteral("/bridge.js")});
    QTRY_COMPARE_WITH_TIMEOUT(connectionCount(), s_clients, Timeouts::Program);
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("Bridge is ready, sdkInitialized: true\n"), Timeouts::Program);
    QCOMPARE(contentOf(inHome("systemctl.log")), QByteArray("--user start tovi-bridge.service\n"));
    QCOMPARE(bridgesOf(run.processId()), QList<qint64>());
    QVERIFY2(run.closeWindow(), run.errors().constData());
    QCOMPARE(run.unexpectedWords(), QString());

    service.terminate();
    QVERIFY(service.waitForFinished());
}

void tst_BridgeLife::omniBarLeavesARunningBridge()
{
    QProcess service;
    service.start(QStringLiteral("node"), {bundledBridge() + QStringLiteral("/bridge.js")});
    QTRY_VERIFY_WITH_TIMEOUT(isListening(), Timeouts::Program);

    DesktopRun run({}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_COMPARE_WITH_TIMEOUT(connectionCount(), s_clients, Timeouts::Program);
    QCOMPARE(bridgesOf(run.processId()), QList<qint64>());
    QVERIFY2(run.closeWindow(), run.errors().constData());

    QCOMPARE(run.unexpectedWords(), QString());
    QCOMPARE(contentOf(inHome("systemctl.log")), QByteArray("--user start tovi-bridge.service\n"));
    QCOMPARE(service.state(), QProcess::Running);
    QVERIFY(!service.waitForFinished(0));
    QVERIFY(isListening());
    QTRY_COMPARE_WITH_TIMEOUT(connectionCount(), 0, Timeouts::Program);
    service.terminate();
    QVERIFY(service.waitForFinished());
}

REGISTER_PRIVATE_NETWORK_TEST(tst_BridgeLife, QCoreApplication)
#include "tst_BridgeLife.moc"
