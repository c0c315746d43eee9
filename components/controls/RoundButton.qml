// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra 1.0

//! A button with an icon or a glyph, round by default. "label" is its accessible name.
PlainButton {
    id: button

    property color fill: "transparent"
    property color hoverFill: fill
    property color ring: "#e9d5ff"
    property real radius: height / 2
    property color borderColor: "transparent"
    property string tip: label
    property bool tipShown: true

    property string iconName
    property string iconFallback
    property int iconSize: 18
    property color iconColor: "white"
    //! See FallbackIcon.
    property bool iconMask: false

    //! Shown if there is no icon name.
    property string glyph
    property int glyphSize: 13

    //! Duration of the hover animation in ms.
    property int hoverDuration: 120 * Motion.durationFactor
    readonly property bool highlighted: hovered || pressed

    implicitWidth: 36
    implicitHeight: implicitWidth

    background: Rectangle {
        radius: button.radius
        color: button.highlighted ? button.hoverFill : button.fill
        // Even a transparent border would make the fill smaller.
        border.width: button.borderColor.a > 0 ? 1 : 0
        border.color: button.borderColor

        Behavior on color {
            ColorAnimation {
                duration: button.hoverDuration
            }
        }
    }

    contentItem: Item {
        FallbackIcon {
            anchors.centerIn: parent
            visible: button.iconName !== ""
            name: button.iconName
            fallback: button.iconFallback
            size: button.iconSize
            color: button.iconColor
            mask: button.iconMask
        }

        PlainText {
            anchors.centerIn: parent
            visible: button.iconName === ""
            text: button.glyph
            color: button.iconColor
            font.pixelSize: button.glyphSize
            Accessible.ignored: true
        }
    }

    FocusRing {
        control: button
        radius: button.radius + 2
        border.color: button.ring
    }

    HoverTip {
        control: button
        text: button.tip
        enabledHere: button.tipShown
    }
}
