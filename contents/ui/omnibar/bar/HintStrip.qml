// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../components/logic/LiteralText.js" as LiteralText

//! The keyboard hints at the bottom of the window.
Column {
    id: strip

    required property var bar

    //! In characters: more than fits on two lines.
    readonly property int longestLine: 1000
    //! The first row whose "holds" returns true is shown. Intentional: the black texts are faint on the dark scrim, so
    //! that they don't distract.
    readonly property var hints: [
        { "holds": () => bar.voiceConfirmPending, "text": bar.tr("<b>Esc</b> to cancel voice · <b>Enter</b> to send"), "color": Qt.rgba(0.8, 0.5, 1.0, 0.5) },
        { "holds": () => bar.isQueryProcessing(), "text": bar.tr("<b>Esc</b> to stop"), "color": Qt.rgba(0, 0, 0, 0.4) },
        { "holds": () => true, "text": bar.tr("<b>Esc</b> to minimize · Type <b>/</b> for commands"), "color": Qt.rgba(0, 0, 0, 0.4) }
    ]
    readonly property var hint: hints.find(row => row.holds())

    spacing: 2

    PlainText {
        objectName: "notifyLine"
        width: parent.width
        visible: text !== ""
        text: LiteralText.oneLine(strip.bar.wiNotifyBarLine, strip.longestLine)
        color: Qt.rgba(1, 1, 1, 0.52)
        font.pixelSize: 10
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        maximumLineCount: 2
    }

    Text {
        objectName: "keyHint"
        width: parent.width
        // Rich text is safe here: the texts are our own, with the keys in bold.
        textFormat: Text.RichText
        text: strip.hint.text
        color: strip.hint.color
        font.pixelSize: 10
        horizontalAlignment: Text.AlignHCenter
        Accessible.role: Accessible.StaticText
        Accessible.name: text.replace(/<\/?b>/g, "")
    }
}
