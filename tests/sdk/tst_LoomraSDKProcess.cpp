// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigManager.h"
#include "FakePath.h"
#include "Files.h"
#include "Json.h"
#include "LoomraSDK.h"
#include "MessageLog.h"
#include "PrivateNetwork.h"
#include "ScopedEnvironment.h"
#include "ScriptedBridge.h"
#include "SignalLog.h"
#include "SingleShots.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "Timeouts.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWebSocket>

#include <csignal>
#include <memory>

namespace
{

const QString s_down = QStringLiteral("connectedChanged() readyChanged()");

//! A bridge that runs but does nothing.
constexpr char s_idle[] = "setInterval(() => {}, 1000);";

} // namespace

// The bridge as a child process: start, failures, restart and end.
class tst_LoomraSDKProcess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void runsTheBridge();
    void startsItOnce();
    void reportsAMissingScript();
    void reportsMissingNode();
    void endsGracefully();
    void endsWithAnError();
    void crashes();
    void restartsAfterAGracefulEndWithConnection();
    void comesBackAfterACrash();
    void resetsTheFlagsWhenTheChildEnds();
    void readsManyMegabytes();
    void addsAReaderPerStart();
    void passesTheEnvironment();
    void closesTheConnectionFirst();
    void sendsACloseReason();
    void stopEndsTheTimer();
    void doesNotStartTheService();
    void killsAChildThatIgnoresSigterm();
    void executorPathRestarts();
    void executorPathWithoutChild();
    void executorPathFromTheEnvironment_data();
    void executorPathFromTheEnvironment();

private:
    //! Writes the bridge.js that the next client starts.
    void write(const char *script);
    void make();
    //! Starts a client with the bundled bridge.
    void startBundledBridge();
    //! Waits until the client is ready. Ends the delay before its first attempt to connect as soon as the bridge
    //! listens.
    bool waitForReady();
    QProcess *child() const { return m_sdk->findChild<QProcess *>(); }
    bool isRunning() const { return child()->state() == QProcess::Running; }
    QTimer *reconnectTimer() const { return m_sdk->findChild<QTimer *>(QStringLiteral("reconnectTimer")); }
    void expireReconnectTimer();
    QString takeSignals() { return m_emitted->take().join(QLatin1Char(' ')); }

    std::unique_ptr<MessageLog> m_log;
    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<ConfigManager> m_config;
    std::unique_ptr<LoomraSDK> m_sdk;
    std::unique_ptr<SignalLog> m_emitted;
    int m_startsSeen = 0;
};

void tst_LoomraSDKProcess::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_LoomraSDKProcess::init()
{
    m_log = std::make_unique<MessageLog>();
    m_startsSeen = 0;
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
    qputenv("LOOMRA_BRIDGE_PATH", QFile::encodeName(m_directory->path()));
    qunsetenv("LOOMRA_EXECUTOR_PATH");
}

void tst_LoomraSDKProcess::cleanup()
{
    m_emitted.reset();
    m_sdk.reset();
    m_config.reset();
    m_directory.reset();
    m_log.reset();
}

void tst_LoomraSDKProcess::write(const char *script)
{
    QVERIFY(writeFile(m_directory->filePath(QStringLiteral("bridge.js")), script));
}

void tst_LoomraSDKProcess::make()
{
    m_config = std::make_unique<ConfigManager>();
    m_sdk = std::make_unique<LoomraSDK>(m_config.get());
    m_emitted = std::make_unique<SignalLog>(m_sdk.get());
}

void tst_LoomraSDKProcess::startBundledBridge()
{
    qputenv("LOOMRA_BRIDGE_PATH", qgetenv("TOVICTL_SOURCE_DIR") + "/tools/sdk-bridge");
    make();
    m_sdk->initialize();
}

bool tst_LoomraSDKProcess::waitForReady()
{
    const auto starts = [this] { return m_log->count(QStringLiteral("Bridge output: \"Bridge listening on ")); };
    if (!QTest::qWaitFor([&] { return starts() > m_startsSeen; }, Timeouts::Program)) {
        return false;
    }
    m_startsSeen = starts();
    SingleShots::fire();
    return QTest::qWaitFor([this] { return m_sdk->isReady(); }, Timeouts::Program);
}

