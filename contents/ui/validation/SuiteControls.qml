// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../omnibar/logic/VoiceText.js" as VoiceText
import "../omnibar/settings/common"

//! The sentence to read aloud, and the way through the suite.
Column {
    id: controls
    objectName: "suiteControls"

    required property var validation
    required property var theme

    readonly property bool hasSentences: validation.suiteSentences.length > 0
    readonly property bool canRun: hasSentences && Boolean(validation.voice)

    spacing: 8

    SettingsCaption {
        objectName: "sentencePosition"

        theme: controls.theme
        text: controls.hasSentences
              ? VoiceText.sentencePlace(controls.validation.suiteIndex, controls.validation.suiteSentences.length,
                                        controls.validation.sentence.category, controls.validation.tr)
              : controls.validation.tr("There are no sentences.")
    }

    PlainText {
        objectName: "sentenceText"

        width: parent.width
        visible: controls.hasSentences
        text: controls.hasSentences ? VoiceText.quoted(controls.validation.sentence.text) : ""
        color: controls.theme.uiTextStrong
        font.pointSize: 13
        wrapMode: Text.Wrap
        elide: Text.ElideNone
    }

    Flow {
        width: parent.width
        spacing: 8

        SettingsButton {
            objectName: "prevBtn"

            theme: controls.theme
            enabled: controls.hasSentences
            label: controls.validation.tr("Prev")
            onClicked: controls.validation.moveSentence(-1)
        }

        SettingsButton {
            objectName: "nextBtn"

            theme: controls.theme
            enabled: controls.hasSentences
            label: controls.validation.tr("Next")
            onClicked: controls.validation.moveSentence(1)
        }

        SettingsButton {
            objectName: "runAllBtn"

            theme: controls.theme
            enabled: controls.canRun
            label: controls.validation.tr("Run all sentences")
            onClicked: controls.validation.runAllSentences()
        }
    }

    SettingsCaption {
        objectName: "runLine"

        theme: controls.theme
        text: !controls.validation.suiteRunAll ? ""
            : controls.validation.suiteRunPaused ? controls.validation.tr("The run waits. Start listening to go on with this sentence.")
            : controls.validation.tr("Running all sentences. Cancel ends the run.")
    }
}
