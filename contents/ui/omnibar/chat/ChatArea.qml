// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import org.kde.loomra.components.controls 1.0

//! The list of messages. Only visible rows are created, so that long conversations stay fast. Up and Down change the
//! current row, whose buttons are reached by Tab.
Rectangle {
    id: area

    required property var bar
    required property var theme

    function scrollToEnd() {
        rows.followEnd = true;
        rows.positionViewAtEnd();
    }

    radius: 10
    color: theme.uiMsgAreaBg
    border.width: 1
    border.color: theme.uiMsgAreaBorder

    ListView {
        id: rows
        objectName: "messageList"

        //! Whether to stay at the end while rows grow. Set by where the user has scrolled to.
        property bool followEnd: true

        anchors.fill: parent
        anchors.margins: 10
        spacing: 10
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: true
        highlightFollowsCurrentItem: activeFocus
        model: area.bar.chatModel
        currentIndex: -1
        cacheBuffer: 200
        Accessible.role: Accessible.List
        Accessible.name: area.bar.tr("Messages")

        // Tab moves to the current row, which is the last one unless the user is moving through the list.
        onCountChanged: {
            if (!activeFocus)
                currentIndex = count - 1;
        }
        onCurrentIndexChanged: {
            if (activeFocus)
                followEnd = currentIndex === count - 1;
        }
        onMovementEnded: followEnd = atYEnd
        onContentHeightChanged: {
            if (followEnd && !moving)
                positionViewAtEnd();
        }
        onHeightChanged: {
            if (followEnd)
                positionViewAtEnd();
        }

        delegate: MessageRow {
            x: LayoutMirroring.enabled ? ListView.view.width - width : 0
            width: ListView.view.width - scrollBar.width - 4
            bar: area.bar
            theme: area.theme
        }

        footer: ThinkingIndicator {
            width: ListView.view ? ListView.view.width : 0
            bar: area.bar
            theme: area.theme
        }

        T.ScrollBar.vertical: PlainScrollBar {
            id: scrollBar
            objectName: "messageScrollBar"

            thumbColor: area.theme.uiScrollThumb
            trackColor: area.theme.uiScrollTrack
            Accessible.name: area.bar.tr("Scroll messages")
            onPressedChanged: rows.followEnd = rows.atYEnd
        }
    }
}
