// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import org.kde.loomra 1.0 as Loomra
import org.kde.loomra.components.controls 1.0

import "../logic/MessageTime.js" as MessageTime
import "../logic/RowContent.js" as RowContent

//! One row of the conversation: author, time, avatar, and the bubble with its buttons.
Item {
    id: row
    objectName: "messageRow"

    required property var bar
    required property var theme

    required property int index
    required property string role
    required property string text
    required property string messageType
    required property string payload
    required property string fallbackText
    required property bool hasTool
    required property string toolStatus
    required property double createdAt
    required property string feedbackVote
    required property string widgetState

    //! Whether the row shows a block of a structured reply. Rows outside of the view are destroyed, so a widget that the
    //! user can change binds savedState and calls saveState().
    readonly property bool structured: RowContent.isStructured(role, messageType, payload)
    //! The block of a structured reply, {} for other rows.
    readonly property var block: RowContent.parseObject(payload)
    //! What saveState() was last called with, {} before.
    readonly property var savedState: RowContent.parseObject(widgetState)

    readonly property bool isUser: role === "user"
    readonly property bool isAssistant: role === "assistant"
    readonly property string author: isUser ? bar.tr("You") : role === "system" ? bar.tr("System") : bar.tr("Tovi")
    readonly property string time: MessageTime.formatMessageTime(createdAt)
    readonly property var bubbleLook: theme.bubbles[role] || theme.bubbles.assistant
    //! The buttons: three of 24 pixels with gaps of 2, and 6 pixels of padding on the left.
    readonly property size freeCorner: isAssistant ? Qt.size(actions.anchors.rightMargin + 76 + 6,
                                                             actions.anchors.topMargin + 24) : Qt.size(0, 0)
    readonly property bool current: ListView.isCurrentItem && ListView.view.activeFocus

    //! Keeps what the user did in the widget, as an object.
    function saveState(state) {
        bar.saveWidgetState(index, state);
    }

    //! The component that shows the row.
    function contentComponent() {
        if (!structured)
            return botTextComponent;
        switch (messageType) {
        case "list":
            return botListComponent;
        case "table":
            return botTableComponent;
        case "options":
            return botOptionsComponent;
        case "slider":
            return botSliderComponent;
        // Intentional: these two components are not declared. The engine logs a reference error and the bubble stays
        // empty, but copying and feedback work.
        case "code":
            return botCodeComponent;
        case "callout":
            return botCalloutComponent;
        default:
            return botTextComponent;
        }
    }

    implicitHeight: label.height + 4 + bubble.height
    height: implicitHeight
    // Must stay true while the focus is here: Up and Down change the current item before they move the focus.
    activeFocusOnTab: ListView.isCurrentItem || activeFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: author + ", " + time + ": " + (fallbackText || text)

    ListView.onAdd: entrance.start()

    Row {
        id: label

        anchors.left: row.isUser ? undefined : parent.left
        anchors.leftMargin: 38
        anchors.right: row.isUser ? parent.right : undefined
        anchors.rightMargin: 4
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
        objectName: "avatar"

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

        anchors.left: row.isUser ? undefined : parent.left
        anchors.leftMargin: 34
        anchors.right: row.isUser ? parent.right : undefined
        y: label.height + 4
        width: Math.round(row.width * (row.structured ? 0.88 : 0.78))
        height: (content.item ? content.item.implicitHeight : 30) + 18
        radius: 14
        color: row.bubbleLook.fill
        border.width: row.current ? 2 : 1
        border.color: row.current ? row.theme.focusRing : row.bubbleLook.border

        Loader {
            id: content
            objectName: "messageContent"

            width: parent.width
            height: item ? item.implicitHeight : 0
            anchors.verticalCenter: parent.verticalCenter
            Accessible.ignored: true
            sourceComponent: row.contentComponent()
        }

        Component {
            id: botTextComponent

            Loomra.BotTextBubble {
                content: RowContent.textOf(row.payload, row.fallbackText, row.text) || row.bar.tr("(unsupported block)")
                hasTool: row.hasTool
                toolStatus: row.toolStatus
                enablePercentHighlight: !row.isUser
                lightChrome: row.theme.uiLight
                freeCorner: row.freeCorner
            }
        }

        Component {
            id: botListComponent

            Loomra.BotListWidget {
                payload: row.block
                messageIndex: row.index
                lightChrome: row.theme.uiLight
                freeCorner: row.freeCorner
                tr: row.bar.tr
            }
        }

        Component {
            id: botTableComponent

            Loomra.BotTableWidget {
                payload: row.block
                messageIndex: row.index
                lightChrome: row.theme.uiLight
                freeCorner: row.freeCorner
                tr: row.bar.tr
            }
        }

        Component {
            id: botOptionsComponent

            Loomra.BotOptionsWidget {
                payload: row.block
                messageIndex: row.index
                lightChrome: row.theme.uiLight
                freeCorner: row.freeCorner
                tr: row.bar.tr
                savedState: row.savedState
                reachable: row.ListView.isCurrentItem
                onStateSaved: row.saveState(state)
                onOptionSelected: row.bar.selectOption(messageIndex, choiceId, choiceLabel)
            }
        }

        Component {
            id: botSliderComponent

            Loomra.BotSliderWidget {
                payload: row.block
                messageIndex: row.index
                lightChrome: row.theme.uiLight
                freeCorner: row.freeCorner
                tr: row.bar.tr
                savedState: row.savedState
                reachable: row.ListView.isCurrentItem
                onStateSaved: row.saveState(state)
                onSliderSubmitted: {
                    // What had the focus is now disabled or hidden.
                    if (content.activeFocus)
                        row.forceActiveFocus(Qt.TabFocusReason);
                    row.bar.submitSlider(messageIndex, value, action);
                }
            }
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
