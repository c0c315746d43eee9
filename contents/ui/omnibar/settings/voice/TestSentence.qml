// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../../components/logic/LiteralText.js" as LiteralText
import "../../../../../components/logic/Native.js" as Native
import "../../../../../components/logic/Translatable.js" as Translatable
import "../../logic/VoiceTabText.js" as VoiceTabText
import "../../logic/VoiceText.js" as VoiceText
import "../common"

//! The sentence to read aloud, its transcript, and the buttons of the voice test.
Column {
    id: card

    required property var bar
    required property var theme
    //! The VoiceTestPanel.
    required property Item test

    //! Calls a function that may disable the button with the focus, which then goes to another button. The bar would
    //! move it to the prompt.
    function keepingFocus(button, other, action) {
        const focused = button.activeFocus;
        action();
        if (focused && !button.enabled)
            other.forceActiveFocus(Qt.TabFocusReason);
    }

    spacing: 8

    Rectangle {
        objectName: "sentenceCard"

        width: parent.width
        height: texts.height + 20
        radius: 8
        color: card.theme.uiWellFill
        border.width: 1
        border.color: card.theme.uiWellBorder

        Column {
            id: texts

            anchors.left: parent.left
            anchors.leftMargin: 12
            y: 10
            width: parent.width - 24
            spacing: 4

            SettingsCaption {
                objectName: "sentencePlace"

                theme: card.theme
                text: card.test.sentence ? VoiceText.sentencePlace(card.test.currentIndex, card.test.sentences.length, card.test.sentence.category, card.bar.tr) : ""
            }

            PlainText {
                objectName: "sentenceText"

                width: parent.width
                text: card.test.sentence ? VoiceText.quoted(card.test.sentence.text) : ""
                color: card.theme.uiTextStrong
                font.pointSize: 12
                wrapMode: Text.Wrap
                elide: Text.ElideNone
            }

            SettingsStatus {
                objectName: "pendingText"

                theme: card.theme
                color: card.test.pendingHypothesis === "" ? card.theme.uiTextCaption : card.theme.accentText
                message: card.test.pendingHypothesis === "" ? card.bar.tr("Nothing heard yet.")
                    : Translatable.filled(card.bar.tr("Understood: {text}"), { "text": card.test.pendingHypothesis })
            }
        }
    }

    SettingsStatus {
        objectName: "voiceTestState"

        theme: card.theme
        color: card.test.problem === "" ? card.theme.uiTextCaption : card.theme.dangerText
        message: VoiceTabText.testState({
            "available": Boolean(card.test.voice),
            "problem": card.test.problem,
            "listening": card.test.listening,
            "transcribing": card.test.transcribing,
            "modelLoaded": Boolean(card.test.voice) && card.test.voice.isModelLoaded
        }, card.bar.tr)
    }

    Flow {
        width: parent.width
        spacing: 8

        SettingsButton {
            id: mic
            objectName: "voiceTestMicBtn"

            theme: card.theme
            fill: card.test.listening ? Qt.rgba(0.92, 0.15, 0.15, 0.85) : card.theme.positiveFill
            hoverFill: card.test.listening ? fill : card.theme.positiveHover
            borderColor: "transparent"
            textColor: "white"
            enabled: Boolean(card.test.voice) && !card.test.transcribing
            label: card.test.listening ? card.bar.tr("Stop") : card.bar.tr("Start listening")
            spaceHolds: true
            Accessible.description: card.test.listening ? tip.text : ""
            onClicked: {
                if (heldBySpace)
                    heldBySpace = false;
                else
                    card.test.startOrStop();
            }
            // After a transcription the focus returns without a reason for a ring.
            onActiveFocusChanged: {
                if (activeFocus && focusReason === Qt.OtherFocusReason)
                    focusReason = Qt.TabFocusReason;
            }
            onPressAndHold: Native.call(card.test.voice, "cancelListening")

            HoverTip {
                id: tip

                control: mic
                text: card.bar.tr("Hold to cancel")
                enabledHere: card.test.listening
            }
        }

        SettingsButton {
            id: submitButton
            objectName: "submitTestBtn"

            theme: card.theme
            enabled: card.test.pendingHypothesis !== ""
            label: card.bar.tr("Submit")
            onClicked: card.keepingFocus(submitButton, mic, card.test.submit)
        }

        SettingsButton {
            id: previousButton
            objectName: "previousSentenceBtn"

            theme: card.theme
            enabled: card.test.currentIndex > 0
            label: card.bar.tr("Previous sentence")
            onClicked: card.keepingFocus(previousButton, nextButton, () => { --card.test.currentIndex; })
        }

        SettingsButton {
            id: nextButton
            objectName: "nextSentenceBtn"

            theme: card.theme
            enabled: card.test.currentIndex + 1 < card.test.sentences.length
            label: card.bar.tr("Next sentence")
            onClicked: card.keepingFocus(nextButton, previousButton, () => { ++card.test.currentIndex; })
        }

        SettingsButton {
            id: clearButton
            objectName: "clearTestResultsBtn"

            theme: card.theme
            enabled: card.test.testResults.length > 0 || card.test.pendingHypothesis !== ""
            label: card.bar.tr("Clear test results")
            onClicked: card.keepingFocus(clearButton, mic, card.test.clearResults)
        }
    }
}
