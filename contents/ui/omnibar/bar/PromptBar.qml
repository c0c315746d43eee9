// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! The prompt bar, which is dark in both themes.
Item {
    id: promptBar

    required property var bar

    property alias inputField: inputField

    width: bar.barWidth
    height: bar.barHeight
    Accessible.role: Accessible.ToolBar
    Accessible.name: bar.tr("Prompt bar")

    ClickBarrier {}

    LateLoader {
        anchors.fill: parent
        file: Qt.resolvedUrl("../common/PanelShadow.qml")
        properties: ({ "radius": () => promptBar.bar.barRadius })
        wanted: promptBar.bar.firstFrameShown
    }

    Loader {
        anchors.fill: parent
        anchors.margins: -2
        active: promptBar.bar.thinking
        Accessible.ignored: true
        sourceComponent: ThinkingGlow {
            bar: promptBar.bar
            radius: promptBar.bar.barRadius + 2
        }
    }

    Rectangle {
        objectName: "fill"

        anchors.fill: parent
        radius: promptBar.bar.barRadius
        gradient: Gradient {
            orientation: Gradient.Horizontal
            GradientStop { position: 0.0; color: "#6B2F1A" }
            GradientStop { position: 0.35; color: "#5C2040" }
            GradientStop { position: 0.65; color: "#4A1A5E" }
            GradientStop { position: 1.0; color: "#3D1B6E" }
        }
    }

    Rectangle {
        objectName: "glow"

        anchors.fill: parent
        radius: promptBar.bar.barRadius
        gradient: Gradient {
            GradientStop { position: 0.0; color: Qt.rgba(1, 0.85, 0.6, 0.12) }
            GradientStop { position: 0.5; color: Qt.rgba(1, 0.6, 0.8, 0.05) }
            GradientStop { position: 1.0; color: "transparent" }
        }
    }

    LateLoader {
        anchors.fill: parent
        anchors.margins: 1
        file: Qt.resolvedUrl("Noise.qml")
        wanted: promptBar.bar.firstFrameShown
    }

    Rectangle {
        objectName: "highlight"

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: promptBar.bar.barRadius
        anchors.rightMargin: promptBar.bar.barRadius
        height: 1
        color: Qt.rgba(1, 0.85, 0.65, 0.18)
    }

    Rectangle {
        objectName: "outline"

        anchors.fill: parent
        radius: promptBar.bar.barRadius
        color: "transparent"
        border.width: 1
        border.color: Qt.rgba(1, 0.7, 0.5, 0.15)
    }

    Row {
        id: leading

        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        spacing: 10

        LateLoader {
            id: brand

            file: Qt.resolvedUrl("Brand.qml")
            properties: ({ "bar": promptBar.bar })
            wanted: promptBar.bar.firstFrameShown
        }

        Rectangle {
            objectName: "separator"

            anchors.verticalCenter: parent.verticalCenter
            visible: brand.item
            width: 1
            height: 28
            color: Qt.rgba(1, 1, 1, 0.15)
        }
    }

    PromptInput {
        id: inputField
        objectName: "inputField"

        anchors.left: leading.right
        anchors.right: trailing.left
        anchors.leftMargin: 10
        // Leaves room for the buttons before they are loaded.
        anchors.rightMargin: trailing.item ? 10 : 134
        anchors.verticalCenter: parent.verticalCenter
        bar: promptBar.bar
        focus: true
    }

    LateLoader {
        id: trailing

        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        file: Qt.resolvedUrl("BarButtons.qml")
        properties: ({ "bar": promptBar.bar })
        wanted: promptBar.bar.firstFrameShown
    }
}
