// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "MachineFaults.h"

#include <QTest>

namespace MachineFaults
{

namespace
{

//! Not even root can create a file below it.
const QString s_nowhere = QStringLiteral("/dev/null/nowhere");

} // namespace

void addRows()
{
    QTest::addColumn<Fault>("fault");

    QTest::newRow("no session bus") << Fault::NoSessionBus;
    QTest::newRow("no home") << Fault::NoHome;
    QTest::newRow("no name of the home") << Fault::NoNameOfTheHome;
    QTest::newRow("read-only home") << Fault::ReadOnlyHome;
    QTest::newRow("full disk") << Fault::FullDisk;
    QTest::newRow("no theme and no icons") << Fault::NoThemeAndIcons;
}

void arrange(Fault fault, QProcessEnvironment &environment, FaultInjection &faults)
{
    const auto set = [&environment](const char *variable, const QString &value) {
        environment.insert(QLatin1String(variable), value);
    };
    switch (fault) {
    case Fault::NoSessionBus:
        set("DBUS_SESSION_BUS_ADDRESS", QStringLiteral("unix:path=") + s_nowhere);
        // The accessibility bus is another one.
        set("AT_SPI_BUS_ADDRESS", qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
        break;
    case Fault::NoHome:
        set("HOME", s_nowhere);
        break;
    case Fault::NoNameOfTheHome:
        environment.remove(QStringLiteral("HOME"));
        // The home is then the root directory, which isn't writable either, except for root.
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"}) {
            set(variable, s_nowhere);
        }
        break;
    case Fault::ReadOnlyHome:
        faults.setDisk(FaultState::ReadOnly);
        break;
    case Fault::FullDisk:
        faults.setDisk(FaultState::Full);
        break;
    case Fault::NoThemeAndIcons:
        set("XDG_DATA_DIRS", s_nowhere);
        environment.remove(QStringLiteral("XDG_CURRENT_DESKTOP"));
        for (const char *variable : {"QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "QT_QUICK_CONTROLS_STYLE"}) {
            set(variable, QStringLiteral("none"));
        }
        break;
    }
}

QByteArray words(Fault fault)
{
    switch (fault) {
    case Fault::NoSessionBus:
        return QByteArrayLiteral("VoiceBridge: cannot connect to D-Bus session bus for wake word\n");
    case Fault::NoHome:
    case Fault::NoNameOfTheHome:
    case Fault::ReadOnlyHome:
    case Fault::FullDisk:
        return QByteArrayLiteral(
            "ConfigManager: the settings can't be saved, because the directory is read-only or the "
            "disk is full: ");
    case Fault::NoThemeAndIcons:
        break;
    }
    return QByteArray();
}

} // namespace MachineFaults
