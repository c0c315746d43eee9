// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import org.kde.loomra.components.controls 1.0

//! The controls that take input: text field, combo box and spin box.
Item {
    id: root

    width: 400
    height: 500

    Component {
        id: fields

        PlainTextField {
            width: 100
            fillColor: "white"
            borderColor: "grey"
            ringColor: "blue"
            placeholderText: "<b>Search</b>"
            Accessible.name: "Search"
        }
    }
    Component {
        id: boxes

        PlainComboBox {
            x: 20
            y: 200
            width: 200
            textColor: "black"
            fillColor: "white"
            hoverColor: "grey"
            borderColor: "grey"
            popupColor: "white"
            ringColor: "blue"
            model: [{ "value": "one", "text": "First & <b>best</b>" }, { "value": "two", "text": "R&D" }, { "value": "three", "text": "Third" }]
            Accessible.name: "Order"
        }
    }
    Component {
        id: spinBoxes

        PlainSpinBox {
            from: 1
            to: 1440
            value: 5
            textColor: "black"
            fillColor: "white"
            hoverColor: "grey"
            borderColor: "grey"
            ringColor: "blue"
            Accessible.name: "Minutes"
        }
    }

    SignalSpy {
        id: spy
    }

    TestCase {
        name: "Fields"
        when: windowShown

        function make(component) {
            return createTemporaryObject(component, root);
        }
        function ringOf(control) {
            return [control].concat(Array.from(control.children)).map(item => Array.from(item.children)).reduce((all, some) => all.concat(some), [])
                .find(item => item.hasOwnProperty("control"));
        }
        function placeholderOf(field) {
            return Array.from(field.children).find(item => item.text === field.placeholderText);
        }

        function test_roles_data() {
            return [
                { tag: "text field", component: fields, role: Accessible.EditableText, name: "Search" },
                { tag: "combo box", component: boxes, role: Accessible.ComboBox, name: "Order" },
                { tag: "spin box", component: spinBoxes, role: Accessible.SpinBox, name: "Minutes" }
            ];
        }
        function test_roles(data) {
            const control = make(data.component);
            compare(control.Accessible.role, data.role);
            compare(control.Accessible.name, data.name);
        }

        function test_focusIsVisible_data() {
            return test_roles_data();
        }
        function test_focusIsVisible(data) {
            const control = make(data.component);
            const ring = ringOf(control);
            verify(ring);
            verify(!ring.visible);
            control.forceActiveFocus(Qt.TabFocusReason);
            verify(ring.visible);
        }

        function test_placeholder() {
            const field = make(fields);
            const placeholder = placeholderOf(field);
            compare(placeholder.textFormat, Text.PlainText);
            verify(placeholder.visible);
            compare(field.Accessible.description, "<b>Search</b>");
            field.forceActiveFocus();
            keyClick(Qt.Key_A);
            compare(field.text, "a");
            verify(!placeholder.visible);
        }

        function test_onlyLongTextIsClipped() {
            const field = make(fields);
            verify(!field.clip);
            field.text = "a text that is longer than its field";
            verify(field.clip);
        }

        function test_choiceByMouse() {
            const box = make(boxes);
            compare(box.displayText, "First & <b>best</b>");
            compare(box.contentItem.textFormat, Text.PlainText);
            compare(box.Accessible.description, box.displayText);
            spy.target = box;
            spy.signalName = "activated";
            spy.clear();
            mouseClick(box);
            tryVerify(() => box.popup.opened);
            const list = box.popup.contentItem;
            tryVerify(() => list.itemAtIndex(1));
            compare(list.Accessible.name, "Order");
            compare([0, 1, 2].map(i => list.itemAtIndex(i).contentItem.text), ["First & <b>best</b>", "R&D", "Third"]);
            compare(list.itemAtIndex(0).contentItem.textFormat, Text.PlainText);
            compare(list.itemAtIndex(1).Accessible.name, "R&D");
            mouseClick(list.itemAtIndex(1));
            compare(spy.count, 1);
            compare([box.currentIndex, box.currentValue], [1, "two"]);
            tryVerify(() => !box.popup.visible);
        }

        function test_choiceByKeyboard() {
            const box = make(boxes);
            box.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryVerify(() => box.popup.opened);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            compare(box.currentValue, "three");
            tryVerify(() => !box.popup.visible);
            keyClick(Qt.Key_Up);
            compare(box.currentValue, "two");
        }

        function test_ampersandIsNoShortcut() {
            const box = make(boxes);
            mouseClick(box);
            tryVerify(() => box.popup.opened);
            keyClick(Qt.Key_D, Qt.AltModifier);
            compare(box.currentIndex, 0);
            verify(box.popup.opened);
            box.popup.close();
        }

        //! Otherwise the window would take the Escape key and close the whole sheet.
        function test_escapeClosesOnlyThePopup() {
            const box = make(boxes);
            spy.target = escapes;
            spy.signalName = "pressed";
            spy.clear();
            box.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryVerify(() => box.popup.opened);
            keyClick(Qt.Key_Escape);
            tryVerify(() => !box.popup.visible);
            compare(box.currentIndex, 0);
            compare(spy.count, 0);
        }

        function test_popupStaysInTheWindow() {
            const box = make(boxes);
            box.y = root.height - 40;
            mouseClick(box);
            tryVerify(() => box.popup.opened);
            const list = box.popup.contentItem;
            verify(list.mapToItem(root, 0, 0).y >= 0);
            verify(list.mapToItem(root, 0, list.height).y <= root.height);
            box.popup.close();
        }

        function test_buttonsOfTheSpinBox() {
            const box = make(spinBoxes);
            spy.target = box;
            spy.signalName = "valueModified";
            spy.clear();
            mouseClick(box.up.indicator);
            compare([box.value, box.contentItem.text], [6, "6"]);
            mouseClick(box.down.indicator);
            mouseClick(box.down.indicator);
            compare(box.value, 4);
            compare(spy.count, 3);
        }

        function test_typedNumber_data() {
            return [
                { tag: "in range", text: "90", value: 90 }, { tag: "too small", text: "0", value: 1 },
                { tag: "too large", text: "1441", value: 1440 }, { tag: "a letter", text: "1a2", value: 12 }
            ];
        }
        function test_typedNumber(data) {
            const box = make(spinBoxes);
            box.forceActiveFocus(Qt.TabFocusReason);
            box.contentItem.selectAll();
            for (const letter of data.text)
                keyClick(letter);
            keyClick(Qt.Key_Return);
            compare(box.value, data.value);
        }

        function test_arrowKeysOfTheSpinBox() {
            const box = make(spinBoxes);
            box.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Up);
            compare(box.value, 6);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            compare(box.value, 4);
        }
    }

    Item {
        id: escapes

        signal pressed()
    }

    Keys.onEscapePressed: escapes.pressed()
}
