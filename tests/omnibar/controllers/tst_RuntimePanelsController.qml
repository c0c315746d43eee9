// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

TestCase {
    id: test
    name: "RuntimePanelsController"

    property FakeBar bar
    property FakeSdk sdk
    property RuntimePanelsController panels

    Component { id: bars; FakeBar {} }
    Component { id: sdks; FakeSdk {} }
    Component { id: controllers; RuntimePanelsController {} }

    function init() {
        sdk = createTemporaryObject(sdks, test, { "workspaceIntelAvailable": true, "aiRuntimeAvailable": true });
        bar = createTemporaryObject(bars, test, { "sdk": sdk });
        panels = createTemporaryObject(controllers, test, { "bar": bar });
    }

    function test_firstValues() {
        compare(panels.wiObservationEnabled, true);
        compare(panels.wiDwellSummaryText, "");
        compare(panels.aiRuntimeEnabledUi, true);
        compare(panels.aiRuntimeGatingIndex, 0);
        compare(panels.aiRuntimeStatusLine, "");
    }

    function test_withoutAClient() {
        bar.sdk = null;
        panels.refreshRuntimePanels();
        panels.loadFromBridge();
        panels.setObservationEnabled(false);
        compare(panels.wiObservationEnabled, true);
        compare(bar.takeCalls(), []);
    }

    function test_start_data() {
        return [
            { tag: "ready", client: {}, bar: ["refreshModels()"], sdk: ["refreshWorkspaceTemplates()"] },
            { tag: "no workspaces", client: { "workspaceIntelAvailable": false }, bar: ["refreshModels()"], sdk: [] },
            { tag: "not ready", client: { "ready": false }, bar: [], sdk: [] }
        ];
    }
    function test_start(data) {
        Object.assign(sdk, data.client);
        panels.loadFromBridge();
        compare(bar.takeCalls(), data.bar);
        compare(sdk.takeCalls(), data.sdk);
    }

    function test_refresh_data() {
        const always = ["refreshRuntimeHealth()", "refreshRuntimeJobs()", "refreshPowerProfile()", "reminderList()"];
        return [
            { tag: "all", client: {},
              sdk: ["refreshWorkspaceTemplates()", "refreshWorkspaceIntelPanel()", "refreshAiRuntimePanel()"].concat(always) },
            { tag: "no workspaces", client: { "workspaceIntelAvailable": false }, sdk: ["refreshAiRuntimePanel()"].concat(always) },
            { tag: "no runtime", client: { "aiRuntimeAvailable": false },
              sdk: ["refreshWorkspaceTemplates()", "refreshWorkspaceIntelPanel()"].concat(always) },
            { tag: "not ready", client: { "ready": false }, sdk: [] }
        ];
    }
    function test_refresh(data) {
        Object.assign(sdk, data.client);
        panels.refreshRuntimePanels();
        compare(sdk.takeCalls(), data.sdk);
    }

    function test_openSheetIsRefreshed_data() {
        return [
            { tag: "ready", name: "ready" },
            { tag: "workspaces", name: "workspaceIntelAvailable" },
            { tag: "runtime", name: "aiRuntimeAvailable" }
        ];
    }
    function test_openSheetIsRefreshed(data) {
        sdk[data.name] = false;
        wait(0);
        compare(bar.takeCalls(), []); // the sheet is closed
        bar.settingsPanelOpen = true;
        sdk[data.name] = true;
        compare(bar.takeCalls(), []); // queued
        tryVerify(() => bar.calls.length > 0);
        compare(bar.takeCalls(), ["refreshRuntimePanels()"]);
    }

    function test_refreshesAreJoined() {
        bar.settingsPanelOpen = true;
        sdk.ready = false;
        sdk.ready = true;
        sdk.workspaceIntelAvailable = false;
        sdk.aiRuntimeAvailable = false;
        tryVerify(() => bar.calls.length > 0);
        compare(bar.takeCalls(), ["refreshRuntimePanels()"]);
    }

    function test_intelPanel() {
        sdk.workspaceIntelPanelUpdated({ "observationEnabled": false, "dwellSummary": { "topApp": "Editor", "topAppHours": 2, "uniqueApps": 3 } });
        compare(panels.wiObservationEnabled, false);
        compare(panels.wiDwellSummaryText, "<Top app: Editor (2h tracked). 3 apps in window.>");
        sdk.workspaceIntelPanelUpdated({ "observationEnabled": "true" });
        compare(panels.wiObservationEnabled, true);
        compare(panels.wiDwellSummaryText, "<Dwell data builds from app open/close events while observation is on.>");
    }

    function test_runtimePanel() {
        sdk.aiRuntimePanelUpdated({ "state": "idle", "settings": { "runtimeEnabled": false, "executionGating": "off" },
                                    "gateStatus": { "executionsThisHour": 1, "maxPerHour": 20 } });
        compare(panels.aiRuntimeEnabledUi, false);
        compare(panels.aiRuntimeGatingIndex, 2);
        compare(panels.aiRuntimeStatusLine, "<State: idle · executions this hour: 1/20>");
        sdk.aiRuntimePanelUpdated({ "settings": { "runtimeEnabled": true, "executionGating": "auto_safe" } });
        compare(panels.aiRuntimeEnabledUi, true);
        compare(panels.aiRuntimeGatingIndex, 1);
        // Without settings they stay.
        sdk.aiRuntimePanelUpdated({ "state": "idle", "settings": null });
        compare(panels.aiRuntimeEnabledUi, true);
        compare(panels.aiRuntimeGatingIndex, 1);
        compare(panels.aiRuntimeStatusLine, "<State: idle · executions this hour: ?/?>");
        sdk.aiRuntimePanelUpdated({ "settings": {} });
        compare(panels.aiRuntimeEnabledUi, false);
        compare(panels.aiRuntimeGatingIndex, 0);
    }

    function test_setters_data() {
        return [
            { tag: "observation", set: () => panels.setObservationEnabled(false), property: "wiObservationEnabled", value: false,
              call: "setWorkspaceIntelObservationEnabled(false)" },
            { tag: "runtime", set: () => panels.setAiRuntimeEnabled(false), property: "aiRuntimeEnabledUi", value: false,
              call: "setAiRuntimeEnabled(false)" },
            { tag: "auto-safe", set: () => panels.setAiRuntimeGating(1), property: "aiRuntimeGatingIndex", value: 1,
              call: "setAiRuntimeExecutionGating(auto_safe)" },
            { tag: "gating off", set: () => panels.setAiRuntimeGating(2), property: "aiRuntimeGatingIndex", value: 2,
              call: "setAiRuntimeExecutionGating(off)" }
        ];
    }
    function test_setters(data) {
        const before = panels[data.property];
        sdk.ready = false;
        data.set();
        compare(panels[data.property], before);
        compare(sdk.takeCalls(), []);
        sdk.ready = true;
        data.set();
        compare(panels[data.property], data.value);
        compare(sdk.takeCalls(), [data.call]);
    }

    function test_mapGatingToIndex() {
        compare(["require_approval", "auto_safe", "off", ""].map(mode => panels.mapGatingToIndex(mode)), [0, 1, 2, 0]);
    }
}
