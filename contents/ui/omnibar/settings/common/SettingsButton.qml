// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A button of the settings sheet. For a label that may be too long, see ElidedButton.
PlainButton {
    id: button

    required property var theme
    property color fill: theme.uiWellFill
    property color hoverFill: theme.uiWellFillHi
    property color borderColor: theme.uiWellBorder
    property color textColor: theme.uiTextStrong
    readonly property bool truncated: contentItem.truncated

    implicitWidth: contentItem.implicitWidth + 28
    implicitHeight: 30
    leftPadding: 8
    rightPadding: 8
    opacity: enabled ? 1 : 0.5

    background: Rectangle {
        radius: 6
        color: button.hovered || button.pressed ? button.hoverFill : button.fill
        border.width: 1
        border.color: button.borderColor
    }
    contentItem: PlainText {
        text: button.label
        color: button.textColor
        font.pointSize: 9
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }

    FocusRing {
        control: button
        radius: 8
        border.color: button.theme.focusRing
    }
}
