// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "BlockContent.js" as BlockContent

//! A note, a warning or a tip, in a box with a bar in its colour.
BlockWidget {
    id: callout

    property string content: BlockContent.contentOf(payload)

    readonly property var look: looks[BlockContent.calloutVariant(payload)]
    readonly property color accent: look.accent
    readonly property var looks: ({
        "warning": {
            "accent": "#fbbf24",
            "fill": Qt.rgba(0.98, 0.75, 0, lightChrome ? 0.12 : 0.14)
        },
        "tip": {
            "accent": "#4ade80",
            "fill": Qt.rgba(0.2, 0.7, 0.4, lightChrome ? 0.10 : 0.12)
        },
        "info": {
            "accent": lightChrome ? "#7c3aed" : "#c084fc",
            "fill": lightChrome ? Qt.rgba(0.55, 0.28, 0.92, 0.10) : Qt.rgba(0.60, 0.20, 0.98, 0.14)
        }
    })

    Rectangle {
        objectName: "calloutFill"

        width: parent.width
        height: Math.max(words.implicitHeight, callout.freeHeight)
        radius: 8
        color: callout.look.fill
        border.width: 1
        border.color: Qt.rgba(callout.accent.r, callout.accent.g, callout.accent.b, 0.35)

        Rectangle {
            objectName: "accentBar"

            anchors.left: parent.left
            anchors.top: parent.top
            anchors.bottom: parent.bottom
            anchors.topMargin: 6
            anchors.bottomMargin: 6
            width: 3
            radius: 1.5
            color: callout.accent
        }

        BlockText {
            id: words
            objectName: "words"

            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            topPadding: 6
            bottomPadding: 9
            leftPadding: 12
            rightPadding: 12
            text: callout.content
            color: callout.textColor
            font.pixelSize: 13
            lineHeight: 1.4
            elide: Text.ElideNone
            wrapMode: BlockContent.hasEndlessWord(text) ? Text.WrapAnywhere : Text.Wrap
            freeCorner: Qt.size(callout.freeWidth, callout.freeHeight)
        }
    }
}
