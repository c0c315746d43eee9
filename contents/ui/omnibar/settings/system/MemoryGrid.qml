// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../logic/DashboardText.js" as DashboardText

//! The figures of the bridge's process in three columns: a name, its value, and another figure.
Rectangle {
    id: grid
    objectName: "memoryGrid"

    required property var bar
    required property var theme

    implicitHeight: rows.height + 20
    radius: 8
    color: theme.uiWellFill
    border.width: 1
    border.color: theme.uiWellBorder

    Column {
        id: rows

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 10
        spacing: 6

        Figures {
            objectName: "cpuFigures"

            theme: grid.theme
            label: grid.bar.tr("CPU")
            value: DashboardText.counted("{count}%", grid.bar.dashCpuPercent)
            highlight: DashboardText.loadColor(grid.bar.dashCpuPercent)
            detail: DashboardText.uptime(grid.bar.dashUptimeMs / 1000, grid.bar.tr)
        }

        Figures {
            objectName: "heapFigures"

            theme: grid.theme
            label: grid.bar.tr("Session heap")
            value: DashboardText.counted(grid.bar.tr("{count} / {total} MB"), grid.bar.dashSessionHeapMb, grid.bar.dashSessionHeapTotalMb)
            detail: DashboardText.counted(grid.bar.tr("Requests {count}"), grid.bar.dashReqCount)
        }

        Figures {
            objectName: "rssFigures"

            theme: grid.theme
            label: grid.bar.tr("Bridge RSS")
            value: DashboardText.counted(grid.bar.tr("{count} MB"), grid.bar.dashBridgeRssMb)
            detail: DashboardText.counted(grid.bar.tr("Actions {count}"), grid.bar.dashActionCount)
        }

        Figures {
            objectName: "appFigures"

            theme: grid.theme
            label: grid.bar.tr("Tovi app")
            value: DashboardText.counted(grid.bar.tr("{count} MB"), grid.bar.dashToviServiceMb > 0 ? grid.bar.dashToviServiceMb : grid.bar.dashBridgeRssMb)
            detail: DashboardText.counted(grid.bar.tr("External {count} MB"), grid.bar.dashBridgeExternalMb)
        }
    }

    component Figures: Item {
        id: figures

        required property var theme
        required property string label
        required property string value
        required property string detail
        //! The colour of the value, "" for the default.
        property string highlight: ""

        width: parent.width
        implicitHeight: 20

        PlainText {
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width / 3
            text: figures.label
            color: figures.theme.uiTextSoft
            font.pointSize: 9
        }

        // The highlights are too pale for light grounds.
        Rectangle {
            objectName: "ground"

            anchors.fill: valueText
            anchors.leftMargin: -6
            anchors.rightMargin: -6
            radius: 4
            visible: figures.highlight !== "" && figures.theme.uiLight
            color: "#241a31"
        }

        PlainText {
            id: valueText
            objectName: "value"

            anchors.left: parent.left
            anchors.leftMargin: parent.width / 3
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, parent.width / 3 - 12)
            text: figures.value
            color: figures.highlight === "" ? figures.theme.uiTextStrong : figures.highlight
            font.pointSize: 10
        }

        PlainText {
            objectName: "detail"

            anchors.left: parent.left
            anchors.leftMargin: parent.width * 2 / 3
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width / 3
            text: figures.detail
            color: figures.theme.uiTextSoft
            font.pointSize: 9
        }
    }
}
