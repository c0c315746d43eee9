// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import QtQuick.Window 2.15

import "Reveal.js" as Reveal

//! Scrolls content that may be higher than its place. The control with the keyboard focus is always scrolled into view,
//! also one in a list inside. A clicked control stays where it is, because it would escape from the pointer.
Flickable {
    id: pane

    required property color thumbColor
    //! Accessible name of the scroll bar.
    required property string scrollBarName
    //! Distance of the focused control from the edges in pixels: enough for its focus ring.
    property int revealMargin: 8

    //! The control with the focus, or that had it before another window became active.
    property Item focusedItem: null
    readonly property Item activeItem: Window.activeFocusItem

    //! Scrolls the focused control into view, unless it was clicked.
    function revealFocus() {
        if (!focusedItem || focusedItem.focusReason === Qt.MouseFocusReason)
            return;
        Reveal.viewsAround(focusedItem, pane).forEach(view => Reveal.reveal(focusedItem, view, revealMargin));
    }

    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.VerticalFlick
    interactive: contentHeight > height
    clip: contentHeight > height
    Accessible.ignored: true
    // When the user returns from another window, the focus does too, but the place stays where they have scrolled.
    onActiveItemChanged: {
        if (activeItem)
            focusedItem = activeItem;
    }
    // Deferred because a control may change its size when it gets the focus.
    onFocusedItemChanged: Qt.callLater(revealFocus)
    onHeightChanged: Qt.callLater(revealFocus)

    T.ScrollBar.vertical: PlainScrollBar {
        objectName: "paneScrollBar"

        visible: pane.interactive
        thumbColor: pane.thumbColor
        Accessible.name: pane.scrollBarName
    }
}
