// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import org.kde.loomra.components.controls 1.0

//! A framed list that creates only the rows in view. Its height limits follow those of its contents, so give it one.
Rectangle {
    id: frame

    required property var theme
    //! Accessible name.
    required property string name
    required property string scrollBarName
    property alias model: list.model
    property alias delegate: list.delegate
    property alias view: list
    property alias currentIndex: list.currentIndex

    //! Width of the rows, beside the scroll bar if there is one.
    readonly property real rowWidth: list.width - (list.interactive ? scrollBar.width + 4 : 0)

    width: parent.width
    radius: 8
    color: theme.uiWellFill
    border.width: 1
    border.color: theme.uiWellBorder

    ListView {
        id: list

        anchors.fill: parent
        anchors.margins: 2
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        keyNavigationEnabled: true
        highlightMoveDuration: 0
        Accessible.role: Accessible.List
        Accessible.name: frame.name

        T.ScrollBar.vertical: PlainScrollBar {
            id: scrollBar

            visible: list.interactive
            thumbColor: frame.theme.uiScrollThumb
            Accessible.name: frame.scrollBarName
        }
    }
}
