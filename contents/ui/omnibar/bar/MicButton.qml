// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../common"
import "../logic/Native.js" as Native

//! Starts and ends a spoken prompt. Without the voice path it keeps its idle look and says so.
RoundButton {
    id: mic
    objectName: "micBtn"

    required property var bar

    readonly property var voice: bar.voice
    readonly property bool listening: voice ? voice.isListening : false
    readonly property bool transcribing: voice ? voice.isTranscribing : false
    readonly property bool active: listening || transcribing

    text: bar.tr("Voice input")
    tip: active ? "" : voice ? bar.tr("Voice input (click to speak)") : bar.tr("Voice input unavailable")
    fill: active ? Qt.rgba(0.92, 0.15, 0.15, 0.85) : Qt.rgba(1, 1, 1, 0.06)
    hoverFill: active ? fill : Qt.rgba(1, 1, 1, 0.15)
    hoverDuration: 150
    iconName: transcribing ? "view-refresh" : "audio-input-microphone"
    onClicked: {
        if (listening) {
            Native.call(voice, "stopListening");
        } else if (transcribing) {
            Native.call(voice, "cancelListening");
        } else {
            if (voice && voice.isSpeaking)
                Native.call(voice, "stopSpeaking");
            Native.call(voice, "startListening");
        }
    }
    onPressAndHold: Native.call(voice, "cancelListening")
}
