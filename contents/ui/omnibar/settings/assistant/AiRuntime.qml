// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../logic/RuntimePanels.js" as RuntimePanels
import "../common"

//! The part of the bridge that acts on suggestions.
Column {
    id: runtime

    required property var bar
    required property var theme

    width: parent.width
    spacing: 8

    SettingsHeading {
        theme: runtime.theme
        isSection: true
        text: runtime.bar.tr("AI runtime")
    }

    StateSwitch {
        objectName: "aiRuntimeSwitch"

        theme: runtime.theme
        label: runtime.bar.tr("AI runtime on")
        on: runtime.bar.aiRuntimeEnabledUi
        onSwitched: runtime.bar.setAiRuntimeEnabled(on)
    }

    Item {
        width: parent.width
        height: gating.height

        PlainText {
            id: gatingLabel

            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            text: runtime.bar.tr("Execution gating")
            color: runtime.theme.uiTextMed
            font.pointSize: 10
            Accessible.ignored: true
        }

        SettingsComboBox {
            id: gating
            objectName: "gatingCombo"

            anchors.right: parent.right
            theme: runtime.theme
            model: RuntimePanels.gatingChoices(runtime.bar.tr)
            currentIndex: runtime.bar.aiRuntimeGatingIndex
            Accessible.name: gatingLabel.text
            // Shows the state again, which may not have changed.
            onActivated: {
                runtime.bar.setAiRuntimeGating(index);
                currentIndex = Qt.binding(() => runtime.bar.aiRuntimeGatingIndex);
            }
        }
    }

    SettingsStatus {
        objectName: "aiRuntimeStatus"

        theme: runtime.theme
        message: runtime.bar.aiRuntimeStatusLine
    }
}
