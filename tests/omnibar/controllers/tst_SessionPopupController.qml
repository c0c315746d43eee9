// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"
import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/KeyTable.js" as KeyTable

//! The list of sessions and the popup that shows it.
TestCase {
    id: test
    name: "SessionPopupController"

    property FakeBar bar
    property CallRecorder sdk
    property SessionPopupController popup
    property SessionsController sessions

    readonly property var garden: ({ "id": "a", "name": "Garden", "createdAt": 1773068700000 })
    readonly property var kitchen: ({ "id": "b", "name": "Kitchen" })

    Component { id: bars; FakeBar {} }
    Component { id: popups; SessionPopupController {} }
    Component { id: lists; SessionsController {} }

    Component {
        id: clients

        FakeSdk {
            property bool refuses: false

            function listSessions() {
                note("listSessions", []);
                if (refuses)
                    error("SDK not ready.");
            }
        }
    }

    function init() {
        bar = createTemporaryObject(bars, test);
        sdk = createTemporaryObject(clients, test);
        bar.sdk = sdk;
        popup = createTemporaryObject(popups, test, { "bar": bar });
        sessions = createTemporaryObject(lists, test, { "bar": bar });
    }

    function openWith(list) {
        popup.openSessions("");
        sdk.sessionsListed(list);
        bar.takeCalls();
        sdk.takeCalls();
    }

    function names() {
        const list = [];
        for (let i = 0; i < popup.sessionPopupModel.count; ++i)
            list.push(popup.sessionPopupModel.get(i).sname);
        return list;
    }

    // ---- The list

    function test_listIsKept() {
        sessions.sessionsLoading = true;
        sdk.sessionsListed([garden, kitchen]);
        compare(sessions.sessionsList, [{ "sid": "a", "sname": "Garden", "screatedAt": 1773068700000 },
                                        { "sid": "b", "sname": "Kitchen", "screatedAt": 0 }]);
        compare(sessions.sessionsLoading, false);
    }

    function test_loadingEnds_data() {
        return [
            { tag: "error", end: () => sdk.error("no") },
            { tag: "connection lost", end: () => { sdk.ready = false; } }
        ];
    }
    function test_loadingEnds(row) {
        sessions.sessionsLoading = true;
        row.end();
        compare(sessions.sessionsLoading, false);
    }

    function test_switchAndDelete() {
        sessions.sessionSwitchTo("a");
        sessions.sessionDelete("b");
        compare(sdk.takeCalls(), ["switchSession(a)", "deleteSession(b)"]);
        compare(bar.takeCalls(), ["clearConversation()"]);
    }

    function test_listWithoutAClient() {
        bar.sdk = null;
        sessions.sessionSwitchTo("a");
        sessions.sessionDelete("b");
        compare(sessions.sessionsList, []);
    }

    // ---- Opening

    function test_withoutAClient_data() {
        return [
            { tag: "no client", sdk: null },
            { tag: "no function", sdk: {} }
        ];
    }
    function test_withoutAClient(row) {
        bar.sdk = row.sdk;
        popup.openSessions("");
        compare(bar.takeCalls(), ["appendSystemMessage(<Sessions unavailable — SDK is not connected.>)"]);
        compare([popup.slashSessionListPending, bar.sessionsLoading], [false, false]);
    }

    function test_opens() {
        popup.openSessions("");
        compare([popup.slashSessionListPending, bar.sessionsLoading, popup.slashSessionPopupVisible], [true, true, false]);
        compare(sdk.takeCalls(), ["listSessions()"]);
        sdk.sessionsListed([garden, { "id": "ses_1" }]);
        compare([popup.slashSessionListPending, popup.slashSessionPopupVisible], [false, true]);
        compare(names(), ["Garden", "<Chat {number}>".replace("{number}", 2)]);
        compare(popup.sessionPopupModel.get(0).sid, "a");
        compare(popup.sessionPopupModel.get(0).screatedAt, 1773068700000);
        compare(bar.takeCalls(), []);
    }

    function test_listForSomethingElseDoesNotOpen() {
        sdk.sessionsListed([garden]);
        compare(popup.slashSessionPopupVisible, false);
        compare(popup.sessionPopupModel.count, 0);
    }

    function test_opensOnce() {
        openWith([garden]);
        popup.close();
        sdk.sessionsListed([garden]);
        compare(popup.slashSessionPopupVisible, false);
    }

    function test_opensAgainWithTheNewList() {
        openWith([garden, kitchen]);
        openWith([kitchen]);
        compare(names(), ["Kitchen"]);
        compare(popup.slashSessionPopupVisible, true);
    }

    function test_noSessions_data() {
        return [
            { tag: "empty", list: [] },
            { tag: "malformed", list: [null, 5, {}] }
        ];
    }
    function test_noSessions(row) {
        // Nor does the popup keep an older list.
        openWith([garden]);
        popup.openSessions("");
        sdk.sessionsListed(row.list);
        compare(bar.takeCalls(), ["appendSystemMessage(<No sessions found. Use `/new` to create one.>)"]);
        compare([popup.slashSessionListPending, popup.slashSessionPopupVisible], [false, false]);
    }

    function test_failures_data() {
        return [
            { tag: "error", fail: () => sdk.error("no disk"), row: "no disk" },
            { tag: "markup in the error", fail: () => sdk.error("a`b"), row: "a\u02cbb" },
            { tag: "error without a text", fail: () => sdk.error(""), row: "<Request failed>" },
            { tag: "error of the connection", fail: () => sdk.error("WebSocket error: 1"), row: "<Sessions unavailable — SDK is not connected.>" },
            { tag: "connection lost", fail: () => { sdk.ready = false; }, row: "<Sessions unavailable — SDK is not connected.>" }
        ];
    }
    function test_failures(data) {
        popup.openSessions("");
        data.fail();
        compare(bar.takeCalls(), ["appendSystemMessage(" + data.row + ")"]);
        compare(popup.slashSessionListPending, false);
        // Nor is it reported twice, and a late list doesn't open the popup.
        data.fail();
        sdk.sessionsListed([garden]);
        compare(bar.takeCalls(), []);
        compare(popup.slashSessionPopupVisible, false);
    }

    function test_refusalAtOnce() {
        sdk.refuses = true;
        popup.openSessions("");
        compare(popup.slashSessionListPending, false);
        compare(bar.takeCalls(), ["appendSystemMessage(SDK not ready.)"]);
    }

    // ---- By name

    function test_aNameIsNeverFound_data() {
        return [
            { tag: "name", text: "Garden" },
            { tag: "id", text: "a" },
            { tag: "unknown", text: "x" }
        ];
    }
    function test_aNameIsNeverFound(row) {
        sdk.sessionsListed([garden]);
        bar.sessionsList = sessions.sessionsList;
        popup.openSessions(row.text);
        compare(bar.takeCalls(), ["appendSystemMessage(<No session found matching \"" + row.text
                                  + "\". Use `/session` to list all.>)"]);
        compare(sdk.takeCalls(), []);
        compare(popup.slashSessionListPending, false);
    }

    function test_rowsWithOtherKeysWouldBeFound_data() {
        return [
            { tag: "title", row: { "sid": "s", "id": "a", "title": "Garden" }, text: "Garden", id: "s", name: "Garden" },
            { tag: "id", row: { "id": "a" }, text: "a", id: "a", name: "a" },
            { tag: "sessionId", row: { "sessionId": "b" }, text: "b", id: "b", name: "b" }
        ];
    }
    function test_rowsWithOtherKeysWouldBeFound(data) {
        bar.sessionsList = [data.row];
        popup.openSessions(data.text);
        compare(bar.takeCalls(), ["sessionSwitchTo(" + data.id + ")",
                                  "appendSystemMessage(<Switched to session: " + data.name + ">)"]);
        compare(sdk.takeCalls(), ["loadMessages(" + data.id + ")"]);
    }

    // ---- The popup

    function test_switch() {
        openWith([garden, kitchen]);
        popup.switchToSession(1);
        compare(bar.takeCalls(), ["sessionSwitchTo(b)", "appendSystemMessage(<Switched to **Kitchen**>)"]);
        compare(sdk.takeCalls(), ["loadMessages(b)"]);
        compare(popup.slashSessionPopupVisible, false);
    }

    function test_delete() {
        openWith([garden, kitchen]);
        popup.deleteSession(0);
        compare(bar.takeCalls(), ["sessionDelete(a)", "appendSystemMessage(<Deleted session **Garden**.>)"]);
        compare(names(), ["Kitchen"]);
        compare(popup.slashSessionPopupVisible, true);
        popup.deleteSession(0);
        compare(bar.takeCalls(), ["sessionDelete(b)", "appendSystemMessage(<Deleted session **Kitchen**.>)"]);
        compare(popup.slashSessionPopupVisible, false);
    }

    function test_deleteAll() {
        openWith([garden, kitchen]);
        popup.deleteListedSessions();
        compare(bar.takeCalls(), ["sessionDelete(a)", "sessionDelete(b)", "appendSystemMessage(<Deleted all 2 session(s).>)"]);
        compare(names(), []);
        compare(popup.slashSessionPopupVisible, false);
    }

    function test_namesInRowsAreLiteral() {
        openWith([{ "id": "a", "name": "**x** `y`\n# z" }]);
        popup.switchToSession(0);
        compare(bar.takeCalls()[1].replace(/[\ufeff\u2060]/g, ""), "appendSystemMessage(<Switched to ****x** \u02cby\u02cb\ufffd# z**>)");
    }

    function test_escape() {
        const find = () => KeyTable.find(popup.inputKeys, Qt.Key_Escape, Qt.NoModifier);
        compare(find(), null);
        openWith([garden]);
        find().act();
        compare(popup.slashSessionPopupVisible, false);
        compare(bar.takeCalls(), []);
    }
}
