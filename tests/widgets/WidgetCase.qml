// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

//! The base of tests of the widgets for structured replies.
TestCase {
    id: widgetCase

    //! The widget, without properties.
    property Component widgets
    //! The width of the bubble.
    property int bubbleWidth: 520

    when: windowShown

    //! A widget with these properties, as wide as the bubble.
    function make(properties) {
        const widget = createTemporaryObject(widgets, widgetCase.parent, Object.assign({ "width": bubbleWidth }, properties));
        verify(widget);
        waitForRendering(widget);
        return widget;
    }
    function withPayload(payload, more) {
        return make(Object.assign({ "payload": payload }, more));
    }

    //! All items of this name, in their order.
    function all(item, name) {
        let found = item.objectName === name ? [item] : [];
        for (let i = 0; i < item.children.length; ++i)
            found = found.concat(all(item.children[i], name));
        return found;
    }
    function one(item, name) {
        const found = all(item, name);
        compare(found.length, 1, name);
        return found[0];
    }
    //! The texts of the visible items of this name.
    function textsOf(item, name) {
        return all(item, name).filter(part => part.visible).map(part => part.text);
    }
    function place(part, widget) {
        return part.mapToItem(widget, 0, 0);
    }

    function compareColor(actual, expected) {
        compare(String(actual), String(Qt.lighter(expected, 1)));
    }

    //! Checks that nothing visible extends beyond the margins, and that texts are plain and fit their items.
    function verifyInside(widget, item) {
        const part = item || widget;
        for (let i = 0; i < part.children.length; ++i) {
            const child = part.children[i];
            if (!child.visible || child.objectName.startsWith("ring"))
                continue;
            if (child.contentWidth !== undefined) {
                compare(child.textFormat, Text.PlainText);
                const left = place(child, widget).x;
                verify(left >= 11 && left + child.width <= widget.width - 11, child.text.substring(0, 20) + " at " + left);
                verify(child.contentWidth <= child.width + 0.5, "text is too wide: " + child.text.substring(0, 20));
            }
            verify(place(child, widget).y + child.height <= widget.implicitHeight + 3, String(child));
            verifyInside(widget, child);
        }
    }

    //! Checks that no text or control is drawn in the upper right corner of the bubble. A fill may be there.
    function verifyCornerIsFree(widget) {
        widget.lightChrome = true; // dark text, because the window is white
        const picture = grabImage(widget);
        const left = bubbleWidth - 92 + 1;
        for (let y = 0; y < 32 - 9; ++y) {
            const ground = picture.pixel(left, y);
            for (let x = left; x < bubbleWidth - 24; ++x)
                verify(Qt.colorEqual(picture.pixel(x, y), ground), "something at " + x + ", " + y);
        }
    }

    //! Values of any type and size that a field may have.
    function hostileValues() {
        const text = "<img src='" + loopbackListener.address + "/x.png'>";
        return [null, 5, -1e308, true, "", text, "constructor", "a".repeat(1048576), "a b ".repeat(200000), "\n".repeat(100000),
                "\u202e\u0130".repeat(5000), {}, [], [[[[[]]]]], { "label": { "label": {} }, "toString": 1 },
                [{ "toString": 1 }, null], JSON.parse("[".repeat(900) + "]".repeat(900))];
    }
    //! Rows for a test of each hostile value. payloadsOf(value) has it in each of the fields.
    function hostileRows(payloadsOf) {
        return hostileValues().map((value, index) => ({ tag: "value " + index, payloads: payloadsOf(value) }));
    }
    function isLong(value) {
        return typeof value === "string" && value.length > 20000;
    }
    //! Shows all payloads. An endless search for a line break runs into the test's timeout. @return the widgets
    function verifyHarmless(payloads) {
        const before = loopbackListener.connections;
        const shown = payloads.map(payload => createTemporaryObject(widgets, parent, { "width": bubbleWidth, "payload": payload }));
        waitForRendering(shown[0]);
        shown.forEach(widget => {
            verifyInside(widget);
            verify(widget.implicitHeight >= 30 && widget.implicitHeight < 100000, "height: " + widget.implicitHeight);
        });
        compare(loopbackListener.connections, before);
        return shown;
    }
}
