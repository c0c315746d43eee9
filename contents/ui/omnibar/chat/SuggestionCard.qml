// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A suggestion with icon, title, subtitle, and an arrow in the corner.
PlainButton {
    id: card
    objectName: "suggestionCard"

    required property var theme

    required property string title
    required property string subtitle
    required property string prompt
    required property string iconName
    required property string iconColor
    //! Red, green and blue in 0 to 1, separated by commas.
    required property string iconBg

    readonly property var tile: iconBg.split(",").map(Number)

    implicitHeight: 80
    label: title
    Accessible.description: subtitle

    background: Rectangle {
        radius: 10
        color: card.hovered ? card.theme.uiWellFillHi : card.theme.uiWellFill
        border.width: 1
        border.color: card.theme.uiWellBorder
    }

    contentItem: Item {
        Rectangle {
            id: iconTile

            anchors.left: parent.left
            anchors.leftMargin: 8
            anchors.top: parent.top
            anchors.topMargin: 10
            width: 32
            height: 32
            radius: 8
            color: Qt.rgba(card.tile[0], card.tile[1], card.tile[2], 0.2)

            FallbackIcon {
                anchors.centerIn: parent
                name: card.iconName
                fallback: "dialog-messages"
                size: 18
                color: card.iconColor
            }
        }

        Column {
            anchors.left: iconTile.right
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.leftMargin: 8
            anchors.rightMargin: 8
            anchors.topMargin: 10
            spacing: 2

            PlainText {
                width: parent.width
                text: card.title
                color: card.theme.uiTextStrong
                font.pixelSize: 12
                font.weight: Font.DemiBold
                maximumLineCount: 1
                Accessible.ignored: true
            }

            PlainText {
                width: parent.width
                text: card.subtitle
                color: card.theme.uiTextSoft
                font.pixelSize: 11
                wrapMode: Text.Wrap
                maximumLineCount: 2
                Accessible.ignored: true
            }
        }

        FallbackIcon {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: 6
            name: LayoutMirroring.enabled ? "arrow-left" : "arrow-right"
            size: 12
            color: card.theme.uiTextFaint
        }
    }

    FocusRing {
        control: card
        radius: 12
        border.color: card.theme.focusRing
    }

    HoverTip {
        control: card
        text: card.prompt
    }
}
