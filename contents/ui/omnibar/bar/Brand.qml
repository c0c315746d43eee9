// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../components/logic/Translatable.js" as Translatable

//! The logo with the connection dot, and the name of the assistant.
Row {
    id: brand

    required property var bar

    height: 36
    spacing: 7
    Accessible.role: Accessible.StaticText
    Accessible.name: Translatable.filled(bar.tr("Tovi for {system}"), { "system": bar.systemName })

    Item {
        anchors.verticalCenter: parent.verticalCenter
        width: 30
        height: 30

        Rectangle {
            objectName: "disc"

            anchors.fill: parent
            radius: width / 2
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop { position: 0.0; color: "#e8782a" }
                GradientStop { position: 1.0; color: "#c246d0" }
            }
        }

        FallbackIcon {
            anchors.centerIn: parent
            name: "starred-symbolic"
            fallback: "draw-star"
            color: "white"
        }

        ConnectionDot {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: -1
            bar: brand.bar
        }
    }

    PlainText {
        anchors.verticalCenter: parent.verticalCenter
        text: brand.bar.tr("Tovi")
        color: Qt.rgba(1, 1, 1, 0.95)
        font.pointSize: 12
        font.bold: true
        Accessible.ignored: true
    }

    PlainText {
        anchors.verticalCenter: parent.verticalCenter
        // i18n: "Tovi for KeldaOS", in three texts
        text: brand.bar.tr("for")
        color: Qt.rgba(1, 1, 1, 0.55)
        font.pointSize: 11
        font.italic: true
        Accessible.ignored: true
    }

    PlainText {
        anchors.verticalCenter: parent.verticalCenter
        text: brand.bar.systemName
        color: Qt.rgba(1, 1, 1, 0.92)
        font.pointSize: 12
        font.bold: true
        Accessible.ignored: true
    }
}
