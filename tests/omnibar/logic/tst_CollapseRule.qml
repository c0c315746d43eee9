// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/CollapseRule.js" as CollapseRule

TestCase {
    name: "CollapseRule"

    function test_collapsesWindow_data() {
        return [
            { tag: "kde_launch_app", collapses: true },
            { tag: "kde_launch", collapses: true },
            { tag: "kde_launch_url", collapses: true },
            { tag: "kde_daemon_start", collapses: true },
            { tag: "kde_set_brightness", collapses: true },
            { tag: "kde_set_volume", collapses: true },
            { tag: "kde_set_volume_step", collapses: true },
            { tag: "kde_lock_screen", collapses: true },
            { tag: "kde_set_wallpaper", collapses: true },
            { tag: "kde-launch-app", collapses: true },
            { tag: "kde-daemon_x", collapses: true },
            { tag: "kde-daemon-x", collapses: true },
            { tag: "kde-set-brightness", collapses: true },
            { tag: "kde-set-volume", collapses: true },
            { tag: "kde-lock-screen", collapses: true },
            { tag: "kde-set-wallpaper", collapses: true },
            { tag: "KDE_Launch_App", collapses: true },
            { tag: "KDE-Set-Volume", collapses: true },
            { tag: "kde_daemon", collapses: false },
            { tag: "kde_get_volume", collapses: false },
            { tag: "kde_set", collapses: false },
            { tag: "my_kde_launch_app", collapses: false },
            { tag: "kde.launch_app", collapses: false },
            { tag: "", collapses: false }
        ];
    }
    function test_collapsesWindow(row) {
        compare(CollapseRule.collapsesWindow(row.tag), row.collapses);
    }

    function test_hostileName() {
        compare(CollapseRule.collapsesWindow("\u0130".repeat(1048576)), false);
    }

    function test_noName() {
        compare(CollapseRule.collapsesWindow(undefined), false);
        compare(CollapseRule.collapsesWindow(null), false);
    }
}
