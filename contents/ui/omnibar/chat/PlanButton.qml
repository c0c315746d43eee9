// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A small button with a text, for plans.
PlainButton {
    id: button

    required property var theme
    property color fill: theme.uiWellFill
    property color hoverFill: theme.uiWellFillHi
    property color textColor: theme.uiTextStrong
    //! Of the text, where its contrast with the fill is too low.
    property color outline: "transparent"

    implicitHeight: 28

    background: Rectangle {
        radius: 6
        color: button.hovered || button.pressed ? button.hoverFill : button.fill
    }
    contentItem: PlainText {
        text: button.label
        color: button.textColor
        style: button.outline.a > 0 ? Text.Outline : Text.Normal
        styleColor: button.outline
        font.pixelSize: 12
        font.weight: Font.DemiBold
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
