// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FaultRun.h"

#include "PrivateNetwork.h"
#include "Timeouts.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QWebSocket>

using Window = FaultRun::Window;

namespace
{

void addWindows()
{
    QTest::addColumn<Window>("window");
    QTest::newRow("OmniBar") << Window::OmniBar;
    QTest::newRow("main window") << Window::Main;
}

//! Takes the loopback device of the private network down, which then loses all packets, or up again.
bool setNetwork(bool isUp)
{
    const QString state = isUp ? QStringLiteral("up") : QStringLiteral("down");
    return Program::run({QStringLiteral("link"), QStringLiteral("set"), QStringLiteral("lo"), state},
                        QProcessEnvironment::systemEnvironment(), QStringLiteral("ip"))
               .exitCode
        == 0;
}

//! Frames that are no messages, or messages that mean nothing. "%1" is the id of the open prompt.
QStringList rubbish()
{
    QStringList frames {
        QString(),
        QStringLiteral("null"),
        QStringLiteral("[]"),
        QStringLiteral("1e999"),
        QStringLiteral("\"text\""),
        QStringLiteral("{"),
        QStringLiteral("{\"id\":%1,\"type\":\"response\",\"payload\":{\"response\":\"cut of"),
        QStringLiteral("{}"),
        QStringLiteral("{\"type\":null}"),
        QStringLiteral("{\"type\":[\"ready\"],\"id\":{}}"),
        QStringLiteral("{\"type\":\"unknown\"}"),
        QStringLiteral("{\"type\":\"stream\"}"),
        QStringLiteral("{\"type\":\"ready\",\"sdkInitialized\":\"perhaps\"}"),
        QStringLiteral("{\"type\":\"event\"}"),
        QStringLiteral("{\"type\":\"event\",\"payload\":\"text\"}"),
        QStringLiteral("{\"type\":\"event\",\"payload\":{\"event\":\"plan.step\",\"index\":-1e300,\"total\":\"x\"}}"),
        QStringLiteral("{\"type\":\"event\",\"payload\":{\"event\":\"plan.phase\",\"phase\":{}}}"),
        QStringLiteral("{\"type\":\"event\",\"payload\":{\"event\":\"tool.executed\",\"tool\":7}}"),
        QStringLiteral("{\"type\":\"error\",\"error\":\"text\"}"),
        QStringLiteral("{\"type\":\"response\",\"id\":\"%1\",\"payload\":{\"response\":\"id is a text\"}}"),
        QStringLiteral("{\"type\":\"response\",\"id\":-1,\"payload\":{\"response\":\"negative id\"}}"),
        QStringLiteral("{\"type\":\"response\",\"id\":1e300,\"payload\":{\"response\":\"huge id\"}}"),
        QStringLiteral("{\"type\":\"response\",\"id\":999999,\"payload\":{\"response\":\"unknown id\"}}"),
        QStringLiteral("{\"type\":\"response\",\"payload\":{\"response\":\"no id\"}}"),
        QStringLiteral("{\"type\":\"response\",\"method\":\"aiRuntimeCheckWorkspaceNotification\",\"payload\":"
                       "{\"clientNotification\":[1],\"topSuggestion\":2,\"analysis\":\"x\"}}"),
    };
    frames.append(QString(100000, QLatin1Char('[')));
    frames.append(QStringLiteral("{\"type\":\"") + QString(5000000, QChar(0xfffd)) + QStringLiteral("\"}"));
    frames.append(QStringLiteral("{\"\\u0000\":\"\\ud800\",\"id\":0}"));
    return frames;
}

//! Results of the wrong type for the requests that a window sends at its start.
QList<QJsonValue> wrongResults()
{
    const QJsonArray rows {7, QJsonValue(), QJsonArray(), QJsonObject {{QStringLiteral("id"), QJsonArray()}}};
    return {
        QJsonArray(),
        QStringLiteral("text"),
        QJsonValue(),
        QJsonObject {
            {QStringLiteral("models"), rows}, {QStringLiteral("sessions"), rows}, {QStringLiteral("agents"), rows}},
        QJsonObject {{QStringLiteral("models"), 7}, {QStringLiteral("sessions"), true}, {QStringLiteral("agents"), {}}},
    };
}

//! How a connection ends that isn't one of a bridge.
struct Break
{
    const char *name;
    QByteArray bytes;
    const char *words; //!< in the OmniBar; empty for none
};

const Break s_breaks[] = {
    {"invalid UTF-8", QByteArray("\x81\x02\xff\xfe", 4), ""},
    {"reserved bits", QByteArray("\xf3\x00", 2), ""},
    {"no frame", QByteArray(4096, 'x'), ""},
    {"too large", QByteArray("\x81\x7f\x00\x00\x00\x01\x00\x00\x00\x00", 10), "a message was too large"},
};

//! Presses a button as soon as it exists.
void press(FaultRun &run, const char *name)
{
    const QString role = QStringLiteral("push button");
    QVERIFY2(QTest::qWaitFor([&] { return run.reader.press(role, QLatin1String(name)); }, Timeouts::Program), name);
}

//! Moves the keyboard focus to an object as soon as it exists, and presses a key.
void pressKey(FaultRun &run, const QString &role, const QString &name, const QByteArray &key)
{
    QVERIFY2(QTest::qWaitFor([&] { return run.reader.focus(role, name); }, Timeouts::Program), qPrintable(name));
    run.program().press(key);
}

void openTab(FaultRun &run, const char *name)
{
    pressKey(run, QStringLiteral("page tab"), QLatin1String(name), "space");
}

void closeSettings(FaultRun &run)
{
    run.program().press("Escape");
    const QString input = QStringLiteral("text: Prompt");
    QVERIFY(QTest::qWaitFor([&] { return run.reader.focused() == input; }, Timeouts::Program));
}

//! A request of the OmniBar, in the order in which a user could make them, and what the window shows when the bridge is
//! gone: an accessible name of an object with this role.
struct BarRequest
{
    const char *method;
    void (*make)(FaultRun &run);
    const char *role;
    const char *words;
};

constexpr char s_dot[] = "indicator";
constexpr char s_down[] = "^(Disconnected|Connecting...|Connection error)$";
constexpr char s_connecting[] = "^SDK is connecting...$";

constexpr BarRequest s_barRequests[] = {
    {"messageFeedback", [](FaultRun &run) { press(run, "Good reply"); }, s_dot, s_down},
    {"chat", [](FaultRun &run) { run.ask("def"); }, s_dot, s_down},
    {"cancel",
     [](FaultRun &run) {
         run.ask("ghi");
         run.bridge.takeRequest(QStringLiteral("chat"));
         run.program().press("Escape");
     },
     "list item", "_Stopped._$"},
    {"createSession", [](FaultRun &run) { run.ask("/new"); }, s_dot, s_down},
    {"listSessions", [](FaultRun &run) { run.ask("/session"); }, "list item",
     "Sessions unavailable .* SDK is not connected\\.$"},
    {"getPowerProfile", [](FaultRun &run) { press(run, "Settings"); }, s_dot, s_down},
    {"checkFreeProviders",
     [](FaultRun &run) {
         openTab(run, "Models");
         press(run, "Check free providers");
     },
     "label", s_connecting},
    {"listSessions", [](FaultRun &run) { openTab(run, "Sessions"); }, s_dot, s_down},
    {"getSystemDashboard", [](FaultRun &run) { openTab(run, "System"); }, s_dot, s_down},
};

} // namespace

