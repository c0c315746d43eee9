// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DebugLogFile.h"

#include "ConfigManager.h"
#include "DebugEventLog.h"
#include "FakePath.h"
#include "Files.h"
#include "LoomraSDK.h"
#include "MessageLog.h"
#include "PrivateNetwork.h"
#include "TestSetup.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <memory>

// The entries in the debug event log about the child process.
class tst_LoomraSDKDebugChild : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void startAndEnd();
    void secondStart();
    void crash();
    void output_data();
    void output();
    void missingScript();
    void missingNode();
    void connectsLater();
    void off_data();
    void off();

private:
    void makeSdk();
    void write(const QByteArray &script);
    //! The events of the child, without those of the connection.
    QStringList takeEvents();
    //! The events up to "Starting bridge process", in the state "not running".
    QStringList beginning() const;
    QProcess *child() const { return m_sdk->findChild<QProcess *>(); }

    std::unique_ptr<MessageLog> m_log;
    std::unique_ptr<DebugLogFile> m_file;
    std::unique_ptr<QTemporaryDir> m_parent;
    //! Its name needs escaping.
    QString m_directory;
    std::unique_ptr<ConfigManager> m_config;
    std::unique_ptr<LoomraSDK> m_sdk;
};

void tst_LoomraSDKDebugChild::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_LoomraSDKDebugChild::init()
{
    m_log = std::make_unique<MessageLog>();
    m_file = std::make_unique<DebugLogFile>("1");
    m_parent = std::make_unique<QTemporaryDir>();
    m_directory = m_parent->filePath(QStringLiteral(R"(a "b" \c)"));
    QVERIFY(QDir().mkpath(m_directory));
    qputenv("LOOMRA_BRIDGE_PATH", QFile::encodeName(m_directory));
    makeSdk();
}

void tst_LoomraSDKDebugChild::cleanup()
{
    m_sdk.reset();
    m_config.reset();
    m_parent.reset();
    m_file.reset();
    m_log.reset();
}

void tst_LoomraSDKDebugChild::makeSdk()
{
    m_config = std::make_unique<ConfigManager>();
    m_sdk = std::make_unique<LoomraSDK>(m_config.get());
}

void tst_LoomraSDKDebugChild::write(const QByteArray &script)
{
    QVERIFY(writeFile(m_directory + QStringLiteral("/bridge.js"), script));
}

QStringList tst_LoomraSDKDebugChild::takeEvents()
{
    return m_file->takeEventsOf({QStringLiteral("initialize"), QStringLiteral("startBridgeProcess"),
                                 QStringLiteral("onBridgeProcessFinished"), QStringLiteral("onBridgeProcessError")});
}

QStringList tst_LoomraSDKDebugChild::beginning() const
{
    const QString path = m_parent->path() + QLatin1String(R"(/a \"b\" \\c)");
    return {QStringLiteral("initialize: initialize called {}"),
            QStringLiteral(R"(startBridgeProcess: startBridgeProcess entry {"state":0,"bridgePath":"%1"})").arg(path),
            QStringLiteral("startBridgeProcess: Starting bridge process ")
                + QStringLiteral(R"({"nodePath":"node","scriptPath":"%1/bridge.js","workingDir":"%1"})").arg(path)};
}

void tst_LoomraSDKDebugChild::startAndEnd()
{
    write("process.stdout.write('up', () => process.exit(3));");
    m_sdk->initialize();
    const qint64 pid = child()->processId();
    QTRY_COMPARE(child()->state(), QProcess::NotRunning);
    QCOMPARE(takeEvents(),
             beginning()
                 + QStringList(
                     {QStringLiteral(R"(startBridgeProcess: Bridge process started {"port":8765,"pid":%1})").arg(pid),
                      QStringLiteral(R"(startBridgeProcess: Bridge stdout {"output":"up"})"),
                      QStringLiteral("onBridgeProcessFinished: Bridge process finished "
                                     R"({"exitCode":3,"exitStatus":0})")}));
}

void tst_LoomraSDKDebugChild::secondStart()
{
    write("setInterval(() => {}, 1000);");
    m_sdk->initialize();
    takeEvents();
    m_sdk->initialize();
    const QStringList events = takeEvents();
    QCOMPARE(events.size(), 2);
    QCOMPARE(events.first(), QStringLiteral("initialize: initialize called {}"));
    QVERIFY(events.last().startsWith(QLatin1String(R"(startBridgeProcess: startBridgeProcess entry {"state":2,)")));
}