void tst_LoomraSDKProcess::expireReconnectTimer()
{
    QVERIFY(QMetaObject::invokeMethod(reconnectTimer(), "timeout"));
}

void tst_LoomraSDKProcess::runsTheBridge()
{
    startBundledBridge();
    QVERIFY(isRunning());
    QTRY_VERIFY_WITH_TIMEOUT(m_sdk->isReady(), Timeouts::Program); // including the real delay
    QVERIFY(!reconnectTimer()->isActive());
    m_sdk->listAgents();
    QTRY_VERIFY(m_emitted->entries().last().startsWith(QLatin1String("agentsListed([{")));
    m_sdk->stopBridgeProcess(true);
    QVERIFY(!isRunning());
    QTRY_VERIFY(!m_sdk->isConnected());
    QCoreApplication::processEvents();
    QVERIFY(!reconnectTimer()->isActive());
}

void tst_LoomraSDKProcess::startsItOnce()
{
    write(s_idle);
    make();
    m_sdk->initialize();
    QVERIFY(isRunning());
    const qint64 pid = child()->processId();
    m_sdk->initialize();
    QCOMPARE(child()->processId(), pid);
    QVERIFY(m_log->has(QtDebugMsg, QStringLiteral("Bridge process already running, skipping start")));
}

void tst_LoomraSDKProcess::reportsAMissingScript()
{
    make();
    m_sdk->initialize();
    QCOMPARE(takeSignals(),
             QStringLiteral("error(\"Bridge script not found: %1\")")
                 .arg(m_directory->filePath(QStringLiteral("bridge.js"))));
    QCOMPARE(child()->state(), QProcess::NotRunning);
    QVERIFY(!reconnectTimer()->isActive());
    // The next call tries again.
    write(s_idle);
    m_sdk->initialize();
    QVERIFY(isRunning());
}

void tst_LoomraSDKProcess::reportsMissingNode()
{
    write(s_idle);
    make();
    const FakePath noPrograms(FakePath::Rest::Hidden);
    m_sdk->initialize();
    QCOMPARE(takeSignals(),
             QStringLiteral("error(\"Bridge process error: 0\") error(\"Failed to start bridge process\")"));
    QVERIFY(!reconnectTimer()->isActive());
}

void tst_LoomraSDKProcess::endsGracefully()
{
    write("process.exit(0);");
    make();
    m_sdk->initialize();
    SingleShots::cancel(); // the attempt to connect
    QTRY_COMPARE(child()->state(), QProcess::NotRunning);
    QCOMPARE(takeSignals(), s_down);
    QVERIFY(m_log->has(QtWarningMsg, QStringLiteral("Bridge exited gracefully (port may be in use). Not restarting.")));
    QCoreApplication::processEvents();
    QVERIFY(!reconnectTimer()->isActive());
}

void tst_LoomraSDKProcess::endsWithAnError()
{
    write("process.exit(3);");
    make();
    m_sdk->initialize();
    SingleShots::cancel(); // the attempt to connect
    QTRY_COMPARE(child()->state(), QProcess::NotRunning);
    QCOMPARE(takeSignals(), s_down);
    QVERIFY(m_log->has(QtWarningMsg, QStringLiteral("Bridge process finished with exit code: 3")));
    QTRY_VERIFY(reconnectTimer()->isActive());
}

void tst_LoomraSDKProcess::crashes()
{
    write(s_idle);
    make();
    m_sdk->initialize();
    m_emitted->take();
    ::kill(static_cast<pid_t>(child()->processId()), SIGKILL);
    QTRY_COMPARE(child()->state(), QProcess::NotRunning);
    const QStringList signalled = m_emitted->take();
    QVERIFY(signalled.contains(QStringLiteral("error(\"Bridge process error: 1\")")));
    QVERIFY(signalled.join(QLatin1Char(' ')).contains(s_down));
    QTRY_VERIFY(reconnectTimer()->isActive()); // the exit code is 9
}

