// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../components/logic/Translatable.js" as Translatable

//! The header of the chat panel: the name of the assistant and the window's three buttons.
Item {
    id: header

    required property var bar
    required property var theme

    Row {
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8
        Accessible.role: Accessible.Heading
        Accessible.name: Translatable.filled(header.bar.tr("Tovi for {system}"), { "system": header.bar.systemName })

        Rectangle {
            objectName: "tile"

            anchors.verticalCenter: parent.verticalCenter
            width: 24
            height: 24
            radius: 6
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop { position: 0.0; color: header.theme.panelFrameStart }
                GradientStop { position: 1.0; color: header.theme.panelFrameEnd }
            }

            FallbackIcon {
                anchors.centerIn: parent
                name: "starred-symbolic"
                fallback: "draw-star"
                size: 14
                color: "white"
            }
        }

        Repeater {
            model: [
                { "text": header.bar.tr("Tovi"), "size": 16, "weight": Font.DemiBold, "color": header.theme.uiTextStrong },
                { "text": header.bar.tr("for"), "size": 14, "weight": Font.Normal, "color": header.theme.uiTextSoft },
                { "text": header.bar.systemName, "size": 16, "weight": Font.DemiBold, "color": header.theme.uiTextStrong }
            ]

            PlainText {
                required property var modelData

                anchors.verticalCenter: parent.verticalCenter
                text: modelData.text
                color: modelData.color
                font.pixelSize: modelData.size
                font.weight: modelData.weight
                Accessible.ignored: true
            }
        }
    }

    Row {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 12

        HeaderButton {
            objectName: "expandBtn"
            theme: header.theme
            label: header.bar.chatExpanded ? header.bar.tr("Smaller conversation") : header.bar.tr("Taller conversation")
            iconName: header.bar.chatExpanded ? "view-restore" : "view-fullscreen"
            iconFallback: header.bar.chatExpanded ? "window-restore" : "window-maximize"
            onClicked: header.bar.chatExpanded = !header.bar.chatExpanded
        }

        HeaderButton {
            objectName: "minimiseBtn"
            theme: header.theme
            label: header.bar.tr("Minimize")
            glyph: "\u2013"
            onClicked: header.bar.minimise()
        }

        HeaderButton {
            objectName: "closeBtn"
            theme: header.theme
            label: header.bar.tr("Close Tovi")
            glyph: "\u2715"
            onClicked: header.bar.startClosing()
        }
    }

    Rectangle {
        objectName: "separator"

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: 1
        color: header.theme.uiSettingsDivider
    }
}
