// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! The sections below "Advanced options". Those that the bridge doesn't offer are left out.
Column {
    id: advanced
    objectName: "advancedOptions"

    required property var bar
    required property var theme

    readonly property bool hasIntel: Boolean(bar.sdk && bar.sdk.workspaceIntelAvailable)
    readonly property bool hasRuntime: Boolean(bar.sdk && bar.sdk.aiRuntimeAvailable)

    spacing: 16

    PatternLearning {
        bar: advanced.bar
        theme: advanced.theme
        available: advanced.hasIntel
    }

    LateLoader {
        width: parent.width
        visible: wanted
        file: Qt.resolvedUrl("AiRuntime.qml")
        properties: ({ "bar": advanced.bar, "theme": advanced.theme })
        wanted: advanced.hasRuntime
        kept: false
    }

    LateLoader {
        width: parent.width
        visible: wanted
        file: Qt.resolvedUrl("SuggestionReminders.qml")
        properties: ({ "bar": advanced.bar, "theme": advanced.theme })
        wanted: advanced.hasIntel && advanced.hasRuntime
        kept: false
    }
}