//! A graceful exit alone starts no timer, but the lost connection does.
void tst_LoomraSDKProcess::restartsAfterAGracefulEndWithConnection()
{
    startBundledBridge();
    QVERIFY(waitForReady());
    const qint64 pid = child()->processId();
    ::kill(static_cast<pid_t>(pid), SIGTERM); // it exits with 0
    QTRY_COMPARE(child()->state(), QProcess::NotRunning);
    QVERIFY(m_log->has(QtWarningMsg, QStringLiteral("Bridge exited gracefully (port may be in use). Not restarting.")));
    QTRY_VERIFY(!m_sdk->isConnected());
    QTRY_VERIFY(reconnectTimer()->isActive());
    expireReconnectTimer();
    QVERIFY(isRunning());
    QVERIFY(child()->processId() != pid);
    QVERIFY(waitForReady());
}

void tst_LoomraSDKProcess::comesBackAfterACrash()
{
    startBundledBridge();
    for (int i = 0; i < 2; ++i) {
        QVERIFY(waitForReady());
        ::kill(static_cast<pid_t>(child()->processId()), SIGKILL);
        QTRY_COMPARE(child()->state(), QProcess::NotRunning);
        QVERIFY(!m_sdk->isReady());
        QTRY_VERIFY(reconnectTimer()->isActive());
        expireReconnectTimer();
        QVERIFY(isRunning());
    }
    QVERIFY(waitForReady());
    m_sdk->listAgents();
    QTRY_VERIFY(m_emitted->entries().last().startsWith(QLatin1String("agentsListed([{")));
}

//! The flags are reset when the child ends, before the socket disconnects.
void tst_LoomraSDKProcess::resetsTheFlagsWhenTheChildEnds()
{
    startBundledBridge();
    QVERIFY(waitForReady());
    m_emitted->take();
    QMetaObject::invokeMethod(m_sdk.get(), "onBridgeProcessFinished", Q_ARG(int, 1),
                              Q_ARG(QProcess::ExitStatus, QProcess::CrashExit));
    QVERIFY(!m_sdk->isConnected());
    QVERIFY(!m_sdk->isReady());
    m_sdk->listAgents();
    QCOMPARE(takeSignals(), s_down + QStringLiteral(" error(\"SDK not ready. Please wait for initialization.\")"));
}

void tst_LoomraSDKProcess::readsManyMegabytes()
{
    write("const line = 'x'.repeat(1023) + '\\n';"
          "for (let i = 0; i < 8192; ++i) (i % 2 ? process.stdout : process.stderr).write(line);"
          "process.stdout.write('', () => process.stderr.write('', () => process.exit(7)));");
    make();
    m_sdk->initialize();
    QTRY_COMPARE_WITH_TIMEOUT(child()->state(), QProcess::NotRunning, 30000);
    QVERIFY(m_log->has(QtWarningMsg, QStringLiteral("Bridge process finished with exit code: 7")));
    qint64 read = 0;
    const auto lines = m_log->lines();
    for (const MessageLog::Line &line : lines) {
        if (line.text.startsWith(QLatin1String("Bridge output:"))) {
            read += line.text.count(QLatin1Char('x'));
        }
    }
    QCOMPARE(read, qint64(8192) * 1023);
}

void tst_LoomraSDKProcess::addsAReaderPerStart()
{
    write("process.stdout.write('hello'); setInterval(() => {}, 1000);");
    make();
    m_sdk->initialize();
    QTRY_COMPARE(m_log->count(QStringLiteral("Bridge output: \"hello\"")), 1);
    m_sdk->stopBridgeProcess(false);
    m_sdk->initialize();
    QTRY_COMPARE(m_log->count(QStringLiteral("Bridge output: \"hello\"")), 2);
    QTRY_COMPARE(m_log->count(QStringLiteral("Bridge output: \"\"")), 1);
}

