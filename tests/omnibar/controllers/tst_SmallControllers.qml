// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

//! Controllers that are too small for a test file each.
TestCase {
    id: test
    name: "SmallControllers"

    property FakeBar bar

    Component { id: bars; FakeBar {} }
    Component { id: workspaceControllers; WorkspaceController {} }

    Component {
        id: clients

        QtObject {
            property bool ready: true
            property bool workspaceIntelAvailable: true
            property bool aiRuntimeAvailable: true
            property var calls: []

            function refreshWorkspaceTemplates() { calls.push("refreshWorkspaceTemplates"); }
            function refreshWorkspaceIntelPanel() { calls.push("refreshWorkspaceIntelPanel"); }
            function refreshAiRuntimePanel() { calls.push("refreshAiRuntimePanel"); }
            function refreshRuntimeHealth() { calls.push("refreshRuntimeHealth"); }
            function refreshRuntimeJobs() { calls.push("refreshRuntimeJobs"); }
            function refreshPowerProfile() { calls.push("refreshPowerProfile"); }
            function reminderList() { calls.push("reminderList"); }
        }
    }

    Component {
        id: dialogs

        QtObject {
            property bool opened: true

            function close() { opened = false; }
        }
    }

    function init() {
        bar = createTemporaryObject(bars, test);
    }

    function make(component) {
        return createTemporaryObject(component, test, { "bar": bar });
    }

    function withClient(values) {
        bar.sdk = createTemporaryObject(clients, test, values);
        return bar.sdk;
    }

    // ---- Workspace

    function test_workspaceWithoutAClient() {
        const workspace = make(workspaceControllers);
        workspace.refreshRuntimePanels();
        workspace.loadFromBridge();
        workspace.loadWorkspaceTemplateCatalogFromPrefs();
        compare(workspace.wiNotifyBarLine, "");
        compare(workspace.workspaceSuggestionDialogOpen, false);
        compare(bar.takeCalls(), []);
    }

    function test_startOfTheWorkspace_data() {
        return [
            { tag: "ready", client: {}, bar: ["refreshModels()"], sdk: ["refreshWorkspaceTemplates"] },
            { tag: "no workspace", client: { "workspaceIntelAvailable": false }, bar: ["refreshModels()"], sdk: [] },
            { tag: "not ready", client: { "ready": false }, bar: [], sdk: [] }
        ];
    }

    function test_startOfTheWorkspace(data) {
        const client = withClient(data.client);
        make(workspaceControllers).loadFromBridge();
        compare(bar.takeCalls(), data.bar);
        compare(client.calls, data.sdk);
    }

    function test_runtimePanels_data() {
        const always = ["refreshRuntimeHealth", "refreshRuntimeJobs", "refreshPowerProfile", "reminderList"];
        return [
            { tag: "all", client: {}, sdk: ["refreshWorkspaceTemplates", "refreshWorkspaceIntelPanel",
                                            "refreshAiRuntimePanel"].concat(always) },
            { tag: "no workspace", client: { "workspaceIntelAvailable": false }, sdk: ["refreshAiRuntimePanel"].concat(always) },
            { tag: "no runtime", client: { "aiRuntimeAvailable": false },
              sdk: ["refreshWorkspaceTemplates", "refreshWorkspaceIntelPanel"].concat(always) },
            { tag: "not ready", client: { "ready": false }, sdk: [] }
        ];
    }

    function test_runtimePanels(data) {
        const client = withClient(data.client);
        make(workspaceControllers).refreshRuntimePanels();
        compare(client.calls, data.sdk);
    }

    function test_suggestionDialog() {
        const workspace = make(workspaceControllers);
        workspace.suggestionDialog = createTemporaryObject(dialogs, test);
        compare(workspace.workspaceSuggestionDialogOpen, true);
        workspace.closeWorkspaceSuggestionDialog();
        compare(workspace.workspaceSuggestionDialogOpen, false);
    }
}
