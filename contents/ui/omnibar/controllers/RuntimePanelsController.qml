// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../../../../components/logic/Native.js" as Native
import "../logic/RuntimePanels.js" as RuntimePanels
import "../../../../components/logic/Untrusted.js" as Untrusted

//! What the settings sheet shows of pattern learning and the AI runtime, and when that is requested.
Controller {
    id: panels

    property bool wiObservationEnabled: true
    //! What was learned, "" before the first report.
    property string wiDwellSummaryText: ""
    property bool aiRuntimeEnabledUi: true
    //! The mode with which the AI runtime executes actions, see mapGatingToIndex().
    property int aiRuntimeGatingIndex: 0
    property string aiRuntimeStatusLine: ""

    //! The index of the mode with which the AI runtime executes actions, 0 for unknown ones.
    function mapGatingToIndex(mode) {
        return RuntimePanels.gatingIndex(mode);
    }

    function refreshRuntimePanels() {
        const sdk = bar.sdk;
        if (!isReady())
            return;
        if (sdk.workspaceIntelAvailable) {
            Native.call(sdk, "refreshWorkspaceTemplates");
            Native.call(sdk, "refreshWorkspaceIntelPanel");
        }
        if (sdk.aiRuntimeAvailable)
            Native.call(sdk, "refreshAiRuntimePanel");
        Native.call(sdk, "refreshRuntimeHealth");
        Native.call(sdk, "refreshRuntimeJobs");
        Native.call(sdk, "refreshPowerProfile");
        Native.call(sdk, "reminderList");
    }

    //! Loads the initial data from the bridge at startup.
    function loadFromBridge() {
        if (!isReady())
            return;
        bar.refreshModels();
        if (bar.sdk.workspaceIntelAvailable)
            Native.call(bar.sdk, "refreshWorkspaceTemplates");
    }

    function refreshOpenPanels() {
        if (bar.settingsPanelOpen)
            Qt.callLater(bar.refreshRuntimePanels);
    }

    // The setters show the new value at once. The bridge replies with its settings, which correct it if necessary. Without
    // a bridge nothing changes.

    function setObservationEnabled(on) {
        if (!isReady())
            return;
        wiObservationEnabled = on;
        Native.call(bar.sdk, "setWorkspaceIntelObservationEnabled", on);
    }

    function setAiRuntimeEnabled(on) {
        if (!isReady())
            return;
        aiRuntimeEnabledUi = on;
        Native.call(bar.sdk, "setAiRuntimeEnabled", on);
    }

    function setAiRuntimeGating(index) {
        if (!isReady())
            return;
        aiRuntimeGatingIndex = index;
        Native.call(bar.sdk, "setAiRuntimeExecutionGating", RuntimePanels.gatings[index].value);
    }

    Connections {
        target: panels.bar.sdk

        function onReadyChanged() {
            panels.refreshOpenPanels();
        }
        function onWorkspaceIntelAvailableChanged() {
            panels.refreshOpenPanels();
        }
        function onAiRuntimeAvailableChanged() {
            panels.refreshOpenPanels();
        }
        function onWorkspaceIntelPanelUpdated(payload) {
            panels.wiObservationEnabled = RuntimePanels.isOn(payload.observationEnabled);
            panels.wiDwellSummaryText = RuntimePanels.dwellText(payload.dwellSummary, panels.bar.tr);
        }
        function onAiRuntimePanelUpdated(payload) {
            const settings = payload.settings;
            if (Untrusted.isObject(settings)) {
                panels.aiRuntimeEnabledUi = RuntimePanels.isOn(settings.runtimeEnabled);
                panels.aiRuntimeGatingIndex = panels.mapGatingToIndex(settings.executionGating);
            }
            panels.aiRuntimeStatusLine = RuntimePanels.statusLine(payload, panels.bar.tr);
        }
    }
}
