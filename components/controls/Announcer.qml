// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Tells screen readers about a change that has no focus, such as the end of a recording. Not visible. Screen readers
//! speak an alert when it appears.
Item {
    id: announcer

    function announce(text) {
        visible = false;
        Accessible.name = text;
        visible = text !== "";
    }

    visible: false
    Accessible.role: Accessible.AlertMessage
}
