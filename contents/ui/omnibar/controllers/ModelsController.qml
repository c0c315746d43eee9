// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Native.js" as Native

//! The list of models for the settings sheet.
Controller {
    id: models

    property bool modelsLoading: false
    property string modelsStatusMessage: ""

    function refreshModels() {
        if (!bar.sdk)
            return;
        if (!bar.sdk.ready) {
            // A lost connection takes the open request with it.
            modelsLoading = false;
            modelsStatusMessage = bar.tr("SDK is connecting...");
            return;
        }
        modelsLoading = true;
        modelsStatusMessage = "";
        Native.call(bar.sdk, "listModels");
    }

    //! Selects the current model in the list of the settings sheet. The sheet has no such list yet.
    function syncSettingsCombos() {
        if (!bar.sdk)
            return;
    }

    Connections {
        target: models.bar.sdk

        function onReadyChanged() {
            models.refreshModels();
        }
        function onModelsListed(list) {
            models.modelsLoading = false;
            if (list.length === 0)
                models.modelsStatusMessage = models.bar.tr("No models found for current provider.");
        }
        function onError(error) {
            if (!models.modelsLoading)
                return;
            models.modelsLoading = false;
            models.modelsStatusMessage = error || models.bar.tr("Request failed");
        }
    }
}
