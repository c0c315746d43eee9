// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import org.kde.loomra 1.0

Item {
    id: root

    width: 600
    height: 800

    Component { id: options; BotOptionsWidget {} }
    Component { id: spies; SignalSpy {} }

    WidgetCase {
        id: test

        name: "BotOptionsWidget"
        widgets: options

        readonly property var windows: ({
            "prompt": "Which window?",
            "choices": [{ "id": "a", "label": "Editor" }, { "id": "b", "label": "Terminal" }, "no object", { "id": "d" }]
        })

        function chips(widget) {
            return all(widget, "chip");
        }
        function fill(chip) {
            return one(chip, "chipFill");
        }
        function spyOn(widget, signalName) {
            return createTemporaryObject(spies, root, { "target": widget, "signalName": signalName });
        }
        function sent(spy) {
            return Array.from(spy.signalArguments).map(values => values[0] + ":" + values[1]);
        }

        function test_firstValues() {
            const widget = make();
            compare([JSON.stringify(widget.payload), widget.lightChrome, widget.messageIndex, widget.selectedIndex],
                    ["{}", false, -1, -1]);
            compare(textsOf(widget, "nothing"), ["(empty)"]);
            compare(widget.implicitHeight, 30);
        }

        function test_promptAndChoices() {
            const widget = withPayload(windows);
            compare(textsOf(widget, "prompt"), ["Which window?"]);
            compare(one(widget, "prompt").font.pointSize, 12);
            compare(chips(widget).map(chip => chip.label), ["Editor", "Terminal", "(option)", "(option)"]);
            compare(textsOf(widget, "nothing"), []);
            chips(widget).forEach(chip => {
                const caption = one(chip, "caption");
                fuzzyCompare(chip.width, caption.implicitWidth + 24, 0.01);
                fuzzyCompare(chip.height, caption.implicitHeight + 14, 0.01);
                compare(fill(chip).radius, 8);
            });
            fuzzyCompare(chips(widget)[1].x, chips(widget)[0].width + 8, 0.01);
            const prompt = one(widget, "prompt");
            compare(place(prompt, widget).x, 12);
            compare(place(chips(widget)[0], widget).y, place(prompt, widget).y + prompt.height + 8);
            verifyInside(widget);
        }

        function test_choicesFlow() {
            const widget = withPayload({ "choices": Array.from({ length: 20 }, (_, i) => ({ "id": i, "label": "Choice " + i })) });
            const last = chips(widget)[19];
            verify(last.y > chips(widget)[0].height);
            compare((last.y - chips(widget)[0].y) % (last.height + 8), 0);
            verifyInside(widget);
        }

        function test_longChoices() {
            const widget = withPayload({ "choices": [{ "label": "w".repeat(300) }] });
            compare(chips(widget)[0].width, 520 - 24);
            verify(one(chips(widget)[0], "caption").truncated);
            verifyInside(widget);
        }

        function test_clickMarksAndEmits() {
            const widget = withPayload(windows);
            const selected = spyOn(widget, "optionSelected");
            const saved = spyOn(widget, "stateSaved");
            mouseClick(chips(widget)[1]);
            compare(widget.selectedIndex, 1);
            compare(chips(widget).map(chip => chip.selected), [false, true, false, false]);
            // All stay clickable, the marked one too.
            mouseClick(chips(widget)[1]);
            mouseClick(chips(widget)[2]);
            mouseClick(chips(widget)[3]);
            compare(chips(widget).map(chip => chip.selected), [false, false, false, true]);
            compare(sent(selected), ["b:Terminal", "b:Terminal", "2:(option)", "d:(option)"]);
            compare(Array.from(saved.signalArguments).map(values => values[0].selectedIndex), [1, 1, 2, 3]);
        }

        function test_wholeTextsAreEmitted() {
            const label = "w".repeat(5000);
            const widget = withPayload({ "choices": [{ "id": label, "label": label }] });
            const selected = spyOn(widget, "optionSelected");
            mouseClick(chips(widget)[0]);
            compare(sent(selected), [label + ":" + label]);
        }

        function test_savedState() {
            const widget = withPayload(windows, { "savedState": { "selectedIndex": 2 } });
            compare(chips(widget).map(chip => chip.selected), [false, false, true, false]);
        }

        function test_keys_data() {
            return [{ tag: "Space", key: Qt.Key_Space }, { tag: "Return", key: Qt.Key_Return }, { tag: "Enter", key: Qt.Key_Enter }];
        }
        function test_keys(row) {
            const widget = withPayload(windows);
            const selected = spyOn(widget, "optionSelected");
            chips(widget)[0].forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            verify(chips(widget)[1].activeFocus);
            keyClick(row.key);
            compare(sent(selected), ["b:Terminal"]);
            verify(chips(widget)[1].activeFocus);
        }

        function test_reachable() {
            const widget = withPayload(windows);
            verify(chips(widget).every(chip => chip.activeFocusOnTab));
            widget.reachable = false;
            verify(!chips(widget).some(chip => chip.activeFocusOnTab));
        }

        function test_clickLeavesTheFocus() {
            const widget = withPayload(windows);
            root.forceActiveFocus();
            mouseClick(chips(widget)[0]);
            verify(root.activeFocus);
        }

        function test_colors_data() {
            return [
                { tag: "dark", light: false, fill: 0.35, border: 0.50, text: Qt.rgba(1, 1, 1, 0.95) },
                { tag: "light", light: true, fill: 0.22, border: 0.45, text: Qt.rgba(0, 0, 0, 0.88) }
            ];
        }
        function test_colors(row) {
            const widget = withPayload(windows, { "lightChrome": row.light, "savedState": { "selectedIndex": 0 } });
            compareColor(fill(chips(widget)[0]).color, Qt.rgba(0.25, 0.60, 1.0, row.fill));
            compareColor(fill(chips(widget)[0]).border.color, Qt.rgba(0.25, 0.60, 1.0, row.border));
            verify(!Qt.colorEqual(fill(chips(widget)[1]).color, fill(chips(widget)[0]).color));
            compareColor(one(widget, "prompt").color, row.text);
        }

        function test_colorIsAnimated() {
            const widget = withPayload(windows);
            widget.select(0);
            verify(!Qt.colorEqual(fill(chips(widget)[0]).color, Qt.rgba(0.25, 0.60, 1.0, 0.35)));
            tryVerify(() => Qt.colorEqual(fill(chips(widget)[0]).color, Qt.rgba(0.25, 0.60, 1.0, 0.35)));
        }

        function test_leavesTheCornerFree() {
            const corner = { "freeCorner": Qt.size(92, 32) };
            const choices = { "choices": [{ "label": "w".repeat(300) }] };
            const widget = withPayload(choices, corner);
            verify(place(chips(widget)[0], widget).y + 9 >= 32);
            compare(place(chips(withPayload(choices))[0], withPayload(choices)).y, 3);
            const question = { "prompt": "lorem ipsum ".repeat(20) };
            verifyCornerIsFree(withPayload(question, corner));
        }

        function test_manyChoices() {
            const widget = withPayload({ "choices": Array.from({ length: 5000 }, () => ({})) });
            compare(chips(widget).length, 200);
            compare(textsOf(widget, "footer"), ["... 4800 more choices"]);
        }

        function test_accessible() {
            const widget = withPayload(windows, { "savedState": { "selectedIndex": 1 } });
            compare(widget.Accessible.name, "Which window?");
            compare(make().Accessible.name, "Choices");
            verify(chips(widget).every(chip => chip.Accessible.checkable));
            compare(chips(widget).map(chip => [chip.Accessible.role, chip.Accessible.name, chip.Accessible.checked]).slice(0, 2),
                    [[Accessible.RadioButton, "Editor", false], [Accessible.RadioButton, "Terminal", true]]);
        }

        function test_hostile_data() {
            return hostileRows(value => [{ "prompt": value, "choices": [{}] }, { "choices": value },
                                         { "choices": [value, { "id": value, "label": value }] }]);
        }
        function test_hostile(row) {
            verifyHarmless(row.payloads);
        }
    }
}
