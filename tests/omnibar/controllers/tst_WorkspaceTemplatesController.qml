// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

TestCase {
    id: test
    name: "WorkspaceTemplatesController"

    property FakeBar bar
    property FakeSdk sdk
    property FakeConfig config
    property WorkspaceTemplatesController templates

    Component { id: bars; FakeBar {} }
    Component { id: sdks; FakeSdk {} }
    Component { id: configs; FakeConfig {} }
    Component { id: controllers; WorkspaceTemplatesController {} }

    function init() {
        sdk = createTemporaryObject(sdks, test, { "workspaceIntelAvailable": true });
        config = createTemporaryObject(configs, test);
        bar = createTemporaryObject(bars, test, { "sdk": sdk, "config": config });
        templates = createTemporaryObject(controllers, test, { "bar": bar });
    }

    function prefer(slugs) { config.answers.isWorkspaceTemplateSlugEnabled = slugs; }

    function workspace(id, slug, status) {
        return { "id": id, "name": "Workspace " + id, "status": status, "behaviorRules": { "slug": slug } };
    }

    function enabledRows() { return templates.workspaceTemplateCatalog.filter(row => row.enabled).map(row => row.id); }

    function test_firstValues() {
        compare(templates.workspaceTemplateCatalogBase.map(row => row.name), ["<Focus — Development>", "<Meeting>", "<Research>"]);
        compare(templates.workspaceTemplateCatalog, templates.workspaceTemplateCatalogBase);
        compare(templates.workspaceTemplateStatusMessage, "");
    }

    function test_toolsMirrorTheClient() {
        compare(templates.toolsEnabled, true);
        sdk.executorPathEnabled = false;
        compare(templates.toolsEnabled, false);
        templates.setToolsEnabled(true);
        compare([sdk.executorPathEnabled, templates.toolsEnabled], [true, true]);
    }

    function test_withoutNativeObjects() {
        bar.sdk = null;
        bar.config = null;
        compare(templates.toolsEnabled, false);
        templates.setToolsEnabled(true);
        templates.loadWorkspaceTemplateCatalogFromPrefs();
        templates.mergeWorkspaceTemplatesFromBridge([workspace(2, "meeting", "paused")]);
        templates.setWorkspaceTemplateEnabled("meeting", true);
        compare(enabledRows(), ["meeting"]);
        templates.prepareWorkspaceTemplate("meeting");
        compare(templates.workspaceTemplateStatusMessage, "<Workspace templates require LOOMRA_WORKSPACE_INTEL=1 on the bridge.>");
    }

    function test_preferencesAreLoaded() {
        prefer(["research", "unknown"]);
        templates.loadWorkspaceTemplateCatalogFromPrefs();
        compare(enabledRows(), ["research"]);
    }

    function test_templatesAreRequested_data() {
        return [
            { tag: "ready and available", ready: true, intel: true, calls: ["refreshWorkspaceTemplates()"] },
            { tag: "gone", ready: true, intel: false, calls: [] },
            { tag: "not ready", ready: false, intel: true, calls: [] }
        ];
    }
    function test_templatesAreRequested(data) {
        sdk.ready = data.ready;
        sdk.workspaceIntelAvailable = !data.intel;
        sdk.takeCalls();
        sdk.workspaceIntelAvailable = data.intel;
        compare(sdk.takeCalls(), data.calls);
    }

    function test_workspacesAreMerged() {
        sdk.workspaceTemplatesListed([workspace(7, "meeting", "active")]);
        compare(enabledRows(), ["meeting"]);
        compare(templates.workspaceTemplateCatalog.map(row => row.workspaceId), [0, 7, 0]);
        compare(templates.workspaceTemplateCatalog[1].name, "Workspace 7");
        // The next list replaces it.
        sdk.workspaceTemplatesListed([]);
        compare(templates.workspaceTemplateCatalog, templates.workspaceTemplateCatalogBase);
        compare(sdk.takeCalls(), []);
    }

    //! The switch shows the state of the bridge, which is then asked to follow the preference.
    function test_preferenceTurnsAWorkspaceOn() {
        prefer(["meeting", "research", "focus-dev"]);
        sdk.workspaceTemplatesListed([workspace(7, "meeting", "paused"), workspace(8, "focus-dev", "active")]);
        compare(enabledRows(), ["focus-dev", "research"]);
        compare(sdk.takeCalls(), ["setWorkspaceTemplateEnabled(meeting, true, 7)"]);
        sdk.workspaceTemplatesListed([workspace(7, "meeting", "active"), workspace(8, "focus-dev", "active")]);
        compare(enabledRows(), ["focus-dev", "meeting", "research"]);
        compare(sdk.takeCalls(), []);
    }

    function test_bridgeThatNeverEnables_data() {
        return [
            { tag: "new connection", again: () => { sdk.ready = false; sdk.ready = true; } },
            { tag: "switched again", again: () => templates.setWorkspaceTemplateEnabled("meeting", true) },
            { tag: "enabled in between", again: () => sdk.workspaceTemplatesListed([workspace(7, "meeting", "active")]) }
        ];
    }
    function test_bridgeThatNeverEnables(data) {
        prefer(["meeting"]);
        const answer = () => sdk.workspaceTemplatesListed([workspace(7, "meeting", "paused")]);
        for (let i = 0; i < 10; ++i)
            answer();
        compare(sdk.takeCalls().length, 3);
        data.again();
        sdk.takeCalls();
        answer();
        compare(sdk.takeCalls(), ["setWorkspaceTemplateEnabled(meeting, true, 7)"]);
    }

    function test_preferenceNeverTurnsAWorkspaceOff() {
        sdk.workspaceTemplatesListed([workspace(7, "meeting", "active")]);
        compare(enabledRows(), ["meeting"]);
        compare(sdk.takeCalls(), []);
        compare(config.takeCalls(), []);
    }

    function test_noSyncWithoutABridge_data() {
        return [
            { tag: "not ready", values: { "ready": false } },
            { tag: "not available", values: { "workspaceIntelAvailable": false } }
        ];
    }
    function test_noSyncWithoutABridge(data) {
        prefer(["meeting"]);
        Object.assign(sdk, data.values);
        templates.mergeWorkspaceTemplatesFromBridge([workspace(7, "meeting", "paused")]);
        compare(sdk.takeCalls(), []);
        templates.setWorkspaceTemplateEnabled("meeting", true);
        compare(sdk.takeCalls(), []);
        compare(enabledRows(), ["meeting"]);
    }

    function test_turnsOnAndOff() {
        sdk.workspaceTemplatesListed([workspace(7, "meeting", "paused")]);
        templates.setWorkspaceTemplateEnabled("meeting", true);
        compare(config.takeCalls(), ["setWorkspaceTemplateSlugEnabled(meeting, true)", "save()"]);
        compare(enabledRows(), ["meeting"]);
        compare(sdk.takeCalls(), ["setWorkspaceTemplateEnabled(meeting, true, 7)"]);
        templates.setWorkspaceTemplateEnabled("meeting", false);
        compare(config.takeCalls(), ["setWorkspaceTemplateSlugEnabled(meeting, false)", "save()"]);
        compare(enabledRows(), []);
        compare(sdk.takeCalls(), ["setWorkspaceTemplateEnabled(meeting, false, 7)"]);
        // Without a workspace, the bridge gets the slug alone.
        templates.setWorkspaceTemplateEnabled("research", true);
        compare(sdk.takeCalls(), ["setWorkspaceTemplateEnabled(research, true, 0)"]);
        config.takeCalls();
        templates.setWorkspaceTemplateEnabled("unknown", true);
        compare(config.takeCalls().concat(sdk.takeCalls()), []);
    }

    function test_hintAboutDesktopTools_data() {
        const hint = "<Turn on desktop actions to apply templates.>";
        return [
            { tag: "on without tools", on: true, tools: false, message: hint },
            { tag: "on with tools", on: true, tools: true, message: "" },
            { tag: "off without tools", on: false, tools: false, message: "" }
        ];
    }
    function test_hintAboutDesktopTools(data) {
        sdk.executorPathEnabled = data.tools;
        templates.switchWorkspaceTemplate("meeting", data.on);
        compare(bar.modelsStatusMessage, data.message);
        compare(sdk.takeCalls(), ["setWorkspaceTemplateEnabled(meeting, " + data.on + ", 0)"]);
    }

    function test_prepare_data() {
        const all = { "ready": true, "workspaceIntelAvailable": true, "executorPathEnabled": true };
        const but = values => Object.assign({}, all, values);
        return [
            { tag: "off", sdk: all, status: "paused", id: 7, message: "<Enable the template first.>" },
            { tag: "not ready", sdk: but({ "ready": false }), status: "active", id: 7,
              message: "<Workspace templates require LOOMRA_WORKSPACE_INTEL=1 on the bridge.>" },
            { tag: "not available", sdk: but({ "workspaceIntelAvailable": false }), status: "active", id: 7,
              message: "<Workspace templates require LOOMRA_WORKSPACE_INTEL=1 on the bridge.>" },
            { tag: "no tools", sdk: but({ "executorPathEnabled": false }), status: "active", id: 7,
              message: "<Turn on desktop actions to prepare this template.>" },
            { tag: "no workspace", sdk: all, status: "active", id: 0,
              message: "<Template not ready yet — enable WI and restart the bridge.>" },
            { tag: "possible", sdk: all, status: "active", id: 7, message: "<Preparing Workspace 7…>",
              calls: ["prepareWorkspaceTemplate(7, prepare meeting)"] }
        ];
    }
    function test_prepare(data) {
        templates.mergeWorkspaceTemplatesFromBridge([workspace(data.id, "meeting", data.status)]
                                                    .map(row => Object.assign(row, { "name": "Workspace 7" })));
        Object.assign(sdk, data.sdk);
        sdk.takeCalls();
        templates.prepareWorkspaceTemplate("meeting");
        compare(templates.workspaceTemplateStatusMessage, data.message);
        compare(sdk.takeCalls(), data.calls || []);
    }

    function test_failureEndsThePreparation_data() {
        return [
            { tag: "error", fail: () => sdk.error("no server"), message: "no server" },
            { tag: "error without a text", fail: () => sdk.error(""), message: "<Request failed>" },
            { tag: "error of the connection", fail: () => sdk.error("WebSocket error: 1"), message: "<SDK is connecting...>" },
            { tag: "lost connection", fail: () => { sdk.ready = false; }, message: "<SDK is connecting...>" }
        ];
    }
    function test_failureEndsThePreparation(data) {
        templates.mergeWorkspaceTemplatesFromBridge([workspace(7, "meeting", "active")]);
        templates.prepareWorkspaceTemplate("meeting");
        data.fail();
        compare(templates.workspaceTemplateStatusMessage, data.message);
        // The connection that comes back is not a second failure, nor is another request's error.
        sdk.ready = true;
        sdk.error("another");
        compare(templates.workspaceTemplateStatusMessage, data.message);
    }

    function test_otherErrorsAreNotTheirs_data() {
        return [
            { tag: "after the result", status: "active", end: () => sdk.workspaceTemplatePrepareFinished({ "ok": true }), message: "<Prepared <workspace>.>" },
            { tag: "refused", status: "paused", end: () => {}, message: "<Enable the template first.>" }
        ];
    }
    function test_otherErrorsAreNotTheirs(data) {
        templates.mergeWorkspaceTemplatesFromBridge([workspace(7, "meeting", data.status)]);
        templates.prepareWorkspaceTemplate("meeting");
        data.end();
        sdk.error("another");
        sdk.ready = false;
        compare(templates.workspaceTemplateStatusMessage, data.message);
    }

    function test_unknownTemplateIsNotPrepared() {
        templates.prepareWorkspaceTemplate("unknown");
        compare(templates.workspaceTemplateStatusMessage, "");
        compare(sdk.takeCalls(), []);
    }

    function test_prepared() {
        sdk.workspaceTemplatePrepareFinished({ "ok": true, "workspace": { "name": "Meeting" } });
        compare(templates.workspaceTemplateStatusMessage, "<Prepared Meeting.>");
        sdk.workspaceTemplatePrepareFinished({});
        compare(templates.workspaceTemplateStatusMessage, "<Prepared Meeting.>");
        sdk.workspaceTemplatePrepareFinished({ "ok": false, "error": "no app" });
        compare(templates.workspaceTemplateStatusMessage, "no app");
    }
}