void tst_LoomraSDKDebugChild::crash()
{
    write("setInterval(() => {}, 1000);");
    m_sdk->initialize();
    takeEvents();
    ::kill(static_cast<pid_t>(child()->processId()), SIGKILL);
    QTRY_COMPARE(child()->state(), QProcess::NotRunning);
    QCOMPARE(takeEvents(),
             QStringList({QStringLiteral(R"(onBridgeProcessError: Bridge process error {"error":1})"),
                          QStringLiteral(R"(onBridgeProcessFinished: Bridge process finished )"
                                         R"({"exitCode":9,"exitStatus":1})")}));
}

void tst_LoomraSDKDebugChild::output_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("logged");
    QTest::newRow("quotes and backslashes") << QByteArray(R"(process.stdout.write('"a\\b"');)") << R"(\"a\\b\")";
    QTest::newRow("lines") << QByteArray(R"(process.stdout.write('a\nb\n');)") << R"(a\nb\n)";
    QTest::newRow("beyond ASCII") << QByteArray("process.stdout.write('ü 🙂');") << "ü 🙂";
    QTest::newRow("placeholders") << QByteArray("process.stdout.write('%1 %2');") << "%1 %2";
    QTest::newRow("up to a zero byte") << QByteArray(R"(process.stdout.write('a\0b');)") << "a";
    QTest::newRow("standard error too") << QByteArray("process.stderr.write('oh');") << "oh";
}

void tst_LoomraSDKDebugChild::output()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, logged);
    write(script + "setInterval(() => {}, 1000);");
    m_sdk->initialize();
    QTRY_VERIFY(m_log->count(QStringLiteral("Bridge output:")) > 0);
    QCOMPARE(
        takeEvents().last(),
        QString(QLatin1String(R"(startBridgeProcess: Bridge stdout {"output":")") + logged + QLatin1String(R"("})")));
}

void tst_LoomraSDKDebugChild::missingScript()
{
    m_sdk->initialize();
    QStringList expected = beginning();
    expected.last() = QStringLiteral(R"(startBridgeProcess: Bridge script not found {"scriptPath":"%1/bridge.js"})")
                          .arg(DebugEventLog::escaped(m_directory));
    QCOMPARE(takeEvents(), expected);
}

void tst_LoomraSDKDebugChild::missingNode()
{
    write("");
    const FakePath programs(FakePath::Rest::Hidden);
    m_sdk->initialize();
    QCOMPARE(takeEvents(),
             beginning()
                 + QStringList({QStringLiteral(R"(onBridgeProcessError: Bridge process error {"error":0})"),
                                QStringLiteral("startBridgeProcess: Bridge process failed to start ")
                                    + QStringLiteral(R"({"errorString":"%1"})").arg(child()->errorString())}));
    QVERIFY(child()->errorString().contains(QLatin1String("No such file")));
}

void tst_LoomraSDKDebugChild::connectsLater()
{
    write("setInterval(() => {}, 1000);");
    m_sdk->initialize();
    m_file->takeEvents();
    QStringList events;
    QTRY_VERIFY(!(events += m_file->takeEvents()).isEmpty());
    QCOMPARE(events.first(),
             QStringLiteral(R"(connectWebSocket: connectWebSocket called {"port":8765,"currentState":0})"));
}

void tst_LoomraSDKDebugChild::off_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("unset") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
}

void tst_LoomraSDKDebugChild::off()
{
    QFETCH(QByteArray, value);
    m_file.reset();
    m_file = std::make_unique<DebugLogFile>(value);
    write("process.stdout.write('up', () => process.exit(3));");
    m_sdk->initialize();
    QTRY_COMPARE(child()->state(), QProcess::NotRunning);
    QVERIFY(m_log->has(QtDebugMsg, QStringLiteral("Bridge output: \"up\"")));
    QVERIFY(!QFileInfo::exists(QFileInfo(m_file->path()).path()));
}

REGISTER_PRIVATE_NETWORK_TEST(tst_LoomraSDKDebugChild, QCoreApplication)

#include "tst_LoomraSDKDebugChild.moc"
