// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

//! The sessions as the settings sheet manages them. The popup has tests of its own.
TestCase {
    id: test
    name: "SessionsController"

    property FakeBar bar
    property FakeSdk sdk
    property SessionsController sessions

    readonly property var two: [{ "id": "a", "name": "Garden" }, { "sessionId": "b", "title": "Kitchen", "created": 1773068700000 }]

    Component { id: bars; FakeBar {} }
    Component { id: clients; FakeSdk {} }
    Component { id: controllers; SessionsController {} }

    function init() {
        bar = createTemporaryObject(bars, test);
        sdk = createTemporaryObject(clients, test);
        bar.sdk = sdk;
        sessions = createTemporaryObject(controllers, test, { "bar": bar });
    }

    function listed() {
        const ids = [];
        for (let i = 0; i < sessions.sessionRows.count; ++i)
            ids.push(sessions.sessionRows.get(i).sid);
        return ids;
    }

    // ---- The list

    function test_notReady_data() {
        return [{ tag: "no client", client: false }, { tag: "not ready", client: true }];
    }
    function test_notReady(data) {
        if (data.client)
            sdk.ready = false;
        else
            bar.sdk = null;
        sessions.refreshSessionsList();
        sessions.deleteAllSessions();
        compare([sessions.sessionsLoading, sessions.deletingAllSessions], [false, false]);
        compare([sessions.sessionsStatusMessage, sessions.sessionDeleteStatusMessage], ["<SDK is connecting...>", "<SDK is connecting...>"]);
        compare(sdk.calls, []);
    }

    function test_list() {
        sessions.refreshSessionsList();
        verify(sessions.sessionsLoading);
        compare(sdk.calls, ["listSessions()"]);
        sdk.sessionsListed(two);
        verify(!sessions.sessionsLoading);
        compare(sessions.sessionsList, [
            { "sid": "a", "sname": "Garden", "screatedAt": 0 }, { "sid": "b", "sname": "Kitchen", "screatedAt": 1773068700000 }
        ]);
        compare(listed(), ["a", "b"]);
        compare(sessions.sessionsStatusMessage, "<2 session(s)>");
        sdk.sessionsListed([]);
        compare([listed(), sessions.sessionsStatusMessage], [[], "<No sessions found.>"]);
    }

    function test_loadingEnds_data() {
        return [{ tag: "error", end: () => sdk.error("x") }, { tag: "lost connection", end: () => { sdk.ready = false; } }];
    }
    function test_loadingEnds(data) {
        sessions.refreshSessionsList();
        data.end();
        verify(!sessions.sessionsLoading);
    }

    // ---- Changes

    function test_requests_data() {
        return [
            { tag: "create", act: () => sessions.sessionCreate(), sdk: ["createSession()"], bar: [], status: "" },
            { tag: "switch", act: () => sessions.sessionSwitchTo("b"), sdk: ["switchSession(b)"], bar: ["clearConversation()"],
              status: "<Switched to session>" },
            { tag: "delete", act: () => sessions.sessionDelete("b"), sdk: ["deleteSession(b)"], bar: [], status: "" }
        ];
    }
    function test_requests(data) {
        data.act();
        compare(sdk.calls, data.sdk);
        compare(bar.calls, data.bar);
        compare(sessions.sessionsStatusMessage, data.status);
    }

    function test_reports_data() {
        return [
            { tag: "switched", signal: () => sdk.sessionSwitched("b"), status: "<Switched to b>" },
            { tag: "created", signal: () => sdk.sessionCreated("c"), status: "<Created session c>" },
            { tag: "renamed", signal: () => sdk.sessionRenamed("b", "New\nname"), status: "<Renamed to New\ufffdname>" }
        ];
    }
    function test_reports(data) {
        data.signal();
        compare(sessions.sessionsStatusMessage, data.status);
        compare(sdk.calls, ["listSessions()"]);
    }

    function test_deletedSessionLeavesTheList() {
        sdk.sessionsListed(two);
        sessions.sessionDelete("a");
        compare(listed(), ["a", "b"]);
        sdk.sessionDeleted("a");
        compare([listed(), sessions.sessionsStatusMessage], [["b"], "<1 session(s)>"]);
        sdk.sessionDeleted("unknown");
        compare(listed(), ["b"]);
    }

    function test_errorOfAChange_data() {
        return [{ tag: "text", error: "no such session", status: "no such session" }, { tag: "no text", error: "", status: "<Request failed>" },
            { tag: "of the connection", error: "WebSocket error: 1", status: "<SDK is connecting...>" }];
    }
    function test_errorOfAChange(data) {
        sessions.sessionSwitchTo("gone");
        sdk.error(data.error);
        compare(sessions.sessionsStatusMessage, data.status);
        // Only once: the next one is not theirs.
        sdk.error("another");
        compare(sessions.sessionsStatusMessage, data.status);
    }

    function test_refusedSwitch() {
        sdk.answers.refusal = "not ready";
        sessions.sessionSwitchTo("b");
        compare(sessions.sessionsStatusMessage, "not ready");
    }

    function test_otherErrorsAreNotTheirs_data() {
        return [
            { tag: "nothing requested", before: () => {} },
            { tag: "switched", before: () => { sessions.sessionSwitchTo("b"); sdk.sessionSwitched("b"); } },
            { tag: "deleted", before: () => { sessions.sessionDelete("a"); sdk.sessionDeleted("a"); } },
            { tag: "connection lost", before: () => { sessions.sessionDelete("a"); sdk.ready = false; } }
        ];
    }
    function test_otherErrorsAreNotTheirs(data) {
        data.before();
        const status = sessions.sessionsStatusMessage;
        sdk.error("another");
        compare(sessions.sessionsStatusMessage, status);
    }

    // ---- Renaming

    function test_renaming() {
        sdk.sessionsListed(two);
        sessions.startRenaming("a", "Garden");
        compare([sessions.renamingSessionId, sessions.renamingSessionName], ["a", "Garden"]);
        sessions.renamingSessionName = "  \t";
        sessions.saveSessionName();
        compare(sdk.calls, []);
        sessions.renamingSessionName = "  Flowers ";
        sessions.saveSessionName();
        compare(sdk.takeCalls(), ["renameSession(a, Flowers)"]);
        // The field stays until the name is saved.
        compare(sessions.renamingSessionId, "a");
        sdk.error("no such session");
        compare([sessions.renamingSessionId, sessions.sessionsStatusMessage], ["a", "no such session"]);
        sdk.sessionRenamed("a", "Flowers");
        compare([sessions.renamingSessionId, sessions.renamingSessionName], ["", ""]);
    }

    function test_listUnderAnOpenField() {
        sdk.sessionsListed(two);
        sessions.startRenaming("b", "Kitchen");
        sessions.renamingSessionName = "Kitch";
        sdk.sessionsListed([{ "id": "new" }].concat(two));
        compare([sessions.renamingSessionId, sessions.renamingSessionName], ["b", "Kitch"]);
        // Deleted by another window.
        sdk.sessionsListed([{ "id": "new" }]);
        compare([sessions.renamingSessionId, sessions.renamingSessionName], ["", ""]);
    }

    // ---- Deleting all

    function test_deletingAll() {
        sessions.deleteAllSessions();
        compare([sessions.deletingAllSessions, sessions.sessionDeleteStatusMessage], [true, "<Loading sessions...>"]);
        compare(sdk.takeCalls(), ["listSessions()"]);
        sdk.sessionsListed(two);
        compare(sessions.sessionDeleteStatusMessage, "<Deleting 2 session(s)...>");
        compare(sdk.takeCalls(), ["deleteSession(a)", "deleteSession(b)"]);
        compare(sessions.pendingSessionDeletes, ["a", "b"]);
        sdk.sessionDeleted("b");
        compare([sessions.pendingSessionDeletes, sessions.sessionDeleteStatusMessage], [["a"], "<Deleting... 1 remaining.>"]);
        // Another list in between starts nothing.
        sdk.sessionsListed([two[0]]);
        compare(sdk.takeCalls(), []);
        sdk.sessionDeleted("a");
        compare([sessions.deletingAllSessions, sessions.sessionDeleteStatusMessage], [false, "<All sessions deleted.>"]);
        compare(sdk.takeCalls(), ["listSessions()"]);
        compare(listed(), []);
    }

    function test_nothingToDelete() {
        sessions.deleteAllSessions();
        sdk.sessionsListed([]);
        compare([sessions.deletingAllSessions, sessions.sessionDeleteStatusMessage], [false, "<No sessions to delete.>"]);
    }

    function test_deletionStops_data() {
        return [
            { tag: "error", stop: () => sdk.error("disk full"), status: "disk full" },
            { tag: "error without a text", stop: () => sdk.error(""), status: "<Failed to delete sessions.>" },
            { tag: "lost connection", stop: () => { sdk.ready = false; }, status: "<Failed to delete sessions.>" }
        ];
    }
    function test_deletionStops(data) {
        sessions.deleteAllSessions();
        sdk.sessionsListed(two);
        data.stop();
        compare([sessions.deletingAllSessions, sessions.pendingSessionDeletes.length], [false, 0]);
        compare(sessions.sessionDeleteStatusMessage, data.status);
        // A late confirmation only removes the row.
        sdk.takeCalls();
        sdk.sessionDeleted("a");
        compare([listed(), sessions.sessionDeleteStatusMessage, sdk.calls.length], [["b"], data.status, 0]);
    }

    function test_errorWhileTheListIsLoading() {
        sessions.deleteAllSessions();
        sdk.error("no");
        sdk.sessionsListed(two);
        compare([sessions.sessionDeleteStatusMessage, sdk.calls], ["no", ["listSessions()"]]);
    }
}
