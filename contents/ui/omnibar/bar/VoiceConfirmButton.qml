// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A button below the prompt bar, which is dark in both themes.
PlainButton {
    id: button

    property color fill: Qt.rgba(1, 1, 1, 0.08)
    property color hoverFill: Qt.rgba(1, 1, 1, 0.16)
    property bool bold: false

    implicitHeight: 24

    background: Rectangle {
        radius: 6
        color: button.hovered || button.pressed ? button.hoverFill : button.fill
    }
    contentItem: PlainText {
        text: button.label
        color: "white"
        font.pointSize: 9
        font.bold: button.bold
        // The width of some buttons is fixed, whatever the language.
        fontSizeMode: Text.HorizontalFit
        minimumPointSize: 6
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }

    FocusRing {
        control: button
        radius: 8
        border.color: "#e9d5ff"
    }
}
