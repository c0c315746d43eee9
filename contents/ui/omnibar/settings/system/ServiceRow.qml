// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../logic/DashboardText.js" as DashboardText
import "../common"

//! The state of the bridge's service.
Item {
    id: row
    objectName: "serviceRow"

    required property var bar
    required property var theme
    readonly property var service: DashboardText.service(bar.serviceActive, bar.serviceSub, Boolean(bar.sdk) && bar.sdk.ready, bar.tr)

    implicitHeight: Math.max(label.height, line.height)

    StatusDot {
        id: dot
        objectName: "serviceDot"

        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        color: row.service.dot
    }

    PlainText {
        id: label
        objectName: "serviceLabel"

        anchors.left: dot.right
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, row.width / 2)
        text: row.service.label
        color: row.theme.uiTextMed
        font.pointSize: 10
    }

    PlainText {
        id: line
        objectName: "serviceLine"

        anchors.left: label.right
        anchors.leftMargin: 18
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignRight
        text: DashboardText.serviceLine(row.bar.serviceUptimeSec, row.bar.serviceRestarts, row.bar.serviceMemoryMB, row.bar.tr)
        color: row.theme.uiTextCaption
        font.pointSize: 9
    }
}
