// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../common"
import "../../../../components/logic/LiteralText.js" as LiteralText
import "../../../../components/logic/Translatable.js" as Translatable
import "common"
import "models"

//! The tab for the default model.
Column {
    id: page
    objectName: "modelsTab"

    required property var bar
    required property var theme
    required property SettingsTab tab

    spacing: 10

    SettingsHeading {
        objectName: "modelCount"

        theme: page.theme
        visible: !page.bar.modelsLoading && page.bar.modelsList.length > 0
        text: Translatable.filled(page.bar.tr("{count} models · {free} free"), { "count": page.bar.modelsList.length, "free": page.bar.freeModelsList.length })
    }

    Item {
        width: parent.width
        height: refreshButton.height

        ShortText {
            objectName: "defaultModel"

            anchors.left: parent.left
            anchors.right: refreshButton.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            whole: page.bar.currentModelId === "" ? page.bar.tr("Default model: not set")
                : Translatable.filled(page.bar.tr("Default model: {id}"), { "id": page.bar.currentModelId })
            text: LiteralText.oneLine(whole)
            color: page.theme.uiTextMed
            font.pointSize: 10
        }

        SettingsButton {
            id: refreshButton
            objectName: "refreshModelsBtn"

            anchors.right: parent.right
            theme: page.theme
            label: page.bar.tr("Refresh models")
            onClicked: page.bar.refreshModels()
        }
    }

    FreeCheck {
        width: parent.width
        bar: page.bar
        theme: page.theme
    }

    ModelList {
        width: parent.width
        bar: page.bar
        theme: page.theme
    }

    SettingsStatus {
        objectName: "modelsStatus"

        theme: page.theme
        message: {
            if (page.bar.modelsLoading)
                return page.bar.tr("Loading models...");
            return page.bar.modelsStatusMessage;
        }
    }

    SettingsButton {
        objectName: "setDefaultModelBtn"

        anchors.left: parent.left
        theme: page.theme
        enabled: page.bar.pendingDefaultModelId !== ""
        label: page.bar.tr("Set selected as default")
        onClicked: page.bar.applyPendingDefaultModel()
    }
}
