// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "assistant"
import "common"

//! The tab for desktop tools, workspace templates and, below a button, what the bridge learns and may do on its own.
Column {
    id: assistant
    objectName: "assistantTab"

    required property var bar
    required property var theme
    required property SettingsTab tab

    readonly property bool hasIntel: Boolean(bar.sdk && bar.sdk.workspaceIntelAvailable)

    spacing: 12

    StateSwitch {
        objectName: "toolsSwitch"

        theme: assistant.theme
        label: assistant.bar.tr("Enable desktop tools")
        on: assistant.bar.toolsEnabled
        onSwitched: assistant.bar.setToolsEnabled(on)
    }

    SettingsCaption {
        theme: assistant.theme
        text: assistant.bar.toolsEnabled ? assistant.bar.tr("Actions like move/close window, change settings are enabled.")
                                         : assistant.bar.tr("Enable to allow the assistant to execute desktop actions.")
    }

    SettingsHeading {
        theme: assistant.theme
        isSection: true
        text: assistant.bar.tr("Workspace templates")
    }

    SettingsCaption {
        theme: assistant.theme
        text: assistant.hasIntel
              ? assistant.bar.tr("Pre-made desktop setups. Enable a template, then ask Tovi to prepare it. Desktop actions must be on.")
              : assistant.bar.tr("Preview only until the bridge runs with workspace templates enabled (LOOMRA_WORKSPACE_INTEL=1).")
    }

    Column {
        width: parent.width
        spacing: 8

        Repeater {
            // The number of rows. With the rows themselves, each change would create them again without the focus.
            model: assistant.bar.workspaceTemplateCatalogBase.length

            TemplateRow {
                bar: assistant.bar
                theme: assistant.theme
                available: assistant.hasIntel
            }
        }
    }

    SettingsStatus {
        objectName: "templateStatus"

        theme: assistant.theme
        message: assistant.bar.workspaceTemplateStatusMessage
    }

    SettingsButton {
        objectName: "advancedBtn"

        anchors.left: parent.left
        theme: assistant.theme
        label: assistant.bar.showAdvancedAssistant ? assistant.bar.tr("Hide advanced") : assistant.bar.tr("Advanced options")
        onClicked: assistant.bar.showAdvancedAssistant = !assistant.bar.showAdvancedAssistant
    }

    LateLoader {
        width: parent.width
        visible: wanted
        file: Qt.resolvedUrl("assistant/AdvancedOptions.qml")
        properties: ({ "bar": assistant.bar, "theme": assistant.theme })
        wanted: assistant.bar.showAdvancedAssistant
        kept: false
    }
}
