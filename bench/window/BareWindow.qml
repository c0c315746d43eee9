// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15
import QtQuick.Window 2.15
import Qt.labs.settings 1.0
import org.kde.plasma.core 2.0

//! An empty window like the OmniBar's, with the imports that the OmniBar needs for the first frame. Its cost is the minimum
//! for a window of this kind.
Window {
    width: Qt.application.screens[0].width
    height: Qt.application.screens[0].height
    flags: Qt.WindowStaysOnTopHint | Qt.FramelessWindowHint | Qt.Dialog
    color: "transparent"
    visible: true
}
