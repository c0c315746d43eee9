// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../../../../components/logic/ListSync.js" as ListSync
import "../logic/Models.js" as Models
import "../../../../components/logic/Native.js" as Native

//! The models of the bridge, and the choice of the default one.
Controller {
    id: models

    //! Rows with id, name, fullId and free, in the bridge's order.
    property var modelsList: []
    property var freeModelsList: []
    property bool modelsLoading: false
    property string modelsStatusMessage: ""
    //! The chosen model; "" if there is none yet.
    property string pendingDefaultModelId: ""
    property string modelSearchFilter: ""
    //! While the server is still starting, its list is empty.
    property int modelsRetryAttempts: 0
    readonly property int maxRetries: 2
    //! The rows of the sheet's list, with the roles mid, mfullId, mname, mfree.
    readonly property ListModel settingsModelsListModel: ListModel {
        objectName: "settingsModelsListModel"
    }
    property var searchableModels: []
    //! What the list model has now.
    property var listedRows: []

    //! The list is to be scrolled to this row, or to its start if that is -1.
    signal rowRequested(int row)

    function refreshModels() {
        if (!isReady()) {
            // A lost connection takes the open request with it.
            modelsLoading = false;
            modelsStatusMessage = bar.tr("SDK is connecting...");
            return;
        }
        modelsLoading = true;
        modelsStatusMessage = "";
        Native.call(bar.sdk, "listModels");
    }

    function take(list) {
        modelsLoading = false;
        modelsList = Models.rows(list);
        freeModelsList = modelsList.filter(model => model.free);
        if (bar.currentModelId === "" && modelsList.length > 0)
            useModel((bar.bridge && bar.bridge.currentModel) || Models.chosenId(modelsList[0]));
        if (pendingDefaultModelId === "")
            pendingDefaultModelId = bar.currentModelId;
        Qt.callLater(bar.syncSettingsCombos);
        if (modelsList.length === 0)
            retry();
    }

    function retry() {
        if (isReady() && modelsRetryAttempts < maxRetries) {
            ++modelsRetryAttempts;
            refreshModels();
        } else {
            modelsStatusMessage = bar.tr("No models found for current provider.");
        }
    }

    function rebuildSettingsModelsListModel() {
        const rows = Models.matching(searchableModels, modelSearchFilter);
        ListSync.update(settingsModelsListModel, listedRows, rows, "mfullId");
        listedRows = rows;
    }

    //! With another filter the list begins at its start again, so nothing of it has to stay in its place.
    function showMatches() {
        const rows = Models.matching(searchableModels, modelSearchFilter);
        ListSync.replace(settingsModelsListModel, 0, listedRows, rows);
        listedRows = rows;
    }

    //! Scrolls the list of the sheet to the current model.
    function syncSettingsCombos() {
        const row = listedRows.findIndex(candidate => candidate.mfullId === bar.currentModelId);
        if (row >= 0)
            rowRequested(row);
    }

    function filterModels(text) {
        modelSearchFilter = text;
        rowRequested(-1);
    }

    //! @param model a row of modelsList
    function selectSettingsModel(model) {
        pendingDefaultModelId = Models.chosenId(model);
        applyPendingDefaultModel();
    }

    function applyPendingDefaultModel() {
        if (pendingDefaultModelId !== "")
            useModel(pendingDefaultModelId);
    }

    function useModel(id) {
        bar.currentModelId = id;
        if (bar.bridge)
            bar.bridge.currentModel = id;
        if (bar.sdk)
            bar.sdk.currentModel = id;
    }

    onModelsListChanged: {
        searchableModels = Models.searchable(modelsList);
        rebuildSettingsModelsListModel();
    }
    onModelSearchFilterChanged: showMatches()

    Connections {
        target: models.bar.sdk

        function onReadyChanged() {
            models.modelsRetryAttempts = 0;
            models.refreshModels();
        }
        function onModelsListed(list) {
            models.take(list);
        }
        function onError(error) {
            if (!models.modelsLoading)
                return;
            models.modelsLoading = false;
            models.modelsStatusMessage = error || models.bar.tr("Request failed");
        }
    }
}
