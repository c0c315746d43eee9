// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../../omnibar/controllers"

//! The SDK client as the panels and the code editor see it. It records calls and emits only what a test makes it emit.
CallRecorder {
    property bool ready: true

    signal auditRecentListed(var actions)
    signal auditReverted(string actionId)
    signal automationListed(var automations)
    signal automationUpdated(string id)
    signal automationDeleted(string id)
    signal deniedPermissionsReceived(var denied)
    signal desktopStateReceived(var state)
    signal codeGenerated(string code)
    signal codeEdited(string code)

    function auditListRecent(limit) { note("auditListRecent", [limit]); }
    function auditRevert(actionId) { note("auditRevert", [actionId]); }
    function automationList() { note("automationList", []); }
    function automationPause(id, pause) { note("automationPause", [id, pause]); }
    function automationDelete(id) { note("automationDelete", [id]); }
    function getDesktopState() { note("getDesktopState", []); }
    function emergencyStop() { note("emergencyStop", []); }
    function emergencyResume() { note("emergencyResume", []); }
    function getDeniedPermissions() { note("getDeniedPermissions", []); }
    function generateCode(prompt) { note("generateCode", [prompt]); }
}
