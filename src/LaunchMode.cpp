// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LaunchMode.h"

#include <array>

namespace
{

struct Mode
{
    LaunchMode mode;
    const char *longName;
    const char *shortName; // may be null
};

// In order of precedence.
constexpr std::array s_modes {
    Mode {LaunchMode::VoiceTest, "--voice-test", nullptr},
    Mode {LaunchMode::MainWindow, "--main", "-m"},
    Mode {LaunchMode::Tray, "--tray", "-t"},
};

} // namespace

LaunchMode launchModeOf(const QStringList &arguments)
{
    for (const Mode &mode : s_modes) {
        if (arguments.contains(QLatin1String(mode.longName))
            || (mode.shortName && arguments.contains(QLatin1String(mode.shortName)))) {
            return mode.mode;
        }
    }
    return LaunchMode::OmniBar;
}

QUrl rootFileOf(LaunchMode mode)
{
    switch (mode) {
    case LaunchMode::OmniBar:
        return QUrl(QStringLiteral("qrc:/org/kde/loomra/contents/ui/OmniBar.qml"));
    case LaunchMode::MainWindow:
        return QUrl(QStringLiteral("qrc:/org/kde/loomra/MainWindow.qml"));
    case LaunchMode::Tray:
        return QUrl(QStringLiteral("qrc:/org/kde/loomra/contents/ui/TrayIcon.qml"));
    case LaunchMode::VoiceTest:
        return QUrl(QStringLiteral("qrc:/org/kde/loomra/contents/ui/VoiceValidation.qml"));
    }
    Q_UNREACHABLE();
}