void tst_LoomraSDKProcess::passesTheEnvironment()
{
    write("require('fs').writeFileSync('seen.tmp', JSON.stringify({ env: process.env, cwd: process.cwd(),"
          " argv: process.argv }));"
          "require('fs').renameSync('seen.tmp', 'seen.json'); setInterval(() => {}, 1000);");
    const ScopedEnvironment routing("LOOMRA_AUTO_AGENT_ROUTING", "false");
    const ScopedEnvironment workspace("LOOMRA_WORKSPACE_INTEL", "1");
    const ScopedEnvironment runtime("LOOMRA_AI_RUNTIME", QByteArray());
    const ScopedEnvironment proxy("https_proxy", "http://[::1]:1");
    make();
    m_sdk->initialize();
    const QString seen = m_directory->filePath(QStringLiteral("seen.json"));
    QTRY_VERIFY(QFile::exists(seen));
    const QJsonObject child = json(contentOf(seen));
    const QJsonObject environment = child.value(QStringLiteral("env")).toObject();
    const auto value = [&](const char *name) { return environment.value(QLatin1String(name)).toString(); };
    QCOMPARE(value("LOOMRA_BRIDGE_PORT"), QStringLiteral("8765"));
    QCOMPARE(value("LOOMRA_AUTO_AGENT_ROUTING"), QStringLiteral("true"));
    QCOMPARE(value("LOOMRA_EXECUTOR_PATH"), QStringLiteral("1"));
    QCOMPARE(value("LOOMRA_WORKSPACE_INTEL"), QStringLiteral("1"));
    QCOMPARE(value("LOOMRA_AI_RUNTIME"), QStringLiteral("0"));
    QVERIFY(!environment.contains(QStringLiteral("https_proxy")));
    QCOMPARE(child.value(QStringLiteral("cwd")).toString(), m_directory->path());
    const QJsonArray arguments = child.value(QStringLiteral("argv")).toArray();
    QCOMPARE(arguments.size(), 2); // node and the script
    QCOMPARE(arguments.at(1).toString(), m_directory->filePath(QStringLiteral("bridge.js")));
}

void tst_LoomraSDKProcess::closesTheConnectionFirst()
{
    startBundledBridge();
    QVERIFY(waitForReady());
    auto *socket = m_sdk->findChild<QWebSocket *>();
    m_sdk->stopBridgeProcess(false);
    QVERIFY(socket->state() != QAbstractSocket::ConnectedState);
    QCOMPARE(child()->exitStatus(), QProcess::NormalExit);
    QCOMPARE(child()->exitCode(), 0);
    // The program goes on, so the child is restarted.
    QTRY_VERIFY(reconnectTimer()->isActive());
}

//! The test listens on the port in place of the child. The purge spares it because it is the same process.
void tst_LoomraSDKProcess::sendsACloseReason()
{
    write(s_idle);
    ScriptedBridge peer;
    make();
    m_sdk->initialize();
    SingleShots::fire();
    QVERIFY(m_log->has(QtDebugMsg, QStringLiteral("Checking for stale processes on port 8765")));
    QVERIFY(peer.waitForConnection());
    QTRY_VERIFY(m_sdk->isConnected());
    m_sdk->stopBridgeProcess(false);
    QVERIFY(!isRunning());
    QWebSocketProtocol::CloseCode code = QWebSocketProtocol::CloseCodeAbnormalDisconnection;
    QString reason;
    QVERIFY(peer.waitForClose(0, &code, &reason));
    QCOMPARE(code, QWebSocketProtocol::CloseCodeNormal);
    QCOMPARE(reason, QStringLiteral("app shutdown"));
}

void tst_LoomraSDKProcess::stopEndsTheTimer()
{
    write("process.exit(3);");
    make();
    m_sdk->initialize();
    QTRY_VERIFY(reconnectTimer()->isActive());
    m_sdk->stopBridgeProcess(true); // after the child has ended
    QVERIFY(!reconnectTimer()->isActive());
    reconnectTimer()->start();
    m_sdk->stopBridgeProcess(true);
    QVERIFY(!reconnectTimer()->isActive());
}

//! A client that owns its bridge doesn't request the user service.
void tst_LoomraSDKProcess::doesNotStartTheService()
{
    write("process.exit(3);");
    make();
    m_sdk->initialize();
    QTRY_VERIFY(reconnectTimer()->isActive());
    m_sdk->reconnectBridge();
    QTRY_VERIFY(m_emitted->entries().contains(QStringLiteral("error(\"WebSocket error: 0\")")));
    expireReconnectTimer();
    QTRY_COMPARE(m_log->count(QStringLiteral("Bridge process finished with exit code: 3")), 2);
    QVERIFY(!QFile::exists(qEnvironmentVariable("TOVICTL_SYSTEMCTL_LOG")));
}

