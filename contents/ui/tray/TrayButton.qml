// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! The icon of the tray view, with the state as a dot in its corner.
PlainButton {
    id: button
    objectName: "trayButton"

    required property var tray

    label: tray.toolTipMainText
    Accessible.description: tray.toolTipSubText
    onClicked: tray.trigger("clicked")

    contentItem: Item {
        FallbackIcon {
            anchors.centerIn: parent
            name: "system-run"
            size: Math.min(parent.width, parent.height, 32)
            color: palette.windowText
        }

        Rectangle {
            objectName: "statusDot"
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            width: 8
            height: 8
            radius: 4
            color: button.tray.statusColor
        }
    }

    SystemPalette {
        id: palette
    }

    FocusRing {
        control: button
        anchors.margins: 0
        radius: 4
        border.color: palette.highlight
    }

    HoverTip {
        control: button
        text: button.tray.toolTipMainText + "\n" + button.tray.toolTipSubText
    }
}
