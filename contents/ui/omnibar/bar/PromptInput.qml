// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import org.kde.loomra.components.controls 1.0

import "../logic/KeyTable.js" as KeyTable
import "../../../../components/logic/LiteralText.js" as LiteralText
import "../../../../components/logic/Translatable.js" as Translatable

//! The input field for prompts.
T.TextField {
    id: input

    required property var bar

    //! The first row whose "holds" returns true gives the placeholder text.
    readonly property var placeholders: [
        { "holds": () => bar.voice && bar.voice.isListening, "text": () => bar.voice.partialTranscript || bar.tr("Listening...") },
        { "holds": () => bar.voice && bar.voice.isTranscribing, "text": () => bar.tr("Transcribing...") },
        { "holds": () => ["disconnected", "error"].includes(bar.bridgeStatus), "text": () => bar.tr("Connecting...") },
        { "holds": () => bar.slashAttachedFiles.length > 0, "text": () => attachedText() },
        { "holds": () => true, "text": () => bar.tr("Ask Tovi anything…") }
    ]

    function attachedText() {
        const names = bar.slashAttachedFiles.map(file => LiteralText.oneLine(file.name)).join(", ");
        return Translatable.filled(bar.tr("{names} attached — ask your question…"), { "names": names });
    }

    implicitHeight: 36
    color: Qt.rgba(1, 1, 1, 0.95)
    placeholderText: placeholders.find(row => row.holds()).text()
    placeholderTextColor: Qt.rgba(1, 1, 1, 0.50)
    selectionColor: bar.toviAccent
    selectedTextColor: "white"
    font.pixelSize: 15
    verticalAlignment: TextInput.AlignVCenter
    // The cursor of an empty field is beside the placeholder. A text is aligned by its own direction.
    horizontalAlignment: LayoutMirroring.enabled && length === 0 ? TextInput.AlignLeft : undefined
    selectByMouse: true
    clip: contentWidth > width
    Accessible.role: Accessible.EditableText
    Accessible.name: bar.tr("Prompt")
    Accessible.description: placeholderText

    onAccepted: bar.submitInput()
    onTextEdited: bar.inputEdited()
    Keys.onPressed: {
        const row = KeyTable.find(bar.inputKeys, event.key, event.modifiers);
        if (!row)
            return;
        row.act();
        event.accepted = true;
    }

    PlainText {
        anchors.fill: parent
        verticalAlignment: Text.AlignVCenter
        visible: input.bar.firstFrameShown && input.length === 0 && input.preeditText === ""
        // An invisible text is laid out too, and would delay the first frame.
        text: input.bar.firstFrameShown ? input.placeholderText : ""
        color: input.placeholderTextColor
        font: input.font
        Accessible.ignored: true
    }
}