//! The OmniBar and the main window with a bridge at fault: the user goes on as soon as it works again.
class tst_BridgeFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void vanishes_data() { addWindows(); }
    void vanishes();
    void neverAnswers_data() { addWindows(); }
    void neverAnswers();
    void answersWithRubbish_data() { addWindows(); }
    void answersWithRubbish();
    void breaksTheProtocol_data() { addWindows(); }
    void breaksTheProtocol();
    void isKilledUnderTheOmniBar();
    void isKilledUnderTheMainWindow();
};

//! As when its machine loses power: no packet says so.
void tst_BridgeFaults::vanishes()
{
    QFETCH(Window, window);
    FaultRun run(window);
    QVERIFY2(run.start(), run.program().errors().constData());
    run.ask("abc");
    run.bridge.takeRequest(QStringLiteral("chat"));
    const int connections = run.bridge.connectionCount();

    QVERIFY(setNetwork(false));
    run.bridge.vanish();
    QVERIFY(setNetwork(true));
    QVERIFY(run.bridge.listen());
    // The connections look open until something is sent.
    if (window == Window::OmniBar) {
        run.program().press("Escape");
        QVERIFY(run.waitForMessage(QStringLiteral(": _Stopped._")));
        press(run, "Settings");
        QVERIFY(run.waitForReconnection(connections));
        closeSettings(run);
    } else {
        run.ask("def");
        QVERIFY(run.waitForReconnection(connections, 1));
    }
    QVERIFY2(run.converse("ghi"), qPrintable(run.lastMessage()));
    QCOMPARE(run.end(), QString());
    QCOMPARE(run.unexpectedWords(), QString());
}

