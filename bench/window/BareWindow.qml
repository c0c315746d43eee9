// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15
import QtQuick.Window 2.15
import Qt.labs.settings 1.0
import org.kde.plasma.core 2.0

//! A window like the OmniBar's, with nothing in it, that imports what the OmniBar's files import before the first
//! frame. What it costs, any window of this kind costs on this machine.
Window {
    width: Qt.application.screens[0].width
    height: Qt.application.screens[0].height
    flags: Qt.WindowStaysOnTopHint | Qt.FramelessWindowHint | Qt.Dialog
    color: "transparent"
    visible: true
}
