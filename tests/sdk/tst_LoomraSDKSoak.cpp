// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigManager.h"
#include "FakePath.h"
#include "Files.h"
#include "LoomraSDK.h"
#include "MessageLog.h"
#include "PrivateNetwork.h"
#include "ScopedEnvironment.h"
#include "SingleShots.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "WaitUntil.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWebSocket>
#include <QWebSocketServer>

#include <malloc.h>
#include <unistd.h>

#include <csignal>
#include <memory>

namespace
{

// The warm-up lets the pools of sockets, host lookups and processes reach their full size. A leak of one small object
// per round then exceeds the limits below.
constexpr int s_lossesBefore = 200;
constexpr int s_losses = 1000;
constexpr int s_restartsBefore = 10;
constexpr int s_restarts = 50;

// The maximum growth of the heap, in KiB. Each lost connection leaves four open requests here, one of them with a path:
// some 300 bytes, or 240 KiB in all. Each restart adds a signal connection for the child's output: some 300 bytes, or
// 12 KiB. The rest is for the allocator. A leaked socket or process would be some KiB each.
constexpr double s_maximumGrowthByLosses = 400;
constexpr double s_maximumGrowthByRestarts = 64;
//! The maximum growth of the resident memory, in KiB, with fragmentation.
constexpr double s_maximumResidentGrowth = 1024;

//! A peer that has one connection at a time and, unlike ScriptedBridge, keeps no data of earlier ones, because the
//! memory of this process is measured.
class Peer : public QObject
{
public:
    Peer()
    {
        connect(&m_server, &QWebSocketServer::newConnection, this, [this] {
            m_client.reset(m_server.nextPendingConnection());
            connect(m_client.get(), &QWebSocket::textMessageReceived, this, [this] { ++received; });
            m_client->sendTextMessage(QStringLiteral(R"({"type":"ready"})"));
        });
    }

    bool listen() { return m_server.listen(QHostAddress::LocalHost, 8765); }
    //! Drops the connection without a closing handshake. Queued, because deleteLater() only works within the event
    //! loop.
    void drop()
    {
        QMetaObject::invokeMethod(
            m_client.get(), [this] { m_client->abort(); }, Qt::QueuedConnection);
    }

    int received = 0;

private:
    QWebSocketServer m_server {QStringLiteral("bridge"), QWebSocketServer::NonSecureMode};
    std::unique_ptr<QWebSocket> m_client;
};

double residentKiB()
{
    malloc_trim(0); // so that free memory of the allocator isn't counted
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) {
        QTest::qFail("the kernel doesn't tell what is resident", __FILE__, __LINE__);
        return 0;
    }
    return file.readAll().split(' ').at(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024;
}

int openFiles()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot).size();
}

//! Running children and zombies.
int childProcesses()
{
    int children = 0;
    const QStringList processes = QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
    for (const QString &pid : processes) {
        QFile file(QStringLiteral("/proc/%1/stat").arg(pid));
        if (file.open(QIODevice::ReadOnly)) {
            const QByteArray stat = file.readAll();
            // The name can contain anything; state and parent follow its closing bracket.
            children += stat.mid(stat.lastIndexOf(')') + 2).split(' ').at(1).toInt() == getpid();
        }
    }
    return children;
}

struct Figures
{
    double residentKiB;
    double heapKiB; // allocated
    int files;
    int timers;
    int objects;
    int children;
};

//! Measures at rest: ends running delays and waits for the attempts that they start.
Figures figuresOf(const LoomraSDK &sdk)
{
    SingleShots::fire();
    const auto *socket = sdk.findChild<QWebSocket *>();
    const bool isQuiet = waitUntil([socket] {
        const auto state = socket->state();
        return SingleShots::pending().isEmpty()
            && (state == QAbstractSocket::ConnectedState || state == QAbstractSocket::UnconnectedState);
    });
    if (!isQuiet) {
        QTest::qFail("it doesn't come to rest", __FILE__, __LINE__);
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return {residentKiB(),
            static_cast<double>(mallinfo2().uordblks) / 1024,
            openFiles(),
            sdk.findChildren<QTimer *>().size(),
            sdk.findChildren<QObject *>().size(),
            childProcesses()};
}

void print(const char *what, const Figures &figures)
{
    qInfo("%s: %.0f KiB resident, %.0f KiB in use, %d files, %d timers, %d objects, %d children", what,
          figures.residentKiB, figures.heapKiB, figures.files, figures.timers, figures.objects, figures.children);
}

//! @param maximumHeapGrowth in KiB
void compare(const Figures &before, const Figures &after, double maximumHeapGrowth)
{
    print("after the warm-up", before);
    print("at the end", after);
    // One more or less is no leak: a refused socket may or may not be closed yet. A leak would add one per round.
    QVERIFY2(qAbs(after.files - before.files) <= 1,
             qPrintable(QStringLiteral("%1 open files became %2").arg(before.files).arg(after.files)));
    QCOMPARE(after.timers, before.timers);
    QCOMPARE(after.objects, before.objects);
    QCOMPARE(after.children, before.children);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // sanitizers keep freed memory
    const double resident = after.residentKiB - before.residentKiB;
    const double heap = after.heapKiB - before.heapKiB;
    QVERIFY2(resident <= s_maximumResidentGrowth, qPrintable(QStringLiteral("%1 KiB more are resident").arg(resident)));
    QVERIFY2(heap <= maximumHeapGrowth, qPrintable(QStringLiteral("%1 KiB more are in use").arg(heap)));
#endif
}

} // namespace

