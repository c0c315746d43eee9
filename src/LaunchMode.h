// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStringList>
#include <QUrl>

//! The face that a graphical run shows, chosen once from the command line.
enum class LaunchMode
{
    OmniBar,
    MainWindow,
    Tray,
    VoiceTest,
};

//! Chooses by presence anywhere in the list; the voice test wins over the main window, that over the tray view.
//! "-o" and "--omni-bar" name the default, so beside another mode they change nothing.
LaunchMode launchModeOf(const QStringList &arguments);

//! The QML file of a mode, in the program's own resource tree.
QUrl rootFileOf(LaunchMode mode);
