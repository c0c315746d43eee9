// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Dims the desktop behind the bar; dark in both themes. A click closes the settings sheet.
Rectangle {
    id: scrim
    objectName: "scrim"

    required property var bar

    color: bar.appearanceStore.translucentBackground ? Qt.rgba(0.03, 0.01, 0.06, 0.72) : Qt.rgba(0, 0, 0, 0.85)
    Accessible.ignored: true

    MouseArea {
        anchors.fill: parent
        onClicked: scrim.bar.settingsPanelOpen = false
    }
}
