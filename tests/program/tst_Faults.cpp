// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FaultRun.h"

#include "PrivateNetwork.h"
#include "Timeouts.h"

#include <QTest>

namespace
{

void set(FaultRun &run, const char *variable, const QString &value)
{
    run.environment.insert(QLatin1String(variable), value);
}

const QString s_cantSave =
    QStringLiteral("ConfigManager: the settings can't be saved, because the directory is read-only or the "
                   "disk is full: %1/.config/loomra-kderc\n");

//! A fault of the machine, present from the start of the program to its end.
struct MachineFault
{
    const char *name;
    void (*arrange)(FaultRun &run);
    //! What the log says in addition; "%1" is the home.
    QString words;
};

const MachineFault s_machineFaults[] = {
    {"no session bus",
     [](FaultRun &run) {
         set(run, "DBUS_SESSION_BUS_ADDRESS", QStringLiteral("unix:path=/nonexistent"));
         // The accessibility bus, which is another one.
         set(run, "QT_LINUX_ACCESSIBILITY_ALWAYS_ON", QStringLiteral("1"));
     },
     QStringLiteral("VoiceBridge: cannot connect to D-Bus session bus for wake word\n")},
    {"no audio server", [](FaultRun &run) { set(run, "PULSE_SERVER", QStringLiteral("unix:/nonexistent")); }, {}},
    {"no home", [](FaultRun &run) { set(run, "HOME", QStringLiteral("/dev/null")); }, s_cantSave},
    {"read-only home", [](FaultRun &run) { run.faults.setDisk(FaultState::ReadOnly); }, s_cantSave},
    {"full disk", [](FaultRun &run) { run.faults.setDisk(FaultState::Full); }, s_cantSave},
    {"no theme",
     [](FaultRun &run) {
         run.environment.remove(QStringLiteral("XDG_CURRENT_DESKTOP"));
         set(run, "QT_QPA_PLATFORMTHEME", QStringLiteral("none"));
         set(run, "QT_STYLE_OVERRIDE", QStringLiteral("none"));
         set(run, "QT_QUICK_CONTROLS_STYLE", QStringLiteral("none"));
     },
     {}},
    {"no icons", [](FaultRun &run) { set(run, "XDG_DATA_DIRS", run.inHome("empty")); }, {}},
};

} // namespace

//! The OmniBar and the main window on a machine, and with a bridge, at fault: the user goes on, and nothing is lost.
class tst_Faults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void machine_data();
    void machine();
};

void tst_Faults::machine_data()
{
    QTest::addColumn<int>("fault");
    QTest::addColumn<FaultRun::Window>("window");

    for (std::size_t i = 0; i < std::size(s_machineFaults); ++i) {
        QTest::addRow("%s, OmniBar", s_machineFaults[i].name) << int(i) << FaultRun::Window::OmniBar;
        QTest::addRow("%s, main window", s_machineFaults[i].name) << int(i) << FaultRun::Window::Main;
    }
}

void tst_Faults::machine()
{
    QFETCH(int, fault);
    QFETCH(FaultRun::Window, window);
    FaultRun run(window);
    s_machineFaults[fault].arrange(run);

    QVERIFY2(run.start(), run.program().errors().constData());
    QVERIFY2(run.converse("abc"), qPrintable(run.lastMessage()));

    QCOMPARE(run.end(), QString());
    qDebug().noquote() << run.program().unexpectedWords();
}

Q_DECLARE_METATYPE(FaultRun::Window)
REGISTER_PRIVATE_NETWORK_TEST(tst_Faults, QCoreApplication)

#include "tst_Faults.moc"
