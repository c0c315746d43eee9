// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Dashboard.js" as Dashboard
import "../logic/DashboardText.js" as DashboardText
import "../../../../components/logic/Native.js" as Native

//! The health and the jobs of the AI runtime, and pending reminders. Intentional: no control shows most of it.
Controller {
    id: runtime

    property string runtimeMode: "embedded"
    //! 0 if unknown.
    property real runtimePid: 0
    property bool runtimeConnected: false
    //! "" before the first report.
    property string runtimeHealthLine: ""
    //! Rows with jid, jkind, jstate and jerror.
    property var runtimeJobs: []
    //! Rows with rid, rtitle, rmessage, rfireAt (ms since 1970) and rremainingMs.
    property var reminders: []
    property string remindersStatus: ""

    Connections {
        target: runtime.bar.sdk

        function onRuntimeHealthUpdated(payload) {
            Dashboard.assign(runtime, Dashboard.values("runtimeHealth", payload));
            runtime.runtimeHealthLine = DashboardText.runtimeLine(runtime.runtimeMode, runtime.runtimePid, runtime.runtimeConnected, runtime.bar.tr);
        }
        function onRuntimeJobsUpdated(jobs) {
            Dashboard.assign(runtime, { "runtimeJobs": Dashboard.jobRows(jobs) });
        }
        function onRemindersListed(list) {
            Dashboard.assign(runtime, { "reminders": Dashboard.reminderRows(list, runtime.bar.tr("Reminder")) });
            runtime.remindersStatus = DashboardText.remindersStatus(runtime.reminders.length, runtime.bar.tr);
        }
        function onReminderCancelled() {
            Native.call(runtime.bar.sdk, "reminderList");
        }
    }
}
