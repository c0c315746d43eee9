// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../../../../components/logic/ListSync.js" as ListSync
import "../../../../components/logic/LiteralText.js" as LiteralText
import "../../../../components/logic/Native.js" as Native
import "../logic/Sessions.js" as Sessions
import "../../../../components/logic/Translatable.js" as Translatable

//! The sessions of the bridge.
Controller {
    id: sessions

    //! Rows with sid, sname, screatedAt (ms since 1970, 0 if unknown), in the bridge's order.
    property var sessionsList: []
    //! The same rows for a view, which keeps its place when they change.
    readonly property ListModel sessionRows: ListModel {
        objectName: "sessionRows"
    }
    property var listedRows: []
    property bool sessionsLoading: false
    property string sessionsStatusMessage: ""

    //! The session that is being renamed, and the name as typed so far.
    property string renamingSessionId: ""
    property string renamingSessionName: ""

    property bool deletingAllSessions: false
    //! The list was requested in order to delete all sessions in it.
    property bool listAwaited: false
    //! Ids whose deletion the bridge has not confirmed yet.
    property var pendingSessionDeletes: []
    property string sessionDeleteStatusMessage: ""

    //! A request of the user that changes sessions is open, so the next error probably belongs to it.
    property bool changeRequested: false

    function refreshSessionsList() {
        if (!isReady()) {
            sessionsStatusMessage = bar.tr("SDK is connecting...");
            return;
        }
        sessionsLoading = true;
        Native.call(bar.sdk, "listSessions");
    }

    function sessionCreate() {
        request("createSession");
    }

    //! Makes a session the current one. Its earlier messages are not shown.
    function sessionSwitchTo(id) {
        // Before the request, because its error may come at once.
        sessionsStatusMessage = bar.tr("Switched to session");
        request("switchSession", id);
        bar.clearConversation();
    }

    function sessionDelete(id) {
        request("deleteSession", id);
    }

    function request(name, ...values) {
        changeRequested = true;
        Native.call(bar.sdk, name, ...values);
    }

    // ---- Renaming

    function startRenaming(id, name) {
        renamingSessionName = name;
        renamingSessionId = id;
    }

    function stopRenaming() {
        renamingSessionId = "";
        renamingSessionName = "";
    }

    //! Keeps the field open until the bridge has confirmed the name.
    function saveSessionName() {
        const name = renamingSessionName.trim();
        if (name !== "")
            request("renameSession", renamingSessionId, name);
    }

    // ---- Deleting all

    //! Intentional: without confirmation.
    function deleteAllSessions() {
        if (!isReady()) {
            sessionDeleteStatusMessage = bar.tr("SDK is connecting...");
            return;
        }
        deletingAllSessions = true;
        listAwaited = true;
        pendingSessionDeletes = [];
        sessionDeleteStatusMessage = bar.tr("Loading sessions...");
        Native.call(bar.sdk, "listSessions");
    }

    function deleteListed() {
        listAwaited = false;
        if (sessionsList.length === 0) {
            stopDeleting(bar.tr("No sessions to delete."));
            return;
        }
        pendingSessionDeletes = sessionsList.map(row => row.sid);
        sessionDeleteStatusMessage = filled(bar.tr("Deleting {count} session(s)..."), pendingSessionDeletes.length);
        pendingSessionDeletes.forEach(id => Native.call(bar.sdk, "deleteSession", id));
    }

    function forget(id) {
        sessionsList = sessionsList.filter(row => row.sid !== id);
        if (!deletingAllSessions || listAwaited) {
            reportCount();
            return;
        }
        pendingSessionDeletes = pendingSessionDeletes.filter(pending => pending !== id);
        if (pendingSessionDeletes.length > 0) {
            sessionDeleteStatusMessage = filled(bar.tr("Deleting... {count} remaining."), pendingSessionDeletes.length);
            return;
        }
        stopDeleting(bar.tr("All sessions deleted."));
        refreshSessionsList();
    }

    function stopDeleting(text) {
        deletingAllSessions = false;
        listAwaited = false;
        pendingSessionDeletes = [];
        sessionDeleteStatusMessage = text;
    }

    function filled(text, count) {
        return Translatable.filled(text, { "count": count });
    }

    //! Reports what the bridge has done, and loads the list again.
    function report(text, name) {
        changeRequested = false;
        sessionsStatusMessage = Translatable.filled(text, { "name": LiteralText.oneLine(name) });
        refreshSessionsList();
    }

    function reportCount() {
        sessionsStatusMessage = sessionsList.length === 0 ? bar.tr("No sessions found.") : filled(bar.tr("{count} session(s)"), sessionsList.length);
    }

    onSessionsListChanged: {
        ListSync.update(sessionRows, listedRows, sessionsList, "sid");
        listedRows = sessionsList;
        if (renamingSessionId !== "" && !sessionsList.some(row => row.sid === renamingSessionId))
            stopRenaming();
    }

    Connections {
        target: sessions.bar.sdk

        function onSessionsListed(list) {
            sessions.sessionsLoading = false;
            sessions.sessionsList = Sessions.rows(list);
            sessions.reportCount();
            if (sessions.listAwaited)
                sessions.deleteListed();
        }
        function onSessionSwitched(id) {
            sessions.report(sessions.bar.tr("Switched to {name}"), id);
        }
        function onSessionCreated(id) {
            sessions.report(sessions.bar.tr("Created session {name}"), id);
        }
        function onSessionRenamed(id, name) {
            sessions.stopRenaming();
            sessions.report(sessions.bar.tr("Renamed to {name}"), name);
        }
        function onSessionDeleted(id) {
            sessions.changeRequested = false;
            sessions.forget(id);
        }
        function onError(error) {
            sessions.sessionsLoading = false;
            if (sessions.deletingAllSessions)
                sessions.stopDeleting(error || sessions.bar.tr("Failed to delete sessions."));
            if (sessions.changeRequested)
                sessions.sessionsStatusMessage = sessions.errorText(error, sessions.bar.tr("SDK is connecting..."));
            sessions.changeRequested = false;
        }
        function onReadyChanged() {
            // A lost connection takes the open requests with it.
            sessions.sessionsLoading = false;
            sessions.changeRequested = false;
            if (sessions.deletingAllSessions)
                sessions.stopDeleting(sessions.bar.tr("Failed to delete sessions."));
        }
    }
}
