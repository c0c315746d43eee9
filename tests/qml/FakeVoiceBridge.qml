// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The voice path as the bar sees it.
QtObject {
    property bool isListening: false
    property bool isTranscribing: false
    property bool isSpeaking: false
    property string partialTranscript: ""
    property bool ttsEnabled: false
    property bool ttsAvailable: false
    property int voiceConfirmDelaySec: 4

    property var spoken: []

    signal wakeWordActivated(string word)

    function speak(text) {
        spoken = spoken.concat(text);
    }
}
