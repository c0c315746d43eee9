// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../../../../components/logic/LiteralText.js" as LiteralText
import "../../../../components/logic/Native.js" as Native
import "../logic/Sessions.js" as Sessions
import "../../../../components/logic/Translatable.js" as Translatable

//! The command /session: a popup with the sessions, to switch between them and to delete them.
Controller {
    id: popup

    //! The list was requested for the popup.
    property bool slashSessionListPending: false
    property bool slashSessionPopupVisible: false
    readonly property string unavailable: bar.tr("Sessions unavailable — SDK is not connected.")
    //! The rows of the popup, with the roles sid, sname, screatedAt (ms since 1970, 0 if unknown).
    readonly property ListModel sessionPopupModel: ListModel {
        objectName: "sessionPopupModel"
    }

    readonly property var inputKeys: [
        { "key": Qt.Key_Escape, "holds": () => slashSessionPopupVisible, "act": () => close() }
    ]

    //! @param nameOrId "" for the list of all sessions
    function openSessions(nameOrId) {
        if (nameOrId !== "") {
            switchToNamed(nameOrId);
        } else if (!Native.offers(bar.sdk, "listSessions")) {
            bar.appendSystemMessage(unavailable);
        } else {
            slashSessionListPending = true;
            bar.sessionsLoading = true;
            bar.sdk.listSessions();
        }
    }

    function switchToNamed(nameOrId) {
        const session = Sessions.find(bar.sessionsList, nameOrId);
        if (!session) {
            append(bar.tr("No session found matching \"{name}\". Use `/session` to list all."), nameOrId);
            return;
        }
        const id = session.sid || session.id || session.sessionId;
        switchTo(id);
        append(bar.tr("Switched to session: {name}"), session.title || id);
    }

    function close() {
        slashSessionPopupVisible = false;
    }

    function switchToSession(index) {
        const session = sessionPopupModel.get(index);
        const name = session.sname;
        switchTo(session.sid);
        close();
        append(bar.tr("Switched to **{name}**"), name);
    }

    function deleteSession(index) {
        const session = sessionPopupModel.get(index);
        const name = session.sname;
        bar.sessionDelete(session.sid);
        sessionPopupModel.remove(index);
        if (sessionPopupModel.count === 0)
            close();
        append(bar.tr("Deleted session **{name}**."), name);
    }

    //! Intentional: without confirmation.
    function deleteListedSessions() {
        const count = sessionPopupModel.count;
        for (let i = 0; i < count; ++i)
            bar.sessionDelete(sessionPopupModel.get(i).sid);
        sessionPopupModel.clear();
        close();
        bar.appendSystemMessage(Translatable.filled(bar.tr("Deleted all {count} session(s)."), { "count": count }));
    }

    function switchTo(id) {
        bar.sessionSwitchTo(id);
        Native.call(bar.sdk, "loadMessages", id);
    }

    function append(text, name) {
        bar.appendSystemMessage(Translatable.filled(text, { "name": LiteralText.asMarkdown(name) }));
    }

    function show(list) {
        if (list.length === 0) {
            bar.appendSystemMessage(bar.tr("No sessions found. Use `/new` to create one."));
            close();
            return;
        }
        sessionPopupModel.clear();
        Sessions.namedRows(list, bar.tr).forEach(row => sessionPopupModel.append(row));
        slashSessionPopupVisible = true;
    }

    //! Ends the wait for the list with a row. A list that arrives later was requested by something else.
    function giveUp(text) {
        if (!slashSessionListPending)
            return;
        slashSessionListPending = false;
        bar.appendSystemMessage(text);
    }

    Connections {
        target: popup.bar.sdk

        function onSessionsListed(list) {
            if (!popup.slashSessionListPending)
                return;
            popup.slashSessionListPending = false;
            popup.show(Sessions.rows(list));
        }
        function onError(error) {
            popup.giveUp(LiteralText.asMarkdown(popup.errorText(error, popup.unavailable)));
        }
        function onReadyChanged() {
            popup.giveUp(popup.unavailable);
        }
    }
}
