// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The SDK client as a controller sees it. It records calls, with lists as JSON, and emits only what a test makes it emit.
CallRecorder {
    property bool ready: true
    property bool executorPathEnabled: true

    signal planReceived(var payload)
    signal planExecuted(var payload)
    signal error(string error)
    signal modelsListed(var models)
    signal sessionsListed(var sessions)

    function getPlan(message) { note("getPlan", [message]); }
    function executePlan(steps) { note("executePlan", [JSON.stringify(steps)]); }
    function auditRevert(actionId) { note("auditRevert", [actionId]); }
}
