// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "MarkdownRenderer.js" as MarkdownRenderer

//! The words of one message, drawn from its markdown. It fills the bubble of its row, which is 18 pixels higher than
//! implicitHeight: with the space that the last line leaves below itself, that keeps 12 pixels free on all sides.
Item {
    id: bubble

    //! The message as it came; nothing in it becomes markup of its own, a link or an image.
    property string content: ""
    //! The reply tells of a tool that ran: a dot shows how it went, by toolStatus.
    property bool hasTool: false
    property string toolStatus: ""
    //! Colours numbers of percent, red to green.
    property bool enablePercentHighlight: true
    property bool lightChrome: false

    readonly property int margin: 12
    //! Above this many characters words are drawn as they are: rich text takes up to 25 µs a character, plain text 1.
    readonly property int markdownLimit: 50000
    readonly property bool asMarkdown: content.length <= markdownLimit
    //! A long text may hold a word that fills pages. Looking for its end anew on every line, as wrapping between words
    //! does, would take minutes.
    readonly property bool breaksWords: !asMarkdown && content.split(/\s+/).some(word => word.length > 1000)

    implicitHeight: Math.ceil(words.implicitHeight)

    Accessible.role: Accessible.StaticText
    Accessible.name: content

    function toolColor() {
        const colors = { "success": "#4ade80", "error": "#f87171", "failed": "#f87171" };
        // Cut, as a hostile status of a megabyte could take minutes to lower-case.
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
        text: bubble.asMarkdown ? MarkdownRenderer.render(bubble.content, {
            lightChrome: bubble.lightChrome,
            enablePercentHighlight: bubble.enablePercentHighlight
        }) : bubble.content
        // The bubble itself speaks for its words, without the marks of rich text.
        Accessible.ignored: true
    }
}
