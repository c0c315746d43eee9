// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeSessions.h"
#include "DesktopRun.h"
#include "ScreenReader.h"
#include "VoiceRun.h"

#include "NodeProcess.h"
#include "PrivateNetwork.h"
#include "ScopedEnvironment.h"
#include "Timeouts.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <csignal>
#include <memory>

using namespace std::chrono_literals;

namespace
{

//! A node script that keeps what it prints.
class Script : public NodeProcess
{
public:
    explicit Script(const QString &path)
        : NodeProcess(QStringLiteral("node"), QStringLiteral("require('%1')").arg(path))
    {
    }

    //! Everything that it printed.
    QByteArray output() { return m_output += readAllStandardOutput(); }
    //! Waits until it has printed this line once.
    bool hasPrinted(const QByteArray &line)
    {
        return QTest::qWaitFor([&] { return output().split('\n').count(line) == 1; }, Timeouts::Program);
    }

private:
    QByteArray m_output;
};

//! The process ids of what listens at the bridge's port.
QList<QByteArray> listeners()
{
    QList<QByteArray> pids =
        Program::run({QStringLiteral("-ti"), QStringLiteral(":8765"), QStringLiteral("-sTCP:LISTEN")},
                     QProcessEnvironment::systemEnvironment(), QStringLiteral("lsof"))
            .output.split('\n');
    pids.removeAll({});
    return pids;
}

} // namespace

//! A model that answers through the bundled bridge, from the user's prompt to what the window shows. The model server
//! is a script, model-server.js.
class tst_ModelLife : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void typedPrompt();
    void spokenPrompt();
    void mainWindow();
    void stop();
    void serverKilled();
    void bridgeKilled();
    void noModel();

private:
    bool startServer();
    bool startBridge();
    bool startOmniBar(DesktopRun &run) const;
    static void ask(const DesktopRun &run, const QByteArray &prompt, const QByteArray &sendKey = "Return");
    QStringList lastMessages(int count) const;
    QString lastMessage() const { return lastMessages(1).value(0); }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<ScopedEnvironment> m_homeVariable;
    std::unique_ptr<ScreenReader> m_reader;
    std::unique_ptr<Script> m_server;
    std::unique_ptr<Script> m_bridge;
};

void tst_ModelLife::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    m_homeVariable = std::make_unique<ScopedEnvironment>("HOME", m_home->path().toUtf8());
    m_reader = std::make_unique<ScreenReader>(ScreenReader::Events::None);
}

void tst_ModelLife::cleanup()
{
    // A main window that was killed because its test failed leaves its bridge.
    for (const QByteArray &pid : listeners()) {
        kill(pid.toInt(), SIGKILL);
    }
    m_server.reset();
    m_bridge.reset();
    m_reader.reset();
    m_homeVariable.reset();
    m_home.reset();
}

bool tst_ModelLife::startServer()
{
    m_server = std::make_unique<Script>(qEnvironmentVariable("TOVICTL_SOURCE_DIR")
                                        + QStringLiteral("/tests/program/model-server.js"));
    return m_server->hasPrinted("listening");
}

bool tst_ModelLife::startBridge()
{
    m_bridge = std::make_unique<Script>(BridgeSessions::bundledBridge() + QStringLiteral("/bridge.js"));
    return m_bridge->isReady();
}

//! Starts the OmniBar with the keyboard focus, connected to the bridge.
bool tst_ModelLife::startOmniBar(DesktopRun &run) const
{
    return run.waitForWindow()
        && QTest::qWaitFor([&run] { return run.errors().contains("[AgentBridge] Connected to Loomra bridge\n"); },
                           Timeouts::Program)
        && run.takeKeyboard();
}

void tst_ModelLife::ask(const DesktopRun &run, const QByteArray &prompt, const QByteArray &sendKey)
{
    run.type(prompt);
    run.press(sendKey);
}

//! The last messages that the window shows, without their times.
QStringList tst_ModelLife::lastMessages(int count) const
{
    QStringList messages = m_reader->shown(QStringLiteral("list item"));
    messages.replaceInStrings(QRegularExpression(QStringLiteral("^(\\w+), \\d\\d?:\\d\\d[^:]*: ")),
                              QStringLiteral("\\1: "));
    return messages.mid(messages.size() - count);
}

void tst_ModelLife::typedPrompt()
{
    QVERIFY(startServer() && startBridge());
    DesktopRun run;
    QVERIFY2(startOmniBar(run), run.errors().constData());

    ask(run, "Hello");
    const QStringList first {QStringLiteral("You: Hello"), QStringLiteral("Tovi: The model says: Hello")};
    QTRY_COMPARE_WITH_TIMEOUT(lastMessages(2), first, Timeouts::Program);
    QVERIFY2(m_server->hasPrinted("2 \"Hello\""), m_server->output().constData());

    // The conversation goes on.
    ask(run, "Bye");
    const QStringList second {QStringLiteral("You: Bye"), QStringLiteral("Tovi: The model says: Bye")};
    QTRY_COMPARE_WITH_TIMEOUT(lastMessages(2), second, Timeouts::Program);
    QVERIFY2(m_server->hasPrinted("4 \"Bye\""), m_server->output().constData());

    ask(run, "fail");
    QTRY_COMPARE_WITH_TIMEOUT(lastMessage(),
                              QStringLiteral("Tovi: Error: The model server at 127.0.0.1:8080 failed: out of memory"),
                              Timeouts::Program);

    QVERIFY2(run.closeWindow(), run.errors().constData());
    QCOMPARE(run.unexpectedWords(), QString());
}

