// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "common"
import "system"

//! The tab with the live dashboard of the bridge and its service. It is polled while this page exists, but not while the
//! window is a bubble.
Column {
    id: page
    objectName: "systemTab"

    required property var bar
    required property var theme
    required property SettingsTab tab

    spacing: 10
    Component.onCompleted: {
        if (!bar.compactMode)
            bar.dashboardPageCreated();
    }
    Component.onDestruction: {
        // Null if the window is destroyed with the page.
        if (bar)
            bar.dashboardPageDestroyed();
    }

    Connections {
        target: page.bar

        function onCompactModeChanged() {
            if (page.bar.compactMode)
                page.bar.leaveDashboard();
            else if (page.bar.settingsPanelOpen && page.tab.current) // not a page that is going to be deleted
                page.bar.dashboardPageCreated();
        }
    }

    HealthBanner {
        width: parent.width
        bar: page.bar
        theme: page.theme
    }

    SettingsHeading {
        theme: page.theme
        isSection: true
        text: page.bar.tr("Process & Memory")
    }

    MemoryGrid {
        width: parent.width
        bar: page.bar
        theme: page.theme
    }

    SettingsHeading {
        theme: page.theme
        isSection: true
        text: page.bar.tr("Feedback")
    }

    FeedbackRow {
        anchors.left: parent.left
        bar: page.bar
        theme: page.theme
    }

    SettingsHeading {
        theme: page.theme
        isSection: true
        text: page.bar.tr("Background Errors & Warnings")
    }

    LogCounts {
        width: parent.width
        bar: page.bar
        theme: page.theme
    }

    LogList {
        bar: page.bar
        theme: page.theme
    }

    SettingsHeading {
        theme: page.theme
        isSection: true
        text: page.bar.tr("Service")
    }

    ServiceRow {
        width: parent.width
        bar: page.bar
        theme: page.theme
    }

    PowerProfiles {
        width: parent.width
        bar: page.bar
        theme: page.theme
    }

    Row {
        anchors.left: parent.left
        spacing: 8

        SettingsButton {
            objectName: "refreshRuntimeBtn"

            theme: page.theme
            label: page.bar.tr("Refresh runtime")
            onClicked: page.bar.refreshRuntimePanels()
        }

        SettingsButton {
            objectName: "openLogsBtn"

            theme: page.theme
            label: page.bar.tr("Open logs")
            onClicked: page.bar.openLogs()
        }
    }
}
