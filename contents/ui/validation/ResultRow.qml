// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../components/logic/LiteralText.js" as LiteralText

//! A row of a ResultList: a coloured heading, and one or two lines that may be untrusted. The whole text is in a tooltip.
Item {
    id: row
    objectName: "resultRow"

    required property var owner
    required property int index
    required property string heading
    required property color headingColor
    //! The sentence that was read aloud, if any.
    property string sentence: ""
    required property string transcript

    readonly property bool visualFocus: activeFocus
    readonly property bool hovered: pointer.hovered
    readonly property string line: LiteralText.oneLine(transcript, 600)

    x: owner.rowX
    width: owner.rowWidth
    height: owner.rowHeight
    activeFocusOnTab: ListView.isCurrentItem || activeFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: [heading, sentence, line].filter(part => part !== "").join(", ")

    Column {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        PlainText {
            objectName: "rowHeading"

            width: parent.width
            text: row.heading
            color: row.headingColor
            font.pointSize: 8
            horizontalAlignment: Text.AlignLeft
            Accessible.ignored: true
        }

        PlainText {
            width: parent.width
            visible: text !== ""
            text: row.sentence
            color: row.owner.theme.uiTextSoft
            font.pointSize: 9
            horizontalAlignment: Text.AlignLeft
            Accessible.ignored: true
        }

        PlainText {
            id: transcriptLine
            objectName: "rowTranscript"

            width: parent.width
            text: row.line !== "" ? row.line : "—"
            color: row.owner.theme.uiTextStrong
            font.pointSize: 10
            horizontalAlignment: Text.AlignLeft
            maximumLineCount: 1
            Accessible.ignored: true
        }
    }

    HoverHandler {
        id: pointer
    }

    HoverTip {
        control: row
        text: row.line
        longest: 600
        enabledHere: transcriptLine.truncated
    }

    FocusRing {
        control: row
        anchors.margins: 0
        radius: 6
        border.color: row.owner.theme.focusRing
    }
}
