// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import org.kde.loomra 1.0 as Loomra
import org.kde.loomra.components.controls 1.0

import "../logic/MessageTime.js" as MessageTime

//! One row of the conversation: author, time, avatar, and the bubble with its buttons.
Item {
    id: row
    objectName: "messageRow"

    required property var bar
    required property var theme

    required property int index
    required property string role
    required property string text
    required property string fallbackText
    required property bool hasTool
    required property string toolStatus
    required property double createdAt
    required property string feedbackVote

    readonly property bool isUser: role === "user"
    readonly property bool isAssistant: role === "assistant"
    readonly property string author: isUser ? bar.tr("You") : role === "system" ? bar.tr("System") : bar.tr("Tovi")
    readonly property string time: MessageTime.formatMessageTime(createdAt)
    readonly property var bubbleLook: theme.bubbles[role] || theme.bubbles.assistant
    readonly property bool current: ListView.isCurrentItem && ListView.view.activeFocus

    implicitHeight: label.height + 4 + bubble.height
    height: implicitHeight
    // Must stay true while the focus is here: Up and Down change the current item before they move the focus.
    activeFocusOnTab: ListView.isCurrentItem || activeFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: author + ", " + time + ": " + (fallbackText || text)

    ListView.onAdd: entrance.start()

    Row {
        id: label

        x: row.isUser ? row.width - width - 4 : 38
        spacing: 5

        PlainText {
            anchors.verticalCenter: parent.verticalCenter
            text: row.author
            color: row.theme.uiTextCaption
            font.pixelSize: 12
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }

        PlainText {
            anchors.verticalCenter: parent.verticalCenter
            text: "·"
            color: row.theme.uiTextCaption
            font.pixelSize: 12
            Accessible.ignored: true
        }

        PlainText {
            anchors.verticalCenter: parent.verticalCenter
            text: row.time
            color: row.theme.uiTextCaption
            font.pixelSize: 11
            Accessible.ignored: true
        }
    }

    Rectangle {
        anchors.left: parent.left
        anchors.top: bubble.top
        width: 26
        height: 26
        radius: 13
        visible: !row.isUser
        color: row.theme.uiAccentDim
        border.width: 1
        border.color: row.theme.uiAsstBubbleBorder

        FallbackIcon {
            anchors.centerIn: parent
            name: row.isAssistant ? "starred-symbolic" : "dialog-information"
            fallback: row.isAssistant ? "draw-star" : ""
            size: 14
            color: row.theme.uiIconMuted
        }
    }

    Rectangle {
        id: bubble
        objectName: "messageBubble"

        x: row.isUser ? row.width - width : 34
        y: label.height + 4
        width: Math.round(row.width * 0.78)
        height: content.implicitHeight + 18
        radius: 14
        color: row.bubbleLook.fill
        border.width: row.current ? 2 : 1
        border.color: row.current ? row.theme.focusRing : row.bubbleLook.border

        Loomra.BotTextBubble {
            id: content

            // Leaves a column for the buttons, so that no text is below them.
            width: parent.width - (row.isAssistant ? actions.width + 4 : 0)
            anchors.verticalCenter: parent.verticalCenter
            content: row.fallbackText || row.text
            hasTool: row.hasTool
            toolStatus: row.toolStatus
            enablePercentHighlight: !row.isUser
            lightChrome: row.theme.uiLight
        }

        Loader {
            id: actions

            anchors.top: parent.top
            anchors.right: parent.right
            anchors.topMargin: 8
            anchors.rightMargin: 10
            active: row.isAssistant
            Accessible.ignored: true
            sourceComponent: MessageActions {
                bar: row.bar
                theme: row.theme
                rowIndex: row.index
                vote: row.feedbackVote
                reachable: row.ListView.isCurrentItem
            }
        }

        ParallelAnimation {
            id: entrance

            NumberAnimation { target: bubble; property: "opacity"; from: 0; to: 1; duration: 280; easing.type: Easing.OutCubic }
            NumberAnimation { target: bubble; property: "scale"; from: 0.97; to: 1; duration: 280; easing.type: Easing.OutCubic }
        }
    }
}
