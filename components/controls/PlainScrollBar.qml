// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T

//! A thin vertical scroll bar, which is visible while there is something to scroll.
T.ScrollBar {
    id: scrollBar

    required property color thumbColor
    property color trackColor: "transparent"

    implicitWidth: 6
    minimumSize: 0.08
    policy: T.ScrollBar.AsNeeded
    visible: size < 1.0
    Accessible.role: Accessible.ScrollBar

    background: Rectangle {
        radius: 2
        color: scrollBar.trackColor
    }
    contentItem: Rectangle {
        radius: 2
        color: scrollBar.thumbColor
    }
}
