// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import org.kde.loomra.components.controls 1.0

//! A framed list with rows of one height, which creates only those in view.
Rectangle {
    id: frame

    required property var theme
    //! Accessible name.
    required property string name
    required property string scrollBarName
    property color thumbColor: theme.uiScrollThumb
    //! Number of rows. The view's own count changes within its layout.
    required property int count
    required property int rowHeight
    property int rowSpacing: 2
    //! Around the rows.
    property int framePadding: 2
    property int minimumHeight: 0
    required property int maximumHeight
    property alias model: list.model
    property alias delegate: list.delegate
    property alias view: list
    property alias currentIndex: list.currentIndex

    readonly property int fullHeight: count * (rowHeight + rowSpacing) + 2 * framePadding
    readonly property bool scrolls: fullHeight > height
    //! Width of the rows, beside the scroll bar if there is one.
    readonly property real rowWidth: list.width - (scrolls ? scrollBar.width + 4 : 0)
    readonly property real rowX: LayoutMirroring.enabled ? list.width - rowWidth : 0

    width: parent.width
    height: Math.min(maximumHeight, Math.max(minimumHeight, fullHeight))
    radius: 8
    color: theme.uiWellFill
    border.width: 1
    border.color: theme.uiWellBorder

    ListView {
        id: list

        anchors.fill: parent
        anchors.margins: frame.framePadding
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        spacing: frame.rowSpacing
        interactive: frame.scrolls
        // Enough for Tab to find the next row.
        cacheBuffer: frame.rowHeight + frame.rowSpacing
        keyNavigationEnabled: true
        highlightMoveDuration: 0
        Accessible.role: Accessible.List
        Accessible.name: frame.name

        T.ScrollBar.vertical: PlainScrollBar {
            id: scrollBar

            visible: frame.scrolls
            thumbColor: frame.thumbColor
            Accessible.name: frame.scrollBarName
        }
    }
}