void tst_ModelLife::spokenPrompt()
{
    VoiceRun voice(0s, QStringLiteral("Open the dolphin"));
    // A real one takes its place.
    voice.bridge.close();
    QVERIFY(startServer() && startBridge());
    QVERIFY2(voice.start(), voice.program().errors().constData());
    QVERIFY(voice.waitForConnection());

    QVERIFY(voice.wakeAndListen());
    QVERIFY(voice.speak(QStringLiteral("Open the dolphine.")));
    QTRY_COMPARE_WITH_TIMEOUT(voice.piper.text(), QStringLiteral("The model says: Open the Dolphin"),
                              Timeouts::Program);
    QVERIFY2(m_server->hasPrinted("2 \"Open the Dolphin\""), m_server->output().constData());
    QCOMPARE(lastMessage(), QStringLiteral("Tovi: The model says: Open the Dolphin"));
    QVERIFY2(voice.program().closeWindow(), voice.program().errors().constData());
}

void tst_ModelLife::mainWindow()
{
    const ScopedEnvironment path("LOOMRA_BRIDGE_PATH", BridgeSessions::bundledBridge().toUtf8());
    QVERIFY(startServer());
    DesktopRun run({QStringLiteral("--main")});
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("Bridge is ready, sdkInitialized: true\n"), Timeouts::Program);
    QVERIFY(run.takeKeyboard());

    ask(run, "Hello", "ctrl+Return");
    QTRY_COMPARE_WITH_TIMEOUT(lastMessage(), QStringLiteral("Assistant (Assistant): The model says: Hello"),
                              Timeouts::Program);

    QVERIFY2(run.closeWindow(), run.errors().constData());
    QCOMPARE(run.unexpectedWords(), QString());
}

void tst_ModelLife::stop()
{
    QVERIFY(startServer() && startBridge());
    DesktopRun run;
    QVERIFY2(startOmniBar(run), run.errors().constData());

    ask(run, "hold");
    QVERIFY2(m_server->hasPrinted("holding"), m_server->output().constData());
    run.press("Escape");
    QVERIFY2(m_server->hasPrinted("closed"), m_server->output().constData());

    ask(run, "Hello");
    const QStringList messages {QStringLiteral("You: hold"), QStringLiteral("Tovi: _Stopped._"),
                                QStringLiteral("You: Hello"), QStringLiteral("Tovi: The model says: Hello")};
    QTRY_COMPARE_WITH_TIMEOUT(lastMessages(4), messages, Timeouts::Program);
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

void tst_ModelLife::serverKilled()
{
    QVERIFY(startServer() && startBridge());
    DesktopRun run;
    QVERIFY2(startOmniBar(run), run.errors().constData());

    ask(run, "hold");
    QVERIFY2(m_server->hasPrinted("holding"), m_server->output().constData());
    m_server.reset();
    QTRY_COMPARE_WITH_TIMEOUT(lastMessage(),
                              QStringLiteral("Tovi: These words arrive.\n\n(The reply ends here because the model "
                                             "server stopped sending it.)"),
                              Timeouts::Program);

    ask(run, "Hello");
    QTRY_COMPARE_WITH_TIMEOUT(lastMessage(),
                              QStringLiteral("Tovi: Error: No model server answers at 127.0.0.1:8080. Start it, then "
                                             "send your prompt again."),
                              Timeouts::Program);

    QVERIFY(startServer());
    ask(run, "Hello");
    QTRY_COMPARE_WITH_TIMEOUT(lastMessage(), QStringLiteral("Tovi: The model says: Hello"), Timeouts::Program);
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

void tst_ModelLife::bridgeKilled()
{
    QVERIFY(startServer() && startBridge());
    DesktopRun run;
    QVERIFY2(startOmniBar(run), run.errors().constData());

    ask(run, "Hello");
    QTRY_COMPARE_WITH_TIMEOUT(lastMessage(), QStringLiteral("Tovi: The model says: Hello"), Timeouts::Program);
    ask(run, "hold");
    QVERIFY2(m_server->hasPrinted("holding"), m_server->output().constData());
    m_bridge.reset();
    QVERIFY2(m_server->hasPrinted("closed"), m_server->output().constData());

    QVERIFY(startBridge());
    QCOMPARE(BridgeSessions::lastMessages(), QByteArray("user: Hello\nassistant: The model says: Hello\nuser: hold"));
    QTRY_COMPARE_WITH_TIMEOUT(run.errors().count("[AgentBridge] Connected to Loomra bridge\n"), 2, Timeouts::Program);
    ask(run, "Bye");
    QTRY_COMPARE_WITH_TIMEOUT(lastMessage(), QStringLiteral("Tovi: The model says: Bye"), Timeouts::Program);
    // In the same session.
    QVERIFY2(m_server->hasPrinted("4 \"hold\\n\\nBye\""), m_server->output().constData());
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

void tst_ModelLife::noModel()
{
    QVERIFY(startBridge());
    DesktopRun run;
    QVERIFY2(startOmniBar(run), run.errors().constData());

    ask(run, "Hello");
    QTRY_VERIFY_WITH_TIMEOUT(lastMessage().startsWith(QStringLiteral("Tovi: You said: Hello\n")), Timeouts::Program);
    ask(run, "help");
    QTRY_VERIFY_WITH_TIMEOUT(lastMessage().startsWith(QStringLiteral("Tovi: ## How to get a model\n")),
                             Timeouts::Program);

    // It is found as soon as it is there.
    QVERIFY(startServer());
    ask(run, "Hello");
    QTRY_COMPARE_WITH_TIMEOUT(lastMessage(), QStringLiteral("Tovi: The model says: Hello"), Timeouts::Program);
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

REGISTER_PRIVATE_NETWORK_TEST(tst_ModelLife, QCoreApplication)

#include "tst_ModelLife.moc"
