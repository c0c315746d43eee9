// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../common"

//! Whether the bridge observes how apps are used, and what it has learned.
Column {
    id: learning

    required property var bar
    required property var theme
    //! Whether the bridge has workspaces.
    required property bool available

    width: parent.width
    spacing: 8

    SettingsHeading {
        theme: learning.theme
        isSection: true
        text: learning.bar.tr("Pattern learning (R&D)")
    }

    SettingsCaption {
        objectName: "learningUnavailable"

        visible: !learning.available
        theme: learning.theme
        text: learning.bar.tr("Not available. Start the app with LOOMRA_WORKSPACE_INTEL=1.")
    }

    StateSwitch {
        objectName: "observationSwitch"

        visible: learning.available
        theme: learning.theme
        label: learning.bar.tr("Observe activity")
        on: learning.bar.wiObservationEnabled
        onSwitched: learning.bar.setObservationEnabled(on)
    }

    SettingsStatus {
        objectName: "dwellSummary"

        visible: learning.available
        theme: learning.theme
        message: learning.bar.wiDwellSummaryText || learning.bar.tr("Open settings again to load dwell summary.")
    }
}
