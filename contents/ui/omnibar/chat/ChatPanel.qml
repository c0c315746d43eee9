// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../common"
import "../logic/Geometry.js" as Geometry

//! The panel with the conversation.
FloatingPanel {
    id: chatPanel
    objectName: "chatPanel"

    required property var bar
    //! The prompt bar, which determines the width and the available height.
    required property Item barCard

    readonly property int headerHeight: 64

    //! The visible parts of the column besides the message area, such as the suggestions. Whatever is added
    //! to the column is counted automatically. A Column leaves out parts without a height.
    readonly property var extras: Array.from(column.children)
        .filter(part => part !== area && part !== disclaimer && part.visible && part.height > 0)
    readonly property real areaHeight: Geometry.chatAreaHeight(
        fullHeight, headerHeight, Geometry.chatExtrasHeight(extras.map(part => part.height)))
    readonly property real fullHeight: Geometry.chatPanelHeight(bar.chatMinHeight, bar.chatMaxHeight, barCard.targetY,
                                                                bar.chatTopSafePadding)

    // The suggestions don't count: on a low screen they may scroll out of view while a plan waits for the user.
    readonly property real planCardMaxHeight: Geometry.planCardMaxHeight(
        fullHeight, headerHeight, extras.filter(part => part !== planCardLoader && part !== suggestionCards).map(part => part.height))

    function scrollToEnd() {
        area.scrollToEnd();
    }

    width: barCard.width
    height: fullHeight
    shown: bar.chatPanelShown
    Accessible.role: Accessible.Pane
    Accessible.name: bar.tr("Conversation")

    Behavior on height {
        enabled: chatPanel.built
        NumberAnimation {
            duration: chatPanel.entranceDuration
            easing.type: Easing.OutCubic
        }
    }

    ChatHeader {
        id: header

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 12
        height: chatPanel.headerHeight
        bar: chatPanel.bar
        theme: chatPanel.theme
    }

    // Scrolls only if the screen is too low even for a message area of minimum height.
    ScrollPane {
        id: pane
        objectName: "chatScrollPane"

        // The margin of the panel has the scroll bar, and the focus rings of what fills the width.
        anchors.left: header.left
        anchors.leftMargin: -column.anchors.leftMargin
        anchors.right: parent.right
        anchors.rightMargin: 3
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        anchors.topMargin: column.spacing
        anchors.bottomMargin: 12
        contentHeight: column.height
        // Not while the panel grows to its full height.
        interactive: contentHeight > chatPanel.fullHeight - y - 12
        thumbColor: chatPanel.theme.uiScrollThumb
        scrollBarName: chatPanel.bar.tr("Scroll conversation")

        Column {
            id: column

            anchors.left: parent.left
            anchors.leftMargin: 3
            width: header.width
            spacing: Geometry.chatColumnSpacing

            LateLoader {
                id: planCardLoader

                width: parent.width
                visible: chatPanel.bar.planCardShown
                file: Qt.resolvedUrl("PlanCard.qml")
                properties: ({ "bar": chatPanel.bar, "theme": chatPanel.theme, "maximumHeight": () => chatPanel.planCardMaxHeight })
                wanted: chatPanel.bar.planCardShown
                // It is at the top, where the user may have scrolled away from.
                onVisibleChanged: if (visible) pane.contentY = 0
            }

            LateLoader {
                width: parent.width
                visible: chatPanel.bar.planExecutingVisible
                file: Qt.resolvedUrl("PlanProgressBar.qml")
                properties: ({ "bar": chatPanel.bar, "theme": chatPanel.theme })
                wanted: chatPanel.bar.planExecutingVisible
            }

            LateLoader {
                width: parent.width
                visible: chatPanel.bar.undoShown
                file: Qt.resolvedUrl("UndoBar.qml")
                properties: ({ "bar": chatPanel.bar, "theme": chatPanel.theme })
                wanted: chatPanel.bar.undoShown
            }

            ChatArea {
                id: area
                objectName: "chatArea"

                width: parent.width
                height: chatPanel.areaHeight
                bar: chatPanel.bar
                theme: chatPanel.theme
            }

            SuggestionCards {
                id: suggestionCards
                objectName: "suggestionCards"

                width: parent.width
                visible: chatPanel.bar.suggestionsShown
                bar: chatPanel.bar
                theme: chatPanel.theme
            }

            PlainText {
                id: disclaimer

                width: parent.width
                text: chatPanel.bar.tr("Tovi can make mistakes. Verify important information.")
                color: chatPanel.theme.uiTextCaption
                font.pixelSize: 11
                horizontalAlignment: Text.AlignHCenter
            }
        }
    }
}
