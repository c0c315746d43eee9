// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Tells screen readers about a change that has no focus, such as the end of a recording. Not visible.
//!
//! Screen readers speak a notification when it appears. It isn't an alert, because Orca ignores those of Qt programs.
Item {
    property int latest: 0

    function announce(text) {
        announcements.itemAt(latest).visible = false;
        latest = (latest + 1) % announcements.count;
        const announcement = announcements.itemAt(latest);
        announcement.Accessible.name = text;
        announcement.visible = text !== "";
    }

    // Several, because screen readers ask for the name a while after the event, when there may be a newer announcement.
    Repeater {
        id: announcements
        model: 3

        Item {
            objectName: "announcement"
            visible: false
            Accessible.role: Accessible.Notification
        }
    }
}
