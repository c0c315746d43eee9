// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

//! The messages of the chat. The newest one is brought into view. Up and Down move between messages, Ctrl+C copies one.
ListView {
    id: list
    objectName: "messageList"

    required property var chatModel

    //! A click doesn't give it the focus.
    readonly property bool visualFocus: activeFocus

    //! @param index of a row of the model. It may be out of date for a moment, after the model was cleared.
    function isShown(index, role, content) {
        return index >= 0 && index < count && Boolean(role) && content !== undefined && content !== null;
    }

    function showEnd() {
        currentIndex = count - 1;
        positionViewAtEnd();
    }

    model: chatModel
    clip: true
    spacing: Kirigami.Units.smallSpacing
    boundsBehavior: Flickable.StopAtBounds
    // No delegate may exist beyond the end of the model.
    cacheBuffer: 0
    displayMarginBeginning: 0
    displayMarginEnd: 0
    highlightMoveDuration: 0
    activeFocusOnTab: count > 0
    Kirigami.Theme.inherit: false
    Kirigami.Theme.colorSet: Kirigami.Theme.View
    Accessible.role: Accessible.List
    Accessible.name: Translation.tr("Messages")
    // Once for a whole history.
    onCountChanged: Qt.callLater(showEnd)
    onWidthChanged: Qt.callLater(positionViewAtEnd)
    Keys.onPressed: {
        if (event.matches(StandardKey.Copy) && currentItem) {
            currentItem.copy();
            event.accepted = true;
        } else if (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown) {
            const step = event.key === Qt.Key_PageUp ? -height : height;
            contentY = Math.max(originY, Math.min(originY + contentHeight - height, contentY + step));
            event.accepted = true;
        }
    }

    QQC2.ScrollBar.vertical: QQC2.ScrollBar {
        Accessible.name: Translation.tr("Scroll messages")
    }

    delegate: Loader {
        id: loader
        objectName: "messageRow"

        required property int index
        required property var model

        function copy() {
            if (item)
                item.copy();
        }

        width: ListView.view ? ListView.view.width : 0
        active: list.isShown(index, model.role, model.content)
        Accessible.ignored: true
        sourceComponent: ChatMessage {
            // Assistive technology knows it, but not the loader.
            focus: true
            role: loader.model.role || ""
            content: loader.model.content || ""
            agentName: loader.model.agentName || ""
            isStreaming: Boolean(loader.model.isStreaming)
            visualFocus: list.visualFocus && loader.ListView.isCurrentItem
        }
    }

    Rectangle {
        z: -1
        anchors.fill: parent
        color: Kirigami.Theme.backgroundColor
    }
}
