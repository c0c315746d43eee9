// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../logic/ListSync.js" as ListSync
import "../../logic/Native.js" as Native
import "../../logic/Untrusted.js" as Untrusted
import "../logic/SessionNames.js" as SessionNames

//! The sessions of the bridge in the sidebar.
QtObject {
    id: sessions

    //! The SessionSidebar, or a fake in tests.
    required property var sidebar

    //! Rows {id, name, title, createdAt (ms since 1970, 0 if unknown)}, in the bridge's order.
    property var sessionsData: []
    property string selectedSessionId: ""
    //! A session was switched to, and its messages are being requested.
    property bool loadingMessages: false
    //! The session whose messages were requested last.
    property string lastLoadedSessionId: ""
    //! They haven't arrived yet.
    property bool messagesAwaited: false
    //! The bridge hasn't confirmed yet that this is the current session; empty if none was requested.
    property string requestedSessionId: ""
    //! The session that was created last.
    property string createdSessionId: ""
    //! The session whose name is being edited; empty if none is.
    property string editedSessionId: ""

    //! The same rows for a view, which keeps its place when they change.
    readonly property ListModel rows: ListModel {}
    property var listedRows: []

    readonly property Connections sdkConnections: Connections {
        target: sessions.sidebar.sdk

        function onReadyChanged() {
            // A lost connection takes the open requests with it.
            sessions.requestedSessionId = "";
            sessions.refresh();
            sessions.loadAgain();
        }
        function onMessagesLoaded() {
            sessions.messagesAwaited = false;
        }
        function onSessionsListed(list) {
            sessions.show(list);
        }
        function onError() {
            sessions.requestedSessionId = "";
        }
        function onSessionSwitched(id) {
            sessions.requestedSessionId = "";
            sessions.selectedSessionId = id;
            sessions.loadOnce(id);
        }
        function onSessionCreated(id) {
            sessions.createdSessionId = id;
            Native.call(sessions.sidebar.sdk, "listSessions");
            Qt.callLater(sessions.open, id);
        }
        function onCurrentSessionIdChanged() {
            Qt.callLater(sessions.listUnknown);
        }
        function onSessionRenamed(id, newName) {
            sessions.sessionsData = SessionNames.renamed(sessions.sessionsData, id, newName);
            Native.call(sessions.sidebar.sdk, "listSessions");
        }
        function onSessionDeleted(id) {
            if (sessions.selectedSessionId === id)
                sessions.selectedSessionId = "";
            Native.call(sessions.sidebar.sdk, "listSessions");
        }
    }

    function refresh() {
        if (sidebar.isReady())
            Native.call(sidebar.sdk, "listSessions");
    }

    function create() {
        Native.call(sidebar.sdk, "createSession");
    }

    //! Selects a session and makes it the current one.
    function choose(id) {
        if (editedSessionId !== "")
            return;
        selectedSessionId = id;
        // The bridge would confirm that too, which clears the chat, but its messages are loaded only once.
        if (id === (requestedSessionId || currentSessionId()))
            return;
        requestedSessionId = id;
        Native.call(sidebar.sdk, "switchSession", id);
    }

    function remove(id) {
        Native.call(sidebar.sdk, "deleteSession", id);
    }

    function startEditing(id) {
        editedSessionId = id;
    }

    function stopEditing() {
        editedSessionId = "";
    }

    //! Ends the editing; the name is only changed if it isn't empty.
    function saveName(name) {
        const id = editedSessionId;
        stopEditing();
        if (id !== "" && name.trim() !== "")
            Native.call(sidebar.sdk, "renameSession", id, name.trim());
    }

    function currentSessionId() {
        return sidebar.sdk ? Untrusted.textOf(sidebar.sdk.currentSessionId) : "";
    }

    function show(list) {
        sessionsData = SessionNames.rows(list, Translation.tr);
        const current = currentSessionId();
        if (sessionsData.some(row => row.id === current)) {
            selectedSessionId = current;
        } else if (current === "" && selectedSessionId === "" && sessionsData.length > 0) {
            choose(sessionsData[0].id);
        }
    }

    //! The first prompt without a session begins one, which only its reply names.
    function listUnknown() {
        const id = currentSessionId();
        if (id !== "" && id !== createdSessionId && !sessionsData.some(row => row.id === id))
            refresh();
    }

    function loadOnce(id) {
        if (loadingMessages || id === lastLoadedSessionId)
            return;
        loadingMessages = true;
        messagesAwaited = true;
        lastLoadedSessionId = id;
        Native.call(sidebar.sdk, "loadMessages", id);
        Qt.callLater(stopLoading);
    }

    function loadAgain() {
        if (messagesAwaited && sidebar.isReady())
            Native.call(sidebar.sdk, "loadMessages", lastLoadedSessionId);
    }

    function stopLoading() {
        loadingMessages = false;
    }

    function open(id) {
        Native.call(sidebar.sdk, "switchSession", id);
        Native.call(sidebar.sdk, "loadMessages", id);
    }

    onSessionsDataChanged: {
        ListSync.update(rows, listedRows, sessionsData, "id");
        listedRows = sessionsData;
        if (!sessionsData.some(row => row.id === editedSessionId))
            stopEditing();
    }
    Component.onCompleted: refresh()
}
