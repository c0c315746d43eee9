// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Window 2.15
import QtTest 1.15

import org.kde.loomra.components.controls 1.0

TestCase {
    id: test

    name: "HoverTip"
    when: windowShown

    //! A window with one control in it.
    Component {
        id: windows

        Window {
            id: window

            property alias control: control
            property alias text: tip.text
            readonly property var tip: tip.item

            flags: Qt.FramelessWindowHint
            visible: true

            Item {
                id: control

                property bool hovered: false

                width: 40
                height: 30

                HoverTip {
                    id: tip

                    control: control
                    text: "Open"
                }
            }
        }
    }

    function make(width, height, x, y) {
        const window = createTemporaryObject(windows, test, { "width": width, "height": height });
        verify(window);
        window.control.x = x;
        window.control.y = y;
        // The window manager may decide otherwise.
        tryCompare(window, "width", width);
        tryCompare(window, "height", height);
        window.control.hovered = true;
        verify(window.tip);
        window.tip.delay = 0;
        return window;
    }

    function test_place_data() {
        return [
            { "tag": "above", "height": 300, "y": 200, "above": true },
            { "tag": "above, at the lower edge", "height": 300, "y": 270, "above": true },
            { "tag": "below, at the upper edge", "height": 300, "y": 0, "above": false },
            { "tag": "below, almost enough room above", "height": 300, "y": 30, "above": false }
        ];
    }

    function test_place(row) {
        const window = make(300, row.height, 100, row.y);
        tryCompare(window.tip, "opened", true);
        const top = window.tip.contentItem.parent.mapToItem(null, 0, 0).y;
        const bottom = top + window.tip.height;
        if (row.above)
            verify(top >= 0 && bottom < window.control.y, top + " to " + bottom);
        else
            verify(top > window.control.y + window.control.height && bottom <= window.height, top + " to " + bottom);
    }

    function test_noRoom_data() {
        return [
            { "tag": "the control fills the window", "width": 40, "height": 30, "y": 0, "text": "Open" },
            { "tag": "too little above and below", "width": 300, "height": 90, "y": 30, "text": "Open" },
            { "tag": "too narrow", "width": 40, "height": 300, "y": 200, "text": "Open this" },
            { "tag": "a long text", "width": 300, "height": 120, "y": 60, "text": "word ".repeat(60) }
        ];
    }

    function test_noRoom(row) {
        const window = make(row.width, row.height, 0, row.y);
        window.text = row.text;
        window.control.hovered = false;
        window.control.hovered = true;
        verify(!window.tip.visible);
        // With more room it is shown, until there is too little again.
        window.width = 500;
        window.height = 400;
        tryCompare(window.tip, "opened", true);
        window.width = row.width;
        window.height = row.height;
        tryCompare(window.tip, "visible", false);
    }
}
