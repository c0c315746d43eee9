// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import QtTest 1.15
import org.kde.kirigami 2.20 as Kirigami

import org.kde.loomra 1.0

Item {
    id: root
    width: 500
    height: 600

    Component { id: sdks; FakePanelSdk {} }
    Component { id: emptySdks; QtObject {} }
    Component { id: trust; TrustCenter { anchors.fill: parent } }
    Component { id: undo; UndoCenter { anchors.fill: parent } }
    Component { id: automation; AutomationCenter { anchors.fill: parent } }
    Component { id: inspector; DesktopInspector { anchors.fill: parent } }

    TestCase {
        id: test
        name: "Panels"
        when: windowShown

        readonly property double someTime: new Date(2026, 10, 22, 9, 54).getTime()
        readonly property string someText: new Date(someTime).toLocaleString(Qt.locale(), Locale.ShortFormat)
        property QtObject sdk
        property Item panel

        function open(component) {
            sdk = createTemporaryObject(sdks, root);
            panel = createTemporaryObject(component, root, { "sdk": sdk });
            waitForRendering(panel);
        }

        //! The visible items of a name, in a list's order.
        function all(name, item) {
            const found = [];
            const visit = parent => {
                for (let i = 0; i < parent.children.length; ++i) {
                    const child = parent.children[i];
                    if (!child.visible)
                        continue;
                    if (child.objectName === name)
                        found.push(child);
                    visit(child);
                }
            };
            visit(item || panel);
            return found.sort((a, b) => a.mapToItem(root, 0, 0).y - b.mapToItem(root, 0, 0).y);
        }

        function texts(name) { return all(name).map(item => item.text); }
        function button(name) { return all(name)[0]; }

        function row(list, index) {
            list.positionViewAtIndex(index, ListView.Contain);
            return list.itemAtIndex(index);
        }

        // ---- The edges that all share

        function test_headings_data() {
            return [
                { tag: "trust", component: trust, heading: "Trust Center", refreshes: false },
                { tag: "undo", component: undo, heading: "Undo Center", refreshes: true },
                { tag: "automation", component: automation, heading: "Automation Center", refreshes: true },
                { tag: "inspector", component: inspector, heading: "Desktop Inspector", refreshes: true }
            ];
        }

        function test_headings(data) {
            open(data.component);
            verify(panel instanceof ColumnLayout);
            const heading = findChild(panel, "panelHeading");
            compare(heading.text, data.heading);
            verify(Qt.colorEqual(heading.color, heading.Kirigami.Theme.textColor)); // also on dark windows
            compare(findChild(panel, "refreshButton").visible, data.refreshes);
        }

        function test_withoutAClient_data() {
            return [
                { tag: "trust", component: trust },
                { tag: "undo", component: undo },
                { tag: "automation", component: automation },
                { tag: "inspector", component: inspector }
            ];
        }

        //! Any warning fails the test.
        function test_withoutAClient(data) {
            for (const client of [null, createTemporaryObject(emptySdks, root)]) {
                panel = createTemporaryObject(data.component, root, { "sdk": client });
                waitForRendering(panel);
                for (const name of ["refreshButton", "stopButton", "resumeButton", "deniedButton"])
                    all(name).forEach(item => mouseClick(item));
                panel.destroy();
            }
            // The client of the program, which tests don't have.
            panel = createTemporaryObject(data.component, root);
            compare(panel.sdk, null);
        }

        function test_calls_data() {
            return [
                { tag: "trust", component: trust, atStart: ["auditListRecent(50)"],
                  buttons: { stopButton: "emergencyStop()", resumeButton: "emergencyResume()",
                             deniedButton: "getDeniedPermissions()", refreshButton: "auditListRecent(50)" } },
                { tag: "undo", component: undo, atStart: ["auditListRecent(50)"],
                  buttons: { refreshButton: "auditListRecent(50)" } },
                { tag: "automation", component: automation, atStart: ["automationList()"],
                  buttons: { refreshButton: "automationList()" } },
                { tag: "inspector", component: inspector, atStart: ["getDesktopState()"],
                  buttons: { refreshButton: "getDesktopState()" } }
            ];
        }

        function test_calls(data) {
            open(data.component);
            compare(sdk.takeCalls(), data.atStart);
            for (const name in data.buttons) {
                mouseClick(button(name));
                compare(sdk.takeCalls(), [data.buttons[name]], name);
            }
        }

        //! Tab reaches every button, and Return and Space click it.
        function test_keyboard(data) {
            open(data.component);
            sdk.takeCalls();
            const reached = [];
            for (let i = 0; i < 10; ++i) {
                keyClick(Qt.Key_Tab);
                const item = root.Window.activeFocusItem;
                if (reached.includes(item))
                    break;
                reached.push(item);
                verify(item.Accessible.name !== "");
                keyClick(i % 2 === 0 ? Qt.Key_Return : Qt.Key_Space);
            }
            compare(sdk.takeCalls().sort(), Object.values(data.buttons).sort());
        }

        function test_keyboard_data() { return test_calls_data(); }

        // ---- Trust Center

        function test_trustTexts() {
            open(trust);
            compare(all("stopButton")[0].label, "Pause executor & scheduler");
            compare(all("stopButton")[0].Accessible.name, "Pause executor & scheduler");
            compare(all("resumeButton")[0].label, "Resume");
            compare(all("deniedButton")[0].label, "Refresh denied list");
            const headings = all("panelHeading").map(item => item.text);
            compare(headings, ["Trust Center", "Undo Center"]);
            const undoCenter = findChild(panel, "undoLoader").item;
            compare(undoCenter.sdk, sdk);
            sdk.deniedPermissionsReceived(["files.delete"]); // isn't shown
            sdk.auditRecentListed([{ id: "a" }]);
            compare(texts("recordName"), ["a"]);
            // It takes the rest.
            compare(undoCenter.mapToItem(panel, 0, undoCenter.height).y, panel.height);
            verify(undoCenter.height > 200);
        }

        // ---- Undo Center

        function test_actions() {
            open(undo);
            compare(findChild(panel, "emptyText").visible, true);
            sdk.auditRecentListed([{ id: "<b>a</b>", at: someTime }, { id: "b" }]);
            compare(panel.actions.length, 2);
            compare(texts("recordName"), ["<b>a</b>", "b"]);
            compare(texts("recordDetail"), [someText]);
            compare(all("recordName")[0].textFormat, Text.PlainText);
            compare(all("recordName")[0].font.bold, true);
            verify(all("recordDetail")[0].font.pointSize < all("recordName")[0].font.pointSize);
            sdk.takeCalls();
            mouseClick(all("revertButton")[0]);
            sdk.auditReverted("<b>a</b>");
            compare(sdk.takeCalls(), ["auditRevert(<b>a</b>)"]);
            sdk.auditRecentListed([{ id: "c" }]);
            tryVerify(() => texts("recordName").join() === "c");
        }

        function test_accessibility() {
            open(undo);
            sdk.auditRecentListed([{ id: "R&D", at: someTime }]);
            const list = findChild(panel, "actionList");
            compare(list.Accessible.role, Accessible.List);
            compare(list.Accessible.name, "Undo Center");
            const row = list.itemAtIndex(0);
            compare(row.Accessible.role, Accessible.ListItem);
            compare(row.Accessible.name, "R&D");
            compare(row.Accessible.description, someText);
            const revert = findChild(row, "revertButton");
            compare(revert.Accessible.name, "Revert");
            compare(revert.Accessible.description, "R&D");
            compare(findChild(panel, "panelHeading").Accessible.role, Accessible.Heading);
        }

        function test_hostileActions() {
            open(undo);
            for (const actions of [null, undefined, "x", 7, {}, [null, 7, "x", [], {}, { id: {}, at: {} }]])
                sdk.auditRecentListed(actions);
            tryVerify(() => all("revertButton").length === 6);
            all("revertButton").forEach(item => compare(item.enabled, false));
        }

        //! Only the rows in view exist.
        function test_manyActions() {
            open(undo);
            const actions = [];
            for (let i = 0; i < 10000; ++i)
                actions.push({ id: "action " + i, at: someTime + i });
            sdk.auditRecentListed(actions);
            const list = findChild(panel, "actionList");
            compare(list.count, 10000);
            waitForRendering(panel);
            verify(list.contentItem.children.length < 100);
            mouseClick(all("recordName", list)[0]);
            keyClick(Qt.Key_End);
            compare(list.currentIndex, 9999);
            compare(all("recordName", list).pop().text, "action 9999");
        }

        // ---- Automation Center

        function test_automations() {
            open(automation);
            sdk.automationListed([{ id: "a", enabled: true, lastRun: someTime }, { id: "b", enabled: false, lastRun: null }]);
            compare(panel.automations.length, 2);
            compare(texts("recordName"), ["a", "b"]);
            compare(texts("recordDetail"), ["Last run: " + someText, "Last run: Never"]);
            compare(all("pauseButton").map(item => item.label), ["Pause", "Resume"]);
            sdk.takeCalls();
            for (const name of ["pauseButton", "deleteButton"])
                all(name).forEach(item => mouseClick(item));
            compare(sdk.takeCalls(), ["automationPause(a, true)", "automationPause(b, false)", "automationDelete(a)",
                                      "automationDelete(b)"]);
            sdk.automationUpdated("a");
            sdk.automationDeleted("b");
            compare(sdk.takeCalls(), ["automationList()", "automationList()"]);
        }

        //! Pausing and deleting by keyboard doesn't lose the place.
        function test_focusStaysInTheList() {
            open(automation);
            const rows = ["a", "b", "c"].map(id => ({ id: id, enabled: true }));
            sdk.automationListed(rows);
            const list = findChild(panel, "automationList");
            findChild(panel, "refreshButton").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            keyClick(Qt.Key_Down);
            compare(list.currentIndex, 1);
            verify(list.currentItem.activeFocus);
            keyClick(Qt.Key_Tab);
            sdk.takeCalls();
            keyClick(Qt.Key_Space);
            compare(sdk.takeCalls(), ["automationPause(b, true)"]);
            const pause = root.Window.activeFocusItem;
            rows[1].enabled = false;
            sdk.automationListed(rows.slice());
            compare(pause.label, "Resume");
            verify(pause.activeFocus);
            keyClick(Qt.Key_Tab);
            keyClick(Qt.Key_Space);
            compare(sdk.takeCalls(), ["automationDelete(b)"]);
            sdk.automationListed([rows[0], rows[2]]);
            verify(list.currentItem.activeFocus);
            compare(list.currentIndex, 1);
            // And out of the list again, in both directions.
            keyClick(Qt.Key_Tab, Qt.ShiftModifier);
            verify(findChild(panel, "refreshButton").activeFocus);
            keyClick(Qt.Key_Tab);
            verify(list.currentItem.activeFocus);
            keyClick(Qt.Key_Tab);
            keyClick(Qt.Key_Tab);
            compare(root.Window.activeFocusItem.objectName, "deleteButton");
            keyClick(Qt.Key_Tab);
            verify(!list.activeFocus);
            // The last row too.
            keyClick(Qt.Key_Tab, Qt.ShiftModifier);
            compare(root.Window.activeFocusItem.objectName, "deleteButton");
            sdk.automationListed([rows[0]]);
            verify(list.currentItem.activeFocus);
            compare(list.currentIndex, 0);
            sdk.automationListed([]);
            compare(list.count, 0);
            keyClick(Qt.Key_Tab, Qt.ShiftModifier);
            verify(findChild(panel, "refreshButton").activeFocus);
            sdk.automationListed(rows);
            keyClick(Qt.Key_Tab);
            verify(list.currentItem.activeFocus);
        }

        // ---- Desktop Inspector

        function test_desktopState_data() {
            return [
                { tag: "empty", state: {}, lines: ["Windows: 0", "Panels: 0", "Theme: —"] },
                { tag: "full", state: { windows: { windows: [1, 2] }, panels: { panels: [1] }, theme: "<i>Breeze</i>" },
                  lines: ["Windows: 2", "Panels: 1", "Theme: <i>Breeze</i>"] },
                { tag: "null", state: null, lines: ["Windows: 0", "Panels: 0", "Theme: —"] },
                { tag: "hostile", state: { windows: [1], panels: { panels: "x" }, theme: 7 },
                  lines: ["Windows: 0", "Panels: 0", "Theme: —"] }
            ];
        }

        function test_desktopState(data) {
            open(inspector);
            compare(texts("desktopLine"), ["Windows: 0", "Panels: 0", "Theme: —"]);
            sdk.desktopStateReceived(data.state);
            compare(texts("desktopLine"), data.lines);
            compare(all("desktopLine")[0].textFormat, Text.PlainText);
        }
    }
}
