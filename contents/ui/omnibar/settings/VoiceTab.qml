// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import ".."
import "../logic/VoiceTabText.js" as VoiceTabText
import "common"
import "voice"

//! The tab for the settings of voice input, a test of it, and its log.
Column {
    id: page
    objectName: "voiceTab"

    required property var bar
    required property var theme
    required property SettingsTab tab

    readonly property var voice: bar.voice
    readonly property bool isManual: Boolean(voice) && voice.voiceSubmitMode === "manual"

    spacing: 10

    SettingsHeading {
        theme: page.theme
        text: page.bar.tr("Voice input")
    }

    SettingsCaption {
        theme: page.theme
        text: page.bar.tr("Tune transcription, silence detection, and voice command behavior.")
    }

    SettingsHeading {
        theme: page.theme
        topPadding: 6
        isSection: true
        text: page.bar.tr("Transcription method")
    }

    ChoiceRow {
        control.objectName: "methodCombo"

        theme: page.theme
        enabled: Boolean(page.voice)
        label: page.bar.tr("Method")
        choices: [
            { "value": "batch", "text": page.bar.tr("Record, then transcribe") },
            { "value": "live", "text": page.bar.tr("Live streaming") }
        ]
        current: page.voice ? page.voice.sttInputMode : "batch"
        onChosen: page.voice.sttInputMode = value
    }

    SettingsCaption {
        theme: page.theme
        text: page.bar.tr("Shared by OmniBar mic and Voice test. Batch records then transcribes; Live shows text while you speak.")
    }

    SettingsCaption {
        objectName: "noLiveStt"

        theme: page.theme
        visible: Boolean(page.voice) && !page.voice.liveSttAvailable
        text: page.bar.tr("Live streaming is not available on this system. Batch will be used instead.")
        color: "#8a6a4a"
    }

    SettingsHeading {
        theme: page.theme
        topPadding: 6
        isSection: true
        text: page.bar.tr("After transcription")
    }

    ChoiceRow {
        control.objectName: "submitCombo"

        theme: page.theme
        enabled: Boolean(page.voice)
        label: page.bar.tr("Submit")
        choices: [
            { "value": "auto", "text": page.bar.tr("Auto send — countdown then send") },
            { "value": "manual", "text": page.bar.tr("Manual — compose, then Enter") }
        ]
        current: page.voice ? page.voice.voiceSubmitMode : "auto"
        onChosen: page.voice.voiceSubmitMode = value
    }

    SettingsCaption {
        theme: page.theme
        text: page.bar.tr("OmniBar only. Manual mode appends each utterance so you can keep speaking before pressing Enter.")
    }

    SettingsHeading {
        theme: page.theme
        topPadding: 6
        isSection: true
        text: page.bar.tr("Silence detection")
    }

    SliderRow {
        control.objectName: "silenceSlider"

        theme: page.theme
        enabled: Boolean(page.voice)
        label: page.bar.tr("Silence timeout")
        range: VoiceTabText.silence
        current: VoiceTabText.inRange(page.voice ? page.voice.silenceTimeoutMs : undefined, VoiceTabText.silence)
        valueText: VoiceTabText.silenceText(current, page.bar.tr)
        onMoved: page.voice.silenceTimeoutMs = value
    }

    SettingsCaption {
        theme: page.theme
        text: page.bar.tr("How long to wait after you stop speaking before sending audio for transcription.")
    }

    Column {
        objectName: "delaySection"

        width: parent.width
        spacing: page.spacing
        visible: !page.isManual

        SettingsHeading {
            theme: page.theme
            topPadding: 6
            isSection: true
            text: page.bar.tr("Voice command safety")
        }

        SliderRow {
            control.objectName: "delaySlider"

            theme: page.theme
            enabled: Boolean(page.voice)
            label: page.bar.tr("Auto-send delay")
            range: VoiceTabText.delay
            current: VoiceTabText.inRange(page.voice ? page.voice.voiceConfirmDelaySec : undefined, VoiceTabText.delay)
            valueText: VoiceTabText.delayText(current, page.bar.tr)
            onMoved: page.voice.voiceConfirmDelaySec = value
        }

        SettingsCaption {
            theme: page.theme
            text: page.bar.tr("Auto send: countdown before the prompt is sent. Set 0 s to send immediately. Cancel or edit during the countdown.")
        }
    }

    VoiceTestPanel {
        width: parent.width
        bar: page.bar
        theme: page.theme
        active: page.tab.current && page.bar.settingsPanelOpen && !page.bar.compactMode && page.bar.visible
    }

    SettingsHeading {
        theme: page.theme
        topPadding: 6
        isSection: true
        text: page.bar.tr("Voice event log")
    }

    StateSwitch {
        objectName: "voiceLogSwitch"

        theme: page.theme
        enabled: Boolean(page.voice)
        label: page.bar.tr("Enable voice logging")
        on: Boolean(page.voice) && page.voice.voiceLogEnabled
        onSwitched: page.voice.voiceLogEnabled = on
    }

    SettingsCaption {
        theme: page.theme
        text: page.bar.tr("When on, captures timestamped events for listening, silence detection, transcription, and corrections.")
    }

    LateLoader {
        width: parent.width
        visible: wanted
        file: Qt.resolvedUrl("voice/VoiceLog.qml")
        properties: ({ "bar": page.bar, "theme": page.theme })
        wanted: Boolean(page.voice) && page.voice.voiceLogEnabled
        kept: false
    }
}
