// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../components/logic/Native.js" as Native

//! Starts and ends voice input. Without a voice bridge it always looks idle, and its tooltip says so.
RoundButton {
    id: mic
    objectName: "micBtn"

    required property var bar

    readonly property var voice: bar.voice
    readonly property bool listening: voice ? voice.isListening : false
    readonly property bool transcribing: voice ? voice.isTranscribing : false
    readonly property bool active: listening || transcribing

    label: bar.tr("Voice input")
    tip: listening ? bar.tr("Listening... (click to stop)") : transcribing ? bar.tr("Transcribing... (click to cancel)") : voice ? bar.tr("Voice input (click to speak)") : bar.tr("Voice input unavailable")
    // While active, the placeholder of the input shows the same text. Screen readers use the description.
    tipShown: !active
    Accessible.description: tip
    fill: active ? Qt.rgba(0.92, 0.15, 0.15, 0.85) : Qt.rgba(1, 1, 1, 0.06)
    hoverFill: active ? fill : Qt.rgba(1, 1, 1, 0.15)
    hoverDuration: 150
    borderColor: active ? Qt.rgba(1, 0.3, 0.3, 0.6) : "transparent"
    spaceHolds: true
    iconName: transcribing ? "view-refresh" : "audio-input-microphone"
    onClicked: {
        if (heldBySpace) {
            heldBySpace = false;
            return;
        }
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

    Pulse {
        target: mic
        low: 0.55
        duration: 600
        running: mic.listening
    }

    RotationAnimation {
        target: mic.contentItem
        from: 0
        to: 360
        duration: 1000
        loops: Animation.Infinite
        running: mic.transcribing
        onStopped: mic.contentItem.rotation = 0
    }

    Loader {
        anchors.fill: parent
        active: mic.listening
        Accessible.ignored: true
        sourceComponent: Arc {
            objectName: "levelRing"

            // Loud speech is far below full scale.
            readonly property real level: Math.min(mic.voice.inputLevel * 20, 1.0)

            radius: (36 - 3) / 2
            color: mic.bar.toviMagenta
            to: from + 2 * Math.PI * level
        }
    }
}
