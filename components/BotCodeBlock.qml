// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "BlockContent.js" as BlockContent

//! A block of code with its language.
BlockWidget {
    id: code

    property string content: BlockContent.contentOf(payload)
    readonly property string language: BlockContent.languageOf(payload)

    spacing: 6

    PlainText {
        id: languageText
        objectName: "language"

        anchors.left: parent.left
        width: parent.width - code.freeWidth
        horizontalAlignment: Text.AlignLeft
        visible: text !== ""
        text: code.language
        color: code.mutedColor
        font.pixelSize: 10
    }

    //! Keeps the box below the free corner.
    Item {
        width: parent.width
        height: code.freeHeight - (languageText.visible ? languageText.height + code.spacing : 0) - code.spacing
        visible: height > 0
    }

    Rectangle {
        objectName: "codeFill"

        width: parent.width
        height: words.implicitHeight
        radius: 8
        color: code.lightChrome ? Qt.rgba(0, 0, 0, 0.06) : Qt.rgba(1, 1, 1, 0.10)

        PlainText {
            id: words
            objectName: "words"

            width: parent.width
            topPadding: 10
            bottomPadding: 10
            leftPadding: 12
            rightPadding: 12
            text: code.content
            // Code is written from left to right in every language.
            horizontalAlignment: Text.AlignLeft
            LayoutMirroring.enabled: false
            color: code.lightChrome ? Qt.rgba(0.15, 0.2, 0.35, 0.95) : Qt.rgba(0.85, 0.9, 1.0, 0.95)
            font.family: "monospace"
            font.pixelSize: 12
            lineHeight: 1.35
            elide: Text.ElideNone
            wrapMode: BlockContent.hasEndlessWord(text) ? Text.WrapAnywhere : Text.Wrap
        }
    }
}
