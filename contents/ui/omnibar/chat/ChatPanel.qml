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

    //! Height of the optional parts besides the header and the message area.
    readonly property real extrasHeight: suggestions.visible ? suggestions.height : 0
    readonly property real areaHeight: Geometry.chatAreaHeight(fullHeight, headerHeight, extrasHeight)
    readonly property real fullHeight: Geometry.chatPanelHeight(bar.chatMinHeight, bar.chatMaxHeight, barCard.targetY,
                                                                bar.chatTopSafePadding)

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
    Column {
        anchors.fill: parent
        anchors.margins: 12
        spacing: 10

        ChatHeader {
            width: parent.width
            height: chatPanel.headerHeight
            bar: chatPanel.bar
            theme: chatPanel.theme
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
            id: suggestions
            objectName: "suggestionCards"

            width: parent.width
            // If the screen is too low for both, the conversation has priority.
            visible: chatPanel.bar.suggestionsShown
                     && Geometry.chatAreaFits(chatPanel.fullHeight, chatPanel.headerHeight, implicitHeight)
            bar: chatPanel.bar
            theme: chatPanel.theme
        }

        PlainText {
            width: parent.width
            text: chatPanel.bar.tr("Tovi can make mistakes. Verify important information.")
            color: chatPanel.theme.uiTextFaint
            font.pixelSize: 11
            horizontalAlignment: Text.AlignHCenter
        }
    }
}