void tst_LoomraSDKProcess::killsAChildThatIgnoresSigterm()
{
    write("process.on('SIGTERM', () => process.stdout.write('not me')); setInterval(() => {}, 1000);"
          "process.stdout.write('deaf');");
    make();
    m_sdk->initialize();
    QTRY_VERIFY(m_log->has(QtDebugMsg, QStringLiteral("Bridge output: \"deaf\"")));
    m_sdk->stopBridgeProcess(true);
    QCOMPARE(child()->state(), QProcess::NotRunning);
    QCOMPARE(child()->exitStatus(), QProcess::CrashExit);
    QVERIFY(m_log->has(QtWarningMsg, QStringLiteral("Bridge did not exit after SIGTERM within 10s; sending SIGKILL")));
}

void tst_LoomraSDKProcess::executorPathRestarts()
{
    startBundledBridge();
    QVERIFY(waitForReady());
    const qint64 pid = child()->processId();
    m_emitted->take();
    m_sdk->setExecutorPathEnabled(false);
    QCOMPARE(m_emitted->entries().first(), QStringLiteral("executorPathEnabledChanged()"));
    QCOMPARE(qgetenv("LOOMRA_EXECUTOR_PATH"), QByteArray("0"));
    QVERIFY(m_log->has(QtDebugMsg, QStringLiteral("Executor path toggled to false — restarting bridge")));
    QVERIFY(!isRunning());
    // The lost connection also triggers a restart. Here it comes first, and the delayed one finds the child running.
    QTRY_VERIFY(reconnectTimer()->isActive());
    const QString skipped = QStringLiteral("Bridge process already running, skipping start");
    QVERIFY(!m_log->has(QtDebugMsg, skipped));
    expireReconnectTimer();
    QVERIFY(isRunning());
    const qint64 next = child()->processId();
    QVERIFY(next != pid);
    QTRY_VERIFY(m_log->has(QtDebugMsg, skipped));
    QCOMPARE(child()->processId(), next);
    QVERIFY(waitForReady());
    // The bridge reports the same value.
    QVERIFY(!m_sdk->isExecutorPathEnabled());
}

void tst_LoomraSDKProcess::executorPathWithoutChild()
{
    make();
    m_sdk->setConnectOnly(true);
    m_sdk->setExecutorPathEnabled(false);
    QCOMPARE(takeSignals(), QStringLiteral("executorPathEnabledChanged()"));
    QCOMPARE(qgetenv("LOOMRA_EXECUTOR_PATH"), QByteArray("0"));
    m_sdk->setExecutorPathEnabled(true);
    QCOMPARE(qgetenv("LOOMRA_EXECUTOR_PATH"), QByteArray("1"));
    QCOMPARE(child()->state(), QProcess::NotRunning);
}

void tst_LoomraSDKProcess::executorPathFromTheEnvironment_data()
{
    QTest::addColumn<QByteArray>("atFirst");
    QTest::addColumn<QByteArray>("atStart");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("on") << QByteArray("1") << QByteArray("1") << true;
    QTest::newRow("off") << QByteArray("False") << QByteArray("False") << false;
    QTest::newRow("switched off before the start") << QByteArray("yes") << QByteArray("0") << false;
    QTest::newRow("switched on before the start") << QByteArray("0") << QByteArray("no") << true;
}

void tst_LoomraSDKProcess::executorPathFromTheEnvironment()
{
    QFETCH(QByteArray, atFirst);
    QFETCH(QByteArray, atStart);
    QFETCH(bool, enabled);
    write(s_idle);
    qputenv("LOOMRA_EXECUTOR_PATH", atFirst);
    make();
    const bool before = m_sdk->isExecutorPathEnabled();
    qputenv("LOOMRA_EXECUTOR_PATH", atStart);
    m_sdk->initialize();
    QCOMPARE(m_sdk->isExecutorPathEnabled(), enabled);
    QCOMPARE(takeSignals(), before == enabled ? QString() : QStringLiteral("executorPathEnabledChanged()"));
}

REGISTER_PRIVATE_NETWORK_TEST(tst_LoomraSDKProcess, QCoreApplication)

#include "tst_LoomraSDKProcess.moc"
