// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Dashboard.js" as Dashboard
import "../logic/DashboardText.js" as DashboardText
import "../../../../components/logic/ListSync.js" as ListSync
import "../../../../components/logic/Native.js" as Native

//! The reports of the bridge on itself and its service, which are polled while the System tab is shown.
Controller {
    id: dashboard

    // Memory in MB
    property real dashSessionHeapMb: 0
    property real dashSessionHeapTotalMb: 0
    property real dashBridgeRssMb: 0
    property real dashBridgeExternalMb: 0
    property real dashToviServiceMb: 0
    property real dashCpuPercent: 0
    property real dashUptimeMs: 0

    // Requests
    property real dashReqCount: 0
    property real dashActionCount: 0
    property real appErrorCount: 0
    property real appAvgLatencyMs: 0
    property real appP95LatencyMs: 0
    property real appLastRequestMs: 0

    property real dashFeedbackLikes: 0
    property real dashFeedbackDislikes: 0
    property real dashFeedbackTotal: 0

    // Errors and warnings: those of the dashboard, and those of whichever report came last. Times are in ms since 1970,
    // 0 for never; directions are "up", "down" or "stable".
    property real dashErrorTotal: 0
    property real dashWarnTotal: 0
    property string dashErrorDir: "stable"
    property string dashWarnDir: "stable"
    property real appLogErrors: 0
    property real appLogWarnings: 0
    property real appLastErrorTs: 0
    property real appLastWarnTs: 0
    //! Rows with level, message and ts, oldest first.
    property var dashLogEntries: []
    //! Rows with level, event, message and ts, oldest first.
    property var appLogEntries: []
    //! The rows of dashLogEntries for a view, which keeps its place when they change.
    readonly property ListModel dashLogRows: ListModel {
        objectName: "dashLogRows"
    }
    property var listedRows: []

    // The user service of the bridge
    property string serviceActive: "unknown"
    property string serviceSub: "unknown"
    property string serviceEnabled: "unknown"
    property real serviceUptimeSec: 0
    property real serviceRestarts: 0
    property real serviceMemoryMB: 0

    property string powerProfileActive: ""
    //! Names.
    property var powerProfileAvailable: []

    property var systemReportData: ({})
    property bool systemReportLoading: false

    property bool dashboardPolling: false
    //! The current time in ms since 1970, as of the last tick.
    property real dashNow: 0

    readonly property var dashState: ({
        "bridgeStatus": bar.bridgeStatus,
        "errors": appLogErrors,
        "warnings": appLogWarnings
    })
    readonly property bool dashNeedsAttention: DashboardText.needsAttention(dashState)

    //! Opens a directory in the file manager.
    property var openDirectory: path => Qt.openUrlExternally(Dashboard.directoryUrl(path))

    property Timer dashPollTimer: Timer {
        objectName: "dashPollTimer"
        interval: 4000
        repeat: true
        running: dashboard.dashboardPolling
        onTriggered: dashboard.poll()
    }

    //! While the bridge can't be used, a request would only fail, and the error would be taken for another request's.
    function poll() {
        dashNow = Date.now();
        if (isReady())
            Native.call(bar.sdk, "getSystemDashboard");
    }

    function refreshPowerProfile() {
        if (isReady())
            Native.call(bar.sdk, "refreshPowerProfile");
    }

    function enterDashboard() {
        dashboardPolling = true;
        poll();
        refreshPowerProfile();
    }

    function leaveDashboard() {
        dashboardPolling = false;
    }

    //! Intentional: entering the tab calls twice, here and in enterDashboard(). When the sheet is opened with this tab,
    //! only its page is created.
    function dashboardPageCreated() {
        dashboardPolling = true;
        systemReportLoading = isReady();
        poll();
    }

    function dashboardPageDestroyed() {
        dashboardPolling = false;
    }

    function choosePowerProfile(name) {
        if (name !== powerProfileActive)
            bar.sendToBridge("switch to " + name + " power profile");
    }

    function reconnectBridge() {
        Native.call(bar.sdk, "reconnectBridge");
    }

    function openLogs() {
        openDirectory(Native.call(bar.sdk, "eventLogDir") || Dashboard.fallbackLogDirectory);
    }

    function take(kind, report) {
        Dashboard.assign(dashboard, Dashboard.values(kind, report));
    }

    onDashLogEntriesChanged: {
        const rows = Dashboard.modelRows(dashLogEntries);
        ListSync.update(dashLogRows, listedRows, rows, "lkey");
        listedRows = rows;
    }

    // Intentional: quickStatusReceived is ignored, because the severity of the host says nothing about the bridge.
    Connections {
        target: dashboard.bar.sdk

        function onSystemDashboardReceived(report) {
            dashboard.systemReportLoading = false;
            dashboard.take("dashboard", report);
        }
        function onSystemReportReceived(report) {
            dashboard.systemReportLoading = false;
            dashboard.take("systemReport", report);
            Dashboard.assign(dashboard, { "systemReportData": report });
        }
        function onAppLogSummaryReceived(report) {
            dashboard.take("appLogSummary", report);
        }
        function onAppMetricsReceived(report) {
            dashboard.take("appMetrics", report);
        }
        function onServiceHealthReceived(report) {
            dashboard.take("serviceHealth", report);
        }
        function onPowerProfileReceived(report) {
            dashboard.take("powerProfile", report);
        }
        function onError(error) {
            dashboard.systemReportLoading = false;
        }
        function onReadyChanged() {
            // A lost connection takes the open request with it.
            dashboard.systemReportLoading = false;
        }
    }
}
