// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../omnibar/settings/common"
import "ValidationText.js" as ValidationText

//! The level of the microphone, and how an utterance ends.
Column {
    id: meter

    required property var validation
    required property var theme

    spacing: 6

    Rectangle {
        objectName: "levelTrack"

        width: parent.width
        height: 8
        radius: 4
        color: meter.theme.uiWellFillHi
        Accessible.role: Accessible.Indicator
        Accessible.name: meter.validation.tr("Microphone level")

        Rectangle {
            objectName: "levelBar"

            anchors.left: parent.left
            width: parent.width * ValidationText.levelShare(meter.validation.voice ? meter.validation.voice.inputLevel : 0)
            height: parent.height
            radius: parent.radius
            color: meter.theme.positiveText
        }
    }

    SettingsCaption {
        objectName: "captureLine"

        theme: meter.theme
        text: ValidationText.captureLine(meter.validation.voice, meter.validation.tr)
    }
}
