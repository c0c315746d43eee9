// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../omnibar/settings/common"
import "ValidationText.js" as ValidationText

//! The choice of the engine, and how to install those that are missing.
Column {
    id: box

    required property var validation
    required property var theme

    spacing: 6

    SettingsHeading {
        id: heading

        theme: box.theme
        isSection: true
        text: box.validation.tr("Engine")
    }

    SettingsComboBox {
        id: engines
        objectName: "engineBox"

        readonly property int wantedIndex: model.findIndex(row => row.value === box.validation.backend)

        width: parent.width
        theme: box.theme
        enabled: Boolean(box.validation.voice)
        opacity: enabled ? 1 : 0.5
        model: box.validation.engineRows
        // The settings may name an engine that isn't installed.
        displayText: currentIndex >= 0 ? currentText
                   : box.validation.voice ? ValidationText.missingEngine(box.validation.backend, box.validation.tr) : ""
        Accessible.name: heading.text
        onActivated: {
            box.validation.chooseBackend(currentValue);
            // It may have been refused.
            currentIndex = wantedIndex;
        }
        onWantedIndexChanged: currentIndex = wantedIndex
        onModelChanged: currentIndex = wantedIndex
        Component.onCompleted: currentIndex = wantedIndex

        HoverTip {
            control: engines
            text: engines.displayText
            enabledHere: engines.contentItem.truncated
        }
    }

    SettingsCaption {
        objectName: "engineHints"

        theme: box.theme
        text: ValidationText.engineHints(box.validation.voice)
    }
}
