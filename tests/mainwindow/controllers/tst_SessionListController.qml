// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components/mainwindow/controllers"

TestCase {
    id: test
    name: "SessionListController"

    property var sdk: null
    property var sessions: null

    Component {
        id: sdkComponent
        FakeMainSdk {}
    }
    Component {
        id: sidebarComponent
        FakeSidebar {}
    }
    Component {
        id: controllerComponent
        SessionListController {}
    }

    readonly property var list: [{ id: "a", title: "A" }, { id: "b", title: "B" }]

    function open(properties) {
        sdk = createTemporaryObject(sdkComponent, test, properties);
        sessions = createTemporaryObject(controllerComponent, test, { sidebar: createTemporaryObject(sidebarComponent, test, { sdk: sdk }) });
    }

    function init() {
        open({});
        compare(sdk.takeCalls(), ["listSessions()"]);
    }

    function test_notReady() {
        open({ ready: false });
        compare(sdk.takeCalls(), []);
        sdk.ready = true;
        compare(sdk.takeCalls(), ["listSessions()"]);
        sdk.ready = false;
        compare(sdk.takeCalls(), []);
    }

    function test_selection_data() {
        return [
            { tag: "the current session", current: "b", selected: "", expected: "b", calls: [] },
            { tag: "the first, without a current one", current: "", selected: "", expected: "a", calls: ["switchSession(a)"] },
            { tag: "the selected one stays", current: "", selected: "b", expected: "b", calls: [] },
            { tag: "the current one isn't in the list", current: "x", selected: "", expected: "", calls: [] }
        ];
    }

    function test_selection(data) {
        sdk.currentSessionId = data.current;
        wait(0);
        sdk.takeCalls();
        sessions.selectedSessionId = data.selected;
        sdk.sessionsListed(list);
        compare(sessions.selectedSessionId, data.expected);
        compare(sdk.takeCalls(), data.calls);
        compare(sessions.rows.count, 2);
        compare(sessions.sessionsData.map(row => row.name), ["A", "B"]);
    }

    function test_emptyList() {
        sdk.sessionsListed([]);
        compare([sessions.selectedSessionId, sessions.rows.count], ["", 0]);
        compare(sdk.takeCalls(), []);
    }

    function test_switched() {
        sdk.sessionSwitched("a");
        compare([sessions.selectedSessionId, sessions.loadingMessages, sessions.lastLoadedSessionId], ["a", true, "a"]);
        compare(sdk.takeCalls(), ["loadMessages(a)"]);
        // In the same turn of the event loop: already loading.
        sdk.sessionSwitched("b");
        compare([sessions.selectedSessionId, sdk.takeCalls()], ["b", []]);
        tryCompare(sessions, "loadingMessages", false);
        sdk.sessionSwitched("a");
        compare(sdk.takeCalls(), []);
        sdk.sessionSwitched("b");
        compare(sdk.takeCalls(), ["loadMessages(b)"]);
    }

    function test_created() {
        sdk.sessionCreated("c");
        compare(sdk.takeCalls(), ["listSessions()"]);
        tryVerify(() => sdk.calls.length === 2);
        compare(sdk.takeCalls(), ["switchSession(c)", "loadMessages(c)"]);
    }

    function test_renamed() {
        sdk.sessionsListed(list);
        sdk.takeCalls();
        sdk.sessionRenamed("b", "Better");
        compare(sessions.sessionsData.map(row => row.name), ["A", "Better"]);
        compare(sessions.rows.get(1).name, "Better");
        compare(sdk.takeCalls(), ["listSessions()"]);
    }

    function test_deletedCurrentSession_data() {
        return [{ tag: "no current one", current: "", selected: "b", calls: ["switchSession(b)"] }, { tag: "a current one elsewhere", current: "x", selected: "", calls: [] }];
    }

    function test_deletedCurrentSession(data) {
        sdk.currentSessionId = "a";
        sdk.sessionsListed(list);
        compare(sessions.selectedSessionId, "a");
        wait(0);
        sdk.takeCalls();
        sdk.currentSessionId = "";
        sdk.sessionDeleted("a");
        compare([sessions.selectedSessionId, sdk.takeCalls()], ["", ["listSessions()"]]);
        sessions.createdSessionId = data.current;
        sdk.currentSessionId = data.current;
        sdk.sessionsListed([list[1]]);
        compare([sessions.selectedSessionId, sdk.takeCalls()], [data.selected, data.calls]);
    }

    function test_deletedOtherSession() {
        sessions.selectedSessionId = "a";
        sdk.sessionDeleted("b");
        compare([sessions.selectedSessionId, sdk.takeCalls()], ["a", ["listSessions()"]]);
    }

    function test_choosing() {
        sdk.currentSessionId = "a";
        sdk.sessionsListed(list);
        sdk.takeCalls();
        sessions.choose("b");
        compare([sessions.selectedSessionId, sdk.takeCalls()], ["b", ["switchSession(b)"]]);
        sessions.choose("b");
        compare(sdk.takeCalls(), []);
        // Before the bridge has confirmed the other one.
        sessions.choose("a");
        compare([sessions.selectedSessionId, sdk.takeCalls()], ["a", ["switchSession(a)"]]);
        sdk.sessionSwitched("a");
        sdk.takeCalls();
        // The chat would be cleared, but its messages not loaded again.
        sessions.choose("a");
        compare(sdk.takeCalls(), []);
        // A refused switch can be tried again.
        sessions.choose("b");
        sdk.error("no");
        sessions.choose("b");
        compare(sdk.takeCalls(), ["switchSession(b)", "switchSession(b)"]);
        sessions.startEditing("a");
        sessions.choose("a");
        compare([sessions.selectedSessionId, sdk.takeCalls()], ["b", []]);
    }

    function test_lostConnection() {
        // The switch was not confirmed: it can be tried again.
        sessions.choose("b");
        sdk.ready = false;
        sdk.takeCalls();
        sdk.ready = true;
        sessions.choose("b");
        compare(sdk.takeCalls(), ["listSessions()", "switchSession(b)"]);
        // Its messages did not arrive: they are requested again, once.
        sdk.sessionSwitched("b");
        sdk.ready = false;
        compare(sdk.takeCalls(), ["loadMessages(b)"]);
        sdk.ready = true;
        compare(sdk.takeCalls(), ["listSessions()", "loadMessages(b)"]);
        sdk.messagesLoaded([]);
        sdk.ready = false;
        sdk.ready = true;
        compare(sdk.takeCalls(), ["listSessions()"]);
    }

    function test_editing_data() {
        return [
            { tag: "a name", name: " New & <b>bold</b> ", calls: ["renameSession(a, New & <b>bold</b>)"] }, { tag: "empty", name: "", calls: [] },
            { tag: "whitespace", name: "  ", calls: [] }
        ];
    }

    function test_editing(data) {
        sdk.currentSessionId = "a";
        sdk.sessionsListed(list);
        sdk.takeCalls();
        sessions.startEditing("a");
        sessions.saveName(data.name);
        compare([sessions.editedSessionId, sdk.takeCalls()], ["", data.calls]);
        sessions.saveName("nothing is edited");
        compare(sdk.takeCalls(), []);
    }

    function test_editedSessionVanishes() {
        sdk.sessionsListed(list);
        sessions.startEditing("b");
        sdk.sessionsListed(list);
        compare(sessions.editedSessionId, "b");
        sdk.sessionsListed([list[0]]);
        compare(sessions.editedSessionId, "");
    }

    function test_aSessionThatAReplyBegan() {
        sdk.currentSessionId = "new";
        tryVerify(() => sdk.calls.length > 0);
        compare(sdk.takeCalls(), ["listSessions()"]);
    }

    function test_buttons() {
        sessions.create();
        sessions.remove("a");
        compare(sdk.takeCalls(), ["createSession()", "deleteSession(a)"]);
    }

    function test_withoutClient() {
        sessions = createTemporaryObject(controllerComponent, test, { sidebar: createTemporaryObject(sidebarComponent, test, {}) });
        sessions.create();
        sessions.choose("a");
        sessions.remove("a");
        sessions.show(list);
        sessions.listUnknown();
        compare(sessions.selectedSessionId, "a");
    }
}
