// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../logic/DashboardText.js" as DashboardText
import "../common"

//! The state of the bridge in a few words and lights.
Rectangle {
    id: banner
    objectName: "healthBanner"

    required property var bar
    required property var theme
    readonly property var look: DashboardText.bannerLook(bar.dashState)

    implicitHeight: 38
    radius: 8
    color: Qt.rgba(look.fill[0], look.fill[1], look.fill[2], look.fill[3])

    StatusDot {
        id: dot
        objectName: "healthDot"

        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        size: 10
        color: banner.look.dot
    }

    PlainText {
        objectName: "healthText"

        anchors.left: dot.right
        anchors.leftMargin: 10
        anchors.right: lights.left
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        text: DashboardText.bannerText(banner.bar.dashState, banner.bar.tr)
        color: banner.theme.uiTextStrong
        font.pointSize: 10
        font.bold: true
    }

    Row {
        id: lights

        anchors.right: parent.right
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        spacing: 14

        Light {
            objectName: "bridgeLight"

            bar: banner.bar
            theme: banner.theme
            text: banner.bar.tr("Bridge")
            on: Boolean(banner.bar.sdk) && banner.bar.sdk.ready
            onColor: DashboardText.green
        }

        Light {
            objectName: "runtimeLight"

            bar: banner.bar
            theme: banner.theme
            text: banner.bar.tr("Runtime")
            on: banner.bar.runtimeConnected
            onColor: DashboardText.green
        }

        SettingsButton {
            objectName: "reconnectBtn"

            anchors.verticalCenter: parent.verticalCenter
            theme: banner.theme
            label: banner.bar.tr("Reconnect")
            onClicked: banner.bar.reconnectBridge()
        }
    }

    component Light: Row {
        id: light

        required property var bar
        required property var theme
        required property string text
        required property bool on
        required property color onColor

        anchors.verticalCenter: parent.verticalCenter
        spacing: 6
        Accessible.role: Accessible.Indicator
        Accessible.name: text
        Accessible.description: on ? bar.tr("Connected") : bar.tr("Disconnected")

        StatusDot {
            anchors.verticalCenter: parent.verticalCenter
            size: 7
            color: light.on ? light.onColor : light.theme.uiTextFaint
        }

        PlainText {
            text: light.text
            color: light.theme.uiTextMed
            font.pointSize: 9
            Accessible.ignored: true
        }
    }
}
