// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! A panel that floats above the bar, where the window places it: frame, fill and shadow, and the way in.
Item {
    id: panel

    required property var theme
    required property bool shown
    //! Turns true after the panel is built, so that its first appearance is animated like every other.
    property bool built: false
    readonly property bool entered: shown && built

    //! How long it takes to appear, in ms.
    readonly property int entranceDuration: 250

    visible: shown
    opacity: entered ? 1 : 0
    scale: entered ? 1 : 0.97
    transformOrigin: Item.Bottom
    Component.onCompleted: Qt.callLater(() => { built = true; })

    Behavior on opacity {
        NumberAnimation {
            duration: panel.entranceDuration
            easing.type: Easing.OutCubic
        }
    }
    Behavior on scale {
        NumberAnimation {
            duration: panel.entranceDuration
            easing.type: Easing.OutCubic
        }
    }

    GradientPanel {
        anchors.fill: parent
        theme: panel.theme
    }

    // A click beside a control stays in the panel: only one on the scrim closes a sheet.
    MouseArea {
        anchors.fill: parent
    }
}
