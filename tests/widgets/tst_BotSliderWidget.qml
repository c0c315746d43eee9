// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import org.kde.loomra 1.0

Item {
    id: root

    width: 600
    height: 800

    Component { id: sliders; BotSliderWidget {} }
    Component { id: spies; SignalSpy {} }

    WidgetCase {
        id: test

        name: "BotSliderWidget"
        widgets: sliders

        readonly property var brightness: ({ "label": "Brightness", "min": 10, "max": 90, "value": 40, "step": 5, "action": "set" })

        function control(widget) {
            return one(widget, "slider");
        }
        function confirmBtn(widget) {
            return one(widget, "confirmBtn");
        }
        function spyOn(widget, signalName) {
            return createTemporaryObject(spies, root, { "target": widget, "signalName": signalName });
        }
        function sent(spy) {
            return Array.from(spy.signalArguments).map(values => [values[0], values[1]]);
        }

        function test_firstValues() {
            const widget = make();
            compare([JSON.stringify(widget.payload), widget.lightChrome, widget.messageIndex, widget.submitted],
                    ["{}", false, -1, false]);
            compare([control(widget).from, control(widget).to, control(widget).value, control(widget).stepSize], [0, 100, 0, 1]);
            compare(textsOf(widget, "label"), ["Value: 0"]);
            compare(textsOf(widget, "range"), ["0 – 100"]);
            compare(widget.action, "");
        }

        function test_looks() {
            const widget = withPayload(brightness);
            compare(textsOf(widget, "label"), ["Brightness: 40"]);
            compare(one(widget, "label").font.pointSize, 12);
            compare(textsOf(widget, "range"), ["10 – 90"]);
            compare(control(widget).background.height, 4);
            compare([control(widget).handle.width, control(widget).handle.height], [16, 16]);
            compare(confirmBtn(widget).label, "Confirm");
            compare(textsOf(widget, "submittedText"), []);
            const range = one(widget, "range");
            verify(place(range, widget).y >= place(control(widget), widget).y + control(widget).height);
            compare(range.horizontalAlignment, Text.AlignRight);
            compare(place(range, widget).x + range.width, 520 - 12);
            verifyInside(widget);
        }

        function test_liveValueIsRounded() {
            const widget = withPayload({ "max": 1, "step": 0.001, "value": 0.126 });
            compare(textsOf(widget, "label"), ["Value: 0.13"]);
            control(widget).value = 0.5;
            compare(textsOf(widget, "label"), ["Value: 0.5"]);
        }

        function test_longLabelLeavesTheValueVisible() {
            const widget = withPayload({ "label": "W".repeat(5000), "value": 7 });
            compare(one(widget, "label").text, "W".repeat(200) + "…: 7");
            verify(!one(widget, "label").truncated);
            verifyInside(widget);
        }

        function test_confirm() {
            const widget = withPayload(brightness);
            const submitted = spyOn(widget, "sliderSubmitted");
            const saved = spyOn(widget, "stateSaved");
            mouseClick(confirmBtn(widget));
            compare(sent(submitted), [[40, "set"]]);
            compare(saved.signalArguments[0][0], { "value": 40, "submitted": true });
            verify(widget.submitted);
            verify(!control(widget).enabled);
            verify(!confirmBtn(widget).visible);
            compare(textsOf(widget, "submittedText"), ["Submitted: 40"]);
            verify(one(widget, "submittedText").font.italic);
            // Neither again nor with another value.
            widget.submit();
            mouseClick(control(widget));
            compare(control(widget).value, 40);
            compare(submitted.count, 1);
        }

        function test_signalCarriesTheExactValue() {
            const widget = withPayload({ "max": 1, "step": 0.001, "value": 0.126 });
            const submitted = spyOn(widget, "sliderSubmitted");
            widget.submit();
            compare(sent(submitted), [[0.126, ""]]);
            compare(textsOf(widget, "submittedText"), ["Submitted: 0.13"]);
        }

        function test_mouseMoves() {
            const widget = withPayload(brightness);
            const saved = spyOn(widget, "stateSaved");
            const slider = control(widget);
            mousePress(slider, 12, slider.height / 2);
            mouseMove(slider, slider.width / 2, slider.height / 2);
            mouseRelease(slider, slider.width / 2, slider.height / 2);
            compare(slider.value, 50);
            compare(textsOf(widget, "label"), ["Brightness: 50"]);
            compare(saved.signalArguments[saved.count - 1][0], { "value": 50, "submitted": false });
        }

        function test_keys_data() {
            return [
                { tag: "Right", key: Qt.Key_Right, value: 45 }, { tag: "Left", key: Qt.Key_Left, value: 35 },
                { tag: "Up", key: Qt.Key_Up, value: 45 }, { tag: "Down", key: Qt.Key_Down, value: 35 }
            ];
        }
        function test_keys(row) {
            const widget = withPayload(brightness);
            const saved = spyOn(widget, "stateSaved");
            control(widget).forceActiveFocus(Qt.TabFocusReason);
            keyClick(row.key);
            compare(control(widget).value, row.value);
            compare(saved.signalArguments[saved.count - 1][0], { "value": row.value, "submitted": false });
        }

        function test_confirmByKeys_data() {
            return [{ tag: "Space", key: Qt.Key_Space }, { tag: "Return", key: Qt.Key_Return }, { tag: "Enter", key: Qt.Key_Enter }];
        }
        function test_confirmByKeys(row) {
            const widget = withPayload(brightness);
            const submitted = spyOn(widget, "sliderSubmitted");
            control(widget).forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Tab);
            verify(confirmBtn(widget).activeFocus);
            keyClick(row.key);
            compare(sent(submitted), [[45, "set"]]);
        }

        function test_savedState() {
            const moved = withPayload(brightness, { "savedState": { "value": 75, "submitted": false } });
            compare(control(moved).value, 75);
            verify(confirmBtn(moved).visible);
            const submitted = withPayload(brightness, { "savedState": { "value": 75, "submitted": true } });
            verify(!confirmBtn(submitted).visible);
            verify(!control(submitted).enabled);
            compare(textsOf(submitted, "submittedText"), ["Submitted: 75"]);
        }

        function test_reachable() {
            const widget = withPayload(brightness);
            verify(control(widget).activeFocusOnTab && confirmBtn(widget).activeFocusOnTab);
            widget.reachable = false;
            verify(!control(widget).activeFocusOnTab && !confirmBtn(widget).activeFocusOnTab);
        }

        function test_colors() {
            const widget = withPayload(brightness);
            compareColor(one(widget, "label").color, Qt.rgba(1, 1, 1, 0.95));
            widget.lightChrome = true;
            compareColor(one(widget, "label").color, Qt.rgba(0, 0, 0, 0.88));
        }

        function test_labelLeavesTheCornerFree() {
            const payload = { "label": "lorem ipsum ".repeat(20) };
            const widget = withPayload(payload, { "freeCorner": Qt.size(92, 32) });
            verify(place(control(widget), widget).y + 9 >= 32);
            verifyCornerIsFree(widget);
        }

        function test_accessible() {
            const widget = withPayload(brightness);
            compare([control(widget).Accessible.role, control(widget).Accessible.name], [Accessible.Slider, "Brightness"]);
            compare([confirmBtn(widget).Accessible.role, confirmBtn(widget).Accessible.name], [Accessible.Button, "Confirm"]);
        }

        function test_hostile_data() {
            return hostileRows(value => [{ "label": value }, { "min": value }, { "max": value }, { "value": value },
                                         { "step": value }, { "action": value }]);
        }
        function test_hostile(row) {
            verifyHarmless(row.payloads).forEach(widget => {
                control(widget).increase();
                verify(isFinite(control(widget).value));
            });
        }
    }
}