//! Another program has the port, or the bridge hangs: it accepts connections and is silent.
void tst_BridgeFaults::neverAnswers()
{
    QFETCH(Window, window);
    FaultRun run(window);
    QVERIFY2(run.start(), run.program().errors().constData());
    const int connections = run.bridge.connectionCount();
    run.bridge.close();
    {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost, 8765));
        int accepted = 0;
        connect(&silent, &QTcpServer::newConnection, this, [&] { ++accepted; });
        QTRY_VERIFY_WITH_TIMEOUT(accepted >= 2, Timeouts::Program);
        run.ask("abc");
        if (window == Window::OmniBar) {
            QVERIFY(run.waitForMessage(QStringLiteral("Error: Loomra bridge not connected (ws://127.0.0.1:8765/ws)")));
        } else {
            // It stays in the input.
            QVERIFY(
                QTest::qWaitFor([&] { return run.reader.textOf(QStringLiteral("Message")) == QLatin1String("abc"); },
                                Timeouts::Program));
            run.program().press("ctrl+a");
        }
    }

    QVERIFY(run.bridge.listen());
    QVERIFY(run.waitForReconnection(connections));
    QVERIFY2(run.converse("def"), qPrintable(run.lastMessage()));
    QCOMPARE(run.end(), QString());
    QCOMPARE(run.unexpectedWords(), QString());
}

void tst_BridgeFaults::answersWithRubbish()
{
    QFETCH(Window, window);
    FaultRun run(window);
    QVERIFY2(run.start(), run.program().errors().constData());
    QVERIFY2(run.converse("abc"), qPrintable(run.lastMessage()));
    run.ask("def");
    const ScriptedBridge::Request prompt = run.bridge.takeRequest(QStringLiteral("chat"));

    for (const QString &frame : rubbish()) {
        run.bridge.sendRaw(frame.contains(QLatin1String("%1")) ? frame.arg(prompt.id) : frame);
    }
    for (int i = 0; i < run.bridge.connectionCount(); ++i) {
        run.bridge.connection(i)->sendBinaryMessage(QByteArray(1000, '\0'));
        run.bridge.connection(i)->sendBinaryMessage("{\"type\":\"ready\"}");
    }
    // Each ready message brings these requests.
    for (const QJsonValue &result : wrongResults()) {
        for (const char *method : {"listModels", "listAgents", "listSessions"}) {
            if (window == Window::Main || qstrcmp(method, "listModels") == 0) {
                run.bridge.reply(run.bridge.takeRequest(QLatin1String(method)), result);
            }
        }
        run.bridge.ready();
    }

    // The prompt is still open.
    run.bridge.reply(prompt, QJsonObject {{QStringLiteral("response"), QStringLiteral("In spite of it")}});
    QVERIFY(run.waitForMessage(QStringLiteral(": In spite of it")));
    QVERIFY2(run.converse("ghi"), qPrintable(run.lastMessage()));
    QCOMPARE(run.end(), QString());
    QVERIFY(run.program().errors().contains("\nFailed to parse JSON message: "));
    QCOMPARE(run.unexpectedWords("^(Failed to parse JSON message: |Bridge is ready, sdkInitialized: false$)"),
             QString());
}

void tst_BridgeFaults::breaksTheProtocol()
{
    QFETCH(Window, window);
    FaultRun run(window);
    QVERIFY2(run.start(), run.program().errors().constData());

    for (const auto &[name, bytes, words] : s_breaks) {
        const int connections = run.bridge.connectionCount();
        run.bridge.sendBytes(bytes);
        QVERIFY2(run.waitForReconnection(connections), name);
        QVERIFY2(*words == '\0' || window == Window::Main || run.shows(QLatin1String(words)), name);
    }
    QVERIFY2(run.converse("abc"), qPrintable(run.lastMessage()));
    QCOMPARE(run.end(), QString());
    QCOMPARE(run.unexpectedWords("closed because a message was too large$"), QString());
}

