// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Native.js" as Native
import "../logic/Sessions.js" as Sessions

//! The sessions of the bridge.
Controller {
    id: sessions

    //! Rows with sid, sname, screatedAt (ms since 1970, 0 if unknown), in the bridge's order.
    property var sessionsList: []
    property bool sessionsLoading: false

    //! Makes a session the current one. Its earlier messages are not shown.
    function sessionSwitchTo(id) {
        Native.call(bar.sdk, "switchSession", id);
        bar.clearConversation();
    }

    function sessionDelete(id) {
        Native.call(bar.sdk, "deleteSession", id);
    }

    Connections {
        target: sessions.bar.sdk

        function onSessionsListed(list) {
            sessions.sessionsLoading = false;
            sessions.sessionsList = Sessions.rows(list);
        }
        function onError(error) {
            sessions.sessionsLoading = false;
        }
        function onReadyChanged() {
            // A lost connection takes the open request with it.
            sessions.sessionsLoading = false;
        }
    }
}
