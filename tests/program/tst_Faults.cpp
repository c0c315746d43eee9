// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FaultRun.h"
#include "Files.h"

#include "PrivateNetwork.h"
#include "Timeouts.h"

#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

#include <chrono>
#include <csignal>

using namespace std::chrono_literals;
using Window = FaultRun::Window;

namespace
{

void set(FaultRun &run, const char *variable, const QString &value)
{
    run.environment.insert(QLatin1String(variable), value);
}

//! A fault of the machine, present from the start of the program to its end.
struct MachineFault
{
    const char *name;
    void (*arrange)(FaultRun &run);
    //! A pattern of the lines that the log has in addition.
    const char *line = "^$";
    bool isLogged = true; //!< by both windows, and not only by one of them
};

constexpr char s_cantSave[] = "^ConfigManager: the settings can't be saved, because the directory is read-only or the "
                              "disk is full: .*/\\.config/loomra-kderc$";

constexpr MachineFault s_machineFaults[] = {
    {"no session bus",
     [](FaultRun &run) {
         set(run, "DBUS_SESSION_BUS_ADDRESS", QStringLiteral("unix:path=/nonexistent"));
         run.isReadable = false;
     },
     "^VoiceBridge: cannot connect to D-Bus session bus for wake word$"},
    {"no audio server", [](FaultRun &run) { set(run, "PULSE_SERVER", QStringLiteral("unix:/nonexistent")); }},
    {"no home", [](FaultRun &run) { set(run, "HOME", QStringLiteral("/dev/null")); }, s_cantSave},
    {"unset home",
     [](FaultRun &run) {
         // Qt takes the root directory, which root may write to: without the fault, nothing is started.
         run.faults.setDisk(FaultState::ReadOnly);
         QVERIFY(Program::run({run.inHome("new")}, run.environment, QStringLiteral("mkdir")).exitCode != 0);
         run.faults.addTo(run.environment,
                          {QStringLiteral("/.config"), QStringLiteral("/.cache"), QStringLiteral("/.local")});
         run.environment.remove(QStringLiteral("HOME"));
     },
     s_cantSave},
    {"read-only home", [](FaultRun &run) { run.faults.setDisk(FaultState::ReadOnly); }, s_cantSave},
    {"full disk", [](FaultRun &run) { run.faults.setDisk(FaultState::Full); }, s_cantSave},
    {"no theme",
     [](FaultRun &run) {
         run.environment.remove(QStringLiteral("XDG_CURRENT_DESKTOP"));
         for (const char *variable : {"QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "QT_QUICK_CONTROLS_STYLE"}) {
             set(run, variable, QStringLiteral("nonexistent"));
         }
     }},
    {"no icons", [](FaultRun &run) { set(run, "XDG_DATA_DIRS", run.inHome("empty")); },
     "^kf.plasma.core: Could not locate plasma theme \"default\" ", false},
};

void addWindows()
{
    QTest::addColumn<Window>("window");
    QTest::newRow("OmniBar") << Window::OmniBar;
    QTest::newRow("main window") << Window::Main;
}

} // namespace

//! The OmniBar and the main window on a machine at fault: the user goes on, and no setting is lost.
class tst_Faults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void machine_data();
    void machine();
    void diskFailsForAWhile_data();
    void diskFailsForAWhile();
    void clockIsSet_data() { addWindows(); }
    void clockIsSet();
    void isSuspended_data() { addWindows(); }
    void isSuspended();
    void displayGoesAway_data() { addWindows(); }
    void displayGoesAway();
};

void tst_Faults::machine_data()
{
    QTest::addColumn<int>("fault");
    QTest::addColumn<Window>("window");

    for (int i = 0; i < int(std::size(s_machineFaults)); ++i) {
        QTest::addRow("%s, OmniBar", s_machineFaults[i].name) << i << Window::OmniBar;
        QTest::addRow("%s, main window", s_machineFaults[i].name) << i << Window::Main;
    }
}

void tst_Faults::machine()
{
    QFETCH(int, fault);
    QFETCH(Window, window);
    const auto &[name, arrange, line, isLogged] = s_machineFaults[fault];
    FaultRun run(window);
    arrange(run);
    QVERIFY(!QTest::currentTestFailed());

    QVERIFY2(run.start(), run.program().errors().constData());
    QVERIFY2(run.converse("abc"), qPrintable(run.lastMessage()));

    QCOMPARE(run.end(), QString());
    const QStringList log = run.program().unexpectedWords().split(QLatin1Char('\n'));
    QVERIFY(!isLogged || !log.filter(QRegularExpression(QLatin1String {line})).isEmpty());
    QCOMPARE(run.unexpectedWords(line), QString());
}

