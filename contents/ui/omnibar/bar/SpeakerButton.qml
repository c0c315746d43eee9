// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../components/logic/Native.js" as Native

//! Turns reading aloud on and off. While a reply is being spoken, a click stops it.
RoundButton {
    id: speaker
    objectName: "speakerBtn"

    required property var bar

    readonly property var voice: bar.voice
    readonly property bool speaking: voice ? voice.isSpeaking : false
    readonly property bool readsAloud: voice ? voice.ttsEnabled : false

    // Assistive technology adds the checked state to the name, so the button is checkable only while a click changes it.
    label: speaking ? bar.tr("Stop reading aloud") : bar.tr("Read replies aloud")
    Accessible.description: speaking ? tip : readsAloud ? bar.tr("Turns reading aloud off") : bar.tr("Turns reading aloud on")
    Accessible.checkable: !speaking
    Accessible.checked: !speaking && readsAloud
    tip: speaking ? bar.tr("Speaking... (click to stop)") : readsAloud ? bar.tr("Read replies aloud (on)") : bar.tr("Read replies aloud (off)")
    fill: speaking ? Qt.rgba(0.15, 0.55, 0.92, 0.85) : readsAloud ? Qt.rgba(0.15, 0.55, 0.92, 0.35) : Qt.rgba(1, 1, 1, 0.08)
    hoverFill: speaking ? fill : Qt.rgba(1, 1, 1, 0.12)
    borderColor: readsAloud ? Qt.rgba(0.2, 0.6, 1.0, 0.5) : "transparent"
    iconName: readsAloud ? "audio-volume-high" : "audio-volume-muted"
    iconMask: true // the muted speaker may have a line of another colour across
    onClicked: {
        if (speaking)
            Native.call(voice, "stopSpeaking");
        else if (voice)
            voice.ttsEnabled = !voice.ttsEnabled;
    }

    Pulse {
        target: speaker
        low: 0.6
        duration: 500
        running: speaker.speaking
    }
}