//! The bridge is killed while each kind of request of the OmniBar is open. The window goes on from one to the next.
void tst_BridgeFaults::isKilledUnderTheOmniBar()
{
    FaultRun run(Window::OmniBar);
    QVERIFY2(run.start(), run.program().errors().constData());
    QVERIFY2(run.converse("abc"), qPrintable(run.lastMessage()));

    for (const auto &[method, make, role, words] : s_barRequests) {
        make(run);
        run.bridge.takeRequest(QLatin1String(method));
        QVERIFY2(!QTest::currentTestFailed(), method);
        const int connections = run.bridge.connectionCount();
        run.bridge.close();
        run.bridge.takeAll();
        const auto isSaid = [&, role = role, words = words] {
            return !run.reader.shown(QLatin1String(role)).filter(QRegularExpression(QLatin1String(words))).isEmpty();
        };
        QVERIFY2(QTest::qWaitFor(isSaid, Timeouts::Program), method);
        QVERIFY(run.bridge.listen());
        QVERIFY2(run.waitForReconnection(connections), method);
    }

    closeSettings(run);
    QVERIFY2(run.converse("def"), qPrintable(run.lastMessage()));
    QCOMPARE(run.end(), QString());
    QCOMPARE(run.unexpectedWords(), QString());
}

//! The same with the main window, which requests again what it needs.
void tst_BridgeFaults::isKilledUnderTheMainWindow()
{
    FaultRun run(Window::Main);
    QVERIFY2(run.start(), run.program().errors().constData());
    const auto killIn = [&run](const char *method) {
        const ScriptedBridge::Request request = run.bridge.takeRequest(QLatin1String(method));
        const int connections = run.bridge.connectionCount();
        run.bridge.drop();
        run.bridge.takeAll();
        return request.id != 0 && run.waitForReconnection(connections);
    };
    const auto list = [&run] {
        const auto session = [](const char *id) {
            return QJsonObject {{QStringLiteral("id"), QLatin1String(id)},
                                {QStringLiteral("title"), QLatin1String(id)}};
        };
        const QJsonArray sessions {session("Attic"), session("Garden")};
        run.bridge.reply(run.bridge.takeRequest(QStringLiteral("listSessions")),
                         QJsonObject {{QStringLiteral("sessions"), sessions}});
    };
    const auto confirm = [&run](const QString &id) {
        const ScriptedBridge::Request request = run.bridge.takeRequest(QStringLiteral("switchSession"));
        run.bridge.reply(request, QJsonObject {{QStringLiteral("sessionId"), id}});
        return request.params.value(QLatin1String("sessionId")) == id;
    };

    // What it requests at its start.
    for (const char *method : {"listModels", "listAgents", "listSessions"}) {
        QVERIFY2(killIn(method), method);
    }
    list();
    QVERIFY(killIn("switchSession")); // to the first one
    list();
    pressKey(run, QStringLiteral("list item"), QStringLiteral("Attic"), "Return");
    QVERIFY(confirm(QStringLiteral("Attic")));
    QVERIFY(killIn("loadMessages"));
    const QJsonObject message {{QStringLiteral("role"), QStringLiteral("user")},
                               {QStringLiteral("content"), QStringLiteral("Old")}};
    run.bridge.reply(run.bridge.takeRequest(QStringLiteral("loadMessages")),
                     QJsonObject {{QStringLiteral("messages"), QJsonArray {message}}});
    QVERIFY(run.waitForMessage(QStringLiteral(": Old")));

    press(run, "New session");
    QVERIFY(killIn("createSession"));
    QVERIFY(run.reader.focus(QStringLiteral("text"), QStringLiteral("Message")));
    run.ask("abc");
    QVERIFY(killIn("chat"));
    QVERIFY2(run.converse("def"), qPrintable(run.lastMessage()));
    QCOMPARE(run.end(), QString());
    QCOMPARE(run.unexpectedWords(), QString());
}

Q_DECLARE_METATYPE(Window)
REGISTER_PRIVATE_NETWORK_TEST(tst_BridgeFaults, QCoreApplication)

#include "tst_BridgeFaults.moc"