void tst_Faults::diskFailsForAWhile_data()
{
    QTest::addColumn<FaultState::Disk>("disk");
    QTest::newRow("read-only") << FaultState::ReadOnly;
    QTest::newRow("full") << FaultState::Full;
}

//! Settings that can't be stored are stored as soon as they can.
void tst_Faults::diskFailsForAWhile()
{
    QFETCH(FaultState::Disk, disk);
    FaultRun run(Window::OmniBar);
    QVERIFY2(run.start(), run.program().errors().constData());

    run.faults.setDisk(disk);
    // The window follows the theme, and stores that.
    QVERIFY2(run.converse("abc", QStringLiteral("The light theme was applied:")), qPrintable(run.lastMessage()));
    QVERIFY2(run.converse("def"), qPrintable(run.lastMessage()));
    QCOMPARE(run.lostSettings(), QString());
    run.faults.setDisk(FaultState::Works);

    QCOMPARE(run.end(), QString());
    const QByteArray stored = contentOf(run.inHome(".config/kde.org/loomra-kde.conf"));
    QVERIFY2(stored.contains("\nlightChrome=true\n"), stored.constData());
}

void tst_Faults::clockIsSet()
{
    QFETCH(Window, window);
    FaultRun run(window);
    QVERIFY2(run.start(), run.program().errors().constData());
    QVERIFY2(run.converse("now"), qPrintable(run.lastMessage()));

    for (const std::chrono::hours ahead : {24h, 0h, -24h}) {
        run.faults.setClock(ahead);
        QVERIFY2(run.converse("abc", QString::number(ahead.count())), qPrintable(run.lastMessage()));
    }
    // What waits for a while doesn't wait for a day.
    const int connections = run.bridge.connectionCount();
    run.bridge.drop();
    QVERIFY(run.waitForReconnection(connections));
    QVERIFY2(run.converse("def"), qPrintable(run.lastMessage()));
    QCOMPARE(run.end(), QString());
    QCOMPARE(run.unexpectedWords(), QString());
}

void tst_Faults::isSuspended()
{
    QFETCH(Window, window);
    FaultRun run(window);
    QVERIFY2(run.start(), run.program().errors().constData());

    // The reply arrives meanwhile.
    run.ask("abc");
    const ScriptedBridge::Request request = run.bridge.takeRequest(QStringLiteral("chat"));
    run.program().send(SIGSTOP);
    run.bridge.reply(request, QJsonObject {{QStringLiteral("response"), QStringLiteral("While suspended")}});
    run.program().send(SIGCONT);
    QVERIFY(run.waitForMessage(QStringLiteral(": While suspended")));

    // The bridge is lost meanwhile, and with it the open request.
    run.ask("def");
    run.bridge.takeRequest(QStringLiteral("chat"));
    const int connections = run.bridge.connectionCount();
    run.program().send(SIGSTOP);
    run.bridge.drop();
    run.program().send(SIGCONT);
    QVERIFY(run.waitForReconnection(connections));
    QVERIFY2(run.converse("ghi"), qPrintable(run.lastMessage()));
    QCOMPARE(run.end(), QString());
    QCOMPARE(run.unexpectedWords(), QString());
}

void tst_Faults::displayGoesAway()
{
    QFETCH(Window, window);
    FaultRun run(window);
    QVERIFY2(run.start(), run.program().errors().constData());
    const QByteArray child = Program::run({QStringLiteral("-P"), QString::number(run.program().processId())},
                                          run.environment, QStringLiteral("pgrep"))
                                 .output.trimmed();
    QCOMPARE(!child.isEmpty(), window == Window::Main);

    run.program().loseDisplay();

    QVERIFY(run.program().waitForEnd());
    QVERIFY(!run.program().crashed());
    QCOMPARE(run.program().exitCode(), 1);
    const QByteArray errors = run.program().errors();
    QVERIFY2(errors.contains("The X11 connection broke"), errors.constData());
    QVERIFY(child.isEmpty() || kill(child.toInt(), 0) != 0);
    QCOMPARE(run.lostSettings(), QString());
    // All were saved, with those that the file didn't have.
    const QByteArray stored = contentOf(run.inHome(".config/loomra-kderc"));
    QVERIFY2(stored.contains("WorkspaceSuggestionReminderEnabled="), stored.constData());
}

Q_DECLARE_METATYPE(Window)
Q_DECLARE_METATYPE(FaultState::Disk)
REGISTER_PRIVATE_NETWORK_TEST(tst_Faults, QCoreApplication)

#include "tst_Faults.moc"