// No resources leak over many lost connections and many restarts of the child.
class tst_LoomraSDKSoak : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void losesTheConnection();
    void losesTheChild();

private:
    void make(bool connectOnly);
    //! Measures again and compares.
    void end(const Figures &before, double maximumHeapGrowth);
    //! As the running out of the reconnect timer does, from the event loop as
    //! well.
    void expire();

    std::unique_ptr<MessageLog> m_log;
    std::unique_ptr<ConfigManager> m_config;
    std::unique_ptr<LoomraSDK> m_sdk;
    QTimer *m_reconnectTimer = nullptr;
};

void tst_LoomraSDKSoak::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_LoomraSDKSoak::init()
{
    m_log = std::make_unique<MessageLog>();
    m_config = std::make_unique<ConfigManager>();
}

void tst_LoomraSDKSoak::cleanup()
{
    m_sdk.reset();
    m_config.reset();
    m_log.reset();
}

void tst_LoomraSDKSoak::expire()
{
    QVERIFY(QMetaObject::invokeMethod(m_reconnectTimer, "timeout", Qt::QueuedConnection));
}

void tst_LoomraSDKSoak::make(bool connectOnly)
{
    m_sdk = std::make_unique<LoomraSDK>(m_config.get());
    m_sdk->setConnectOnly(connectOnly);
    m_reconnectTimer = m_sdk->findChild<QTimer *>(QStringLiteral("reconnectTimer"));
}

void tst_LoomraSDKSoak::end(const Figures &before, double maximumHeapGrowth)
{
    const Figures after = figuresOf(*m_sdk);
    m_sdk.reset();
    m_log.reset(); // let qInfo() print the figures
    compare(before, after, maximumHeapGrowth);
}

void tst_LoomraSDKSoak::losesTheConnection()
{
    Peer peer;
    QVERIFY(peer.listen());
    make(true);
    m_sdk->reconnectBridge();
    Figures before {};
    for (int i = 0; i < s_losses; ++i) {
        // The peer doesn't answer "ping" and "getCapabilities".
        QVERIFY(waitUntil([&] { return m_sdk->isReady() && peer.received == 2 * (i + 1); }));
        if (i == 0 || i == s_lossesBefore) { // twice, because measuring allocates too
            before = figuresOf(*m_sdk);
        }
        peer.drop();
        QVERIFY(waitUntil([this] { return !m_sdk->isConnected() && m_reconnectTimer->isActive(); }));
        m_sdk->readFile(QStringLiteral("/a/path/that/is/kept/%1").arg(i));
        QCOMPARE(m_log->warnings().size(), 1); // the closed connection
        m_log->clear();
        expire();
    }
    QVERIFY(waitUntil([&] { return m_sdk->isReady() && peer.received == 2 * (s_losses + 1); }));
    end(before, s_maximumGrowthByLosses);
}

void tst_LoomraSDKSoak::losesTheChild()
{
    // Only this process is measured, so stand-ins will do: 50 starts of node and lsof take 10 s.
    FakePath path;
    path.add(QStringLiteral("node"), "printf up; exec sleep 1000");
    path.add(QStringLiteral("lsof"), "exit 1");
    const QTemporaryDir directory;
    QVERIFY(writeFile(directory.filePath(QStringLiteral("bridge.js"))));
    const ScopedEnvironment bridge("LOOMRA_BRIDGE_PATH", QFile::encodeName(directory.path()));
    make(false);
    const auto *child = m_sdk->findChild<QProcess *>();
    m_sdk->initialize();
    Figures before {};
    qint64 pid = 0;
    for (int i = 0; i <= s_restarts; ++i) {
        QVERIFY(waitUntil([&] { return child->state() == QProcess::Running && child->processId() != pid; }));
        pid = child->processId();
        QVERIFY(waitUntil([this] { return m_log->has(QtDebugMsg, QStringLiteral("Bridge output: \"up\"")); }));
        m_log->clear();
        if (i == 0 || i == s_restartsBefore) {
            before = figuresOf(*m_sdk);
        }
        if (i < s_restarts) {
            ::kill(static_cast<pid_t>(pid), SIGKILL);
            QVERIFY(waitUntil([child] { return child->state() == QProcess::NotRunning; }));
            expire(); // it need not wait for the timer, nor for the delay before it
                      // would connect
        }
    }
    QCOMPARE(before.children, 1);
    end(before, s_maximumGrowthByRestarts);
}

REGISTER_PRIVATE_NETWORK_TEST(tst_LoomraSDKSoak, QCoreApplication)

#include "tst_LoomraSDKSoak.moc"
