// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "BlockContent.js" as BlockContent
import "MarkdownRenderer.js" as MarkdownRenderer

//! The text of a message, rendered from Markdown. It fills the bubble of its row, which is 18 pixels higher than
//! implicitHeight. With the spacing below the last line, that makes margins of 12 pixels on all sides.
Item {
    id: bubble

    //! The message as Markdown. HTML in it is shown as text; links and images are never created.
    property string content: ""
    //! Whether the message reports the result of a tool. A dot shows toolStatus.
    property bool hasTool: false
    property string toolStatus: ""
    //! Whether to colour percentages, from red to green.
    property bool enablePercentHighlight: true
    property bool lightChrome: false
    //! A size in the upper right corner, the left one in a mirrored layout, that the text leaves free, for buttons of the
    //! row.
    property size freeCorner: Qt.size(0, 0)

    readonly property int margin: 12
    //! Texts with more characters are shown as plain text, because rich text takes up to 15 µs per character and plain
    //! text 1 µs.
    readonly property int markdownLimit: 50000
    readonly property bool asMarkdown: content.length <= markdownLimit
    //! Whether a long text contains an extremely long word. Wrapping at word boundaries would search for its end on
    //! every line, which takes minutes.
    readonly property bool breaksWords: !asMarkdown && BlockContent.hasEndlessWord(content)

    implicitHeight: Math.ceil(words.implicitHeight)

    Accessible.role: Accessible.StaticText
    Accessible.name: content

    function toolColor() {
        const colors = { "success": "#4ade80", "error": "#f87171", "failed": "#f87171" };
        // Cut because lower-casing a hostile status of a megabyte can take minutes.
        const status = toolStatus.substring(0, 16).toLowerCase();
        return colors.hasOwnProperty(status) ? colors[status] : "#fbbf24";
    }

    Loader {
        id: toolDot
        objectName: "toolDot"
        active: bubble.hasTool
        anchors.left: parent.left
        anchors.leftMargin: bubble.margin
        anchors.verticalCenter: words.top
        anchors.verticalCenterOffset: words.font.pixelSize * 0.7

        sourceComponent: Rectangle {
            width: 10
            height: 10
            radius: 5
            color: bubble.toolColor()

            Rectangle {
                z: -1
                anchors.centerIn: parent
                width: 17
                height: 17
                radius: 8.5
                color: parent.color
                opacity: 0.22
            }
        }
    }

    Text {
        id: words
        objectName: "words"

        //! The part of the free corner inside the margins.
        readonly property real freeWidth: Math.max(0, bubble.freeCorner.width - bubble.margin)
        readonly property real freeHeight: Math.max(0, bubble.freeCorner.height - bubble.margin)
        readonly property bool mirrored: LayoutMirroring.enabled

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: bubble.margin + (bubble.hasTool ? 22 : 0)
        anchors.rightMargin: bubble.margin
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: 3
        textFormat: bubble.asMarkdown ? Text.RichText : Text.PlainText
        wrapMode: bubble.breaksWords ? Text.WrapAnywhere : Text.Wrap
        font.pixelSize: 14
        color: MarkdownRenderer.bodyColor(bubble.lightChrome)
        text: bubble.asMarkdown ? MarkdownRenderer.withFreeCorner(MarkdownRenderer.render(bubble.content, {
            lightChrome: bubble.lightChrome,
            enablePercentHighlight: bubble.enablePercentHighlight
        }), freeWidth, freeHeight, mirrored) : bubble.content
        onFreeHeightChanged: {
            if (!bubble.asMarkdown)
                forceLayout();
        }
        onMirroredChanged: {
            if (!bubble.asMarkdown)
                forceLayout();
        }
        // Not emitted for rich text.
        onLineLaidOut: {
            if (line.y < freeHeight) {
                line.width -= freeWidth;
                if (mirrored)
                    line.x += freeWidth;
            }
        }
        // The accessible name of the bubble is the text without markup.
        Accessible.ignored: true
    }
}
