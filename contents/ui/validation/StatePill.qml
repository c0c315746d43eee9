// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../components/logic/Translatable.js" as Translatable

//! The state of the voice path in a word.
Rectangle {
    id: pill
    objectName: "statePill"

    required property var validation

    implicitWidth: word.implicitWidth + 24
    implicitHeight: 26
    radius: height / 2
    color: validation.voiceState.color

    PlainText {
        id: word
        objectName: "stateWord"

        anchors.centerIn: parent
        text: Translatable.translated(pill.validation.voiceState.text, pill.validation.tr)
        // Readable on all colours of the pill, unlike white.
        color: "black"
        font.pointSize: 9
        font.bold: true
    }
}
