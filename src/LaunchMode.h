// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStringList>
#include <QUrl>

//! What a graphical run shows, chosen once from the command line.
enum class LaunchMode
{
    OmniBar,
    MainWindow,
    Tray,
    VoiceTest,
};

//! The position of an argument doesn't matter. The voice test takes precedence over the main window, and that over the
//! tray view. "-o" and "--omni-bar" name the default, so they have no effect beside another mode.
LaunchMode launchModeOf(const QStringList &arguments);

//! The QML file of a mode in the program's resource tree.
QUrl rootFileOf(LaunchMode mode);
