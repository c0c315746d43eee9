// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

TestCase {
    id: test
    name: "ModelsController"

    property FakeBar bar
    property FakeSdk sdk
    property ModelsController models

    readonly property var three: [{ "id": "a", "fullId": "p/a" }, { "id": "b-free", "fullId": "p/b-free" }, { "id": "c", "fullId": "q/c", "displayName": "Third" }]

    Component { id: bars; FakeBar {} }
    Component { id: clients; FakeSdk {} }
    Component { id: controllers; ModelsController {} }
    Component { id: spies; SignalSpy {} }
    Component {
        id: bridges

        QtObject {
            property string status: "idle"
            property string currentModel: ""
        }
    }

    SignalSpy {
        id: spy
        signalName: "rowRequested"
    }

    function init() {
        bar = createTemporaryObject(bars, test);
        sdk = createTemporaryObject(clients, test);
        bar.bridge = createTemporaryObject(bridges, test);
        bar.sdk = sdk;
        models = createTemporaryObject(controllers, test, { "bar": bar });
        spy.target = models;
        spy.clear();
    }

    function listed() {
        const ids = [];
        for (let i = 0; i < models.settingsModelsListModel.count; ++i)
            ids.push(models.settingsModelsListModel.get(i).mfullId);
        return ids;
    }
    function currentModels() {
        return [bar.currentModelId, bar.bridge.currentModel, sdk.currentModel];
    }

    // ---- Loading

    function test_withoutAClient() {
        bar.sdk = null;
        models.refreshModels();
        models.syncSettingsCombos();
        models.selectSettingsModel({ "id": "a" });
        compare([models.modelsLoading, models.modelsStatusMessage, bar.currentModelId], [false, "<SDK is connecting...>", "a"]);
    }

    function test_beforeTheClientIsReady() {
        sdk.ready = false;
        sdk.takeCalls();
        models.refreshModels();
        compare([models.modelsLoading, models.modelsStatusMessage], [false, "<SDK is connecting...>"]);
        compare(sdk.calls, []);
    }

    function test_listIsRequested() {
        models.modelsStatusMessage = "old";
        models.refreshModels();
        compare([models.modelsLoading, models.modelsStatusMessage], [true, ""]);
        compare(sdk.calls, ["listModels()"]);
    }

    function test_list() {
        models.refreshModels();
        sdk.modelsListed(three);
        compare([models.modelsLoading, models.modelsStatusMessage], [false, ""]);
        compare(models.modelsList.map(row => row.name), ["a", "b-free", "Third"]);
        compare(models.freeModelsList.map(row => row.id), ["b-free"]);
        compare(listed(), ["p/a", "p/b-free", "q/c"]);
        const row = models.settingsModelsListModel.get(1);
        compare([row.mid, row.mname, row.mfree], ["b-free", "b-free", true]);
        tryVerify(() => bar.calls.includes("syncSettingsCombos()"));
    }

    function test_errorEndsLoading_data() {
        return [{ tag: "text", error: "no server", message: "no server" }, { tag: "no text", error: "", message: "<Request failed>" }];
    }
    function test_errorEndsLoading(data) {
        models.refreshModels();
        sdk.error(data.error);
        compare([models.modelsLoading, models.modelsStatusMessage], [false, data.message]);
    }

    function test_errorOfAnotherRequestIsNotTheirs() {
        sdk.error("another");
        compare(models.modelsStatusMessage, "");
    }

    function test_lostConnectionEndsLoading() {
        models.refreshModels();
        sdk.ready = false;
        compare([models.modelsLoading, models.modelsStatusMessage], [false, "<SDK is connecting...>"]);
    }

    // ---- A server that is still starting

    function test_emptyListsAreRetried() {
        models.refreshModels();
        sdk.modelsListed([]);
        compare([models.modelsRetryAttempts, models.modelsLoading, models.modelsStatusMessage], [1, true, ""]);
        sdk.modelsListed([]);
        compare([models.modelsRetryAttempts, models.modelsLoading, models.modelsStatusMessage], [2, true, ""]);
        sdk.modelsListed([]);
        compare([models.modelsRetryAttempts, models.modelsLoading, models.modelsStatusMessage], [2, false, "<No models found for current provider.>"]);
        compare(sdk.calls, ["listModels()", "listModels()", "listModels()"]);
    }

    function test_listAfterARetry() {
        models.refreshModels();
        sdk.modelsListed([]);
        sdk.modelsListed(three);
        compare([models.modelsLoading, models.modelsStatusMessage, listed().length], [false, "", 3]);
    }

    function test_noRetryWithoutAConnection() {
        models.refreshModels();
        sdk.ready = false;
        sdk.takeCalls();
        sdk.modelsListed([]);
        compare([models.modelsLoading, models.modelsStatusMessage], [false, "<No models found for current provider.>"]);
        compare(sdk.calls, []);
    }

    function test_newConnectionStartsAgain() {
        for (let i = 0; i < 3; ++i)
            sdk.modelsListed([]);
        sdk.ready = false;
        sdk.takeCalls();
        sdk.ready = true;
        compare([models.modelsRetryAttempts, models.modelsLoading], [0, true]);
        compare(sdk.calls, ["listModels()"]);
    }

    // ---- The current model

    function test_firstModelIsAdopted() {
        sdk.modelsListed(three);
        compare(currentModels(), ["p/a", "p/a", "p/a"]);
        compare(models.pendingDefaultModelId, "p/a");
    }

    function test_onlyModelIsAdopted() {
        sdk.modelsListed([three[1]]);
        compare(currentModels(), ["p/b-free", "p/b-free", "p/b-free"]);
    }

    function test_bridgesModelIsAdopted() {
        bar.bridge.currentModel = "q/c";
        sdk.modelsListed(three);
        compare(currentModels(), ["q/c", "q/c", "q/c"]);
    }

    function test_currentModelStays() {
        bar.currentModelId = "gone/model";
        sdk.modelsListed(three);
        compare(currentModels(), ["gone/model", "", ""]);
        compare(models.pendingDefaultModelId, "gone/model");
    }

    function test_emptyListAdoptsNothing() {
        sdk.modelsListed([]);
        compare(currentModels(), ["", "", ""]);
        compare(models.pendingDefaultModelId, "");
    }

    function test_pendingModelStays() {
        models.pendingDefaultModelId = "q/c";
        sdk.modelsListed(three);
        compare([models.pendingDefaultModelId, bar.currentModelId], ["q/c", "p/a"]);
    }

    function test_select_data() {
        return [{ tag: "full id", model: { "id": "c", "fullId": "q/c" }, id: "q/c" }, { tag: "no full id", model: { "id": "c", "fullId": "" }, id: "c" }];
    }
    function test_select(data) {
        models.selectSettingsModel(data.model);
        compare(models.pendingDefaultModelId, data.id);
        compare(currentModels(), [data.id, data.id, data.id]);
    }

    function test_applyWithoutAChoice() {
        bar.currentModelId = "p/a";
        models.applyPendingDefaultModel();
        compare(bar.currentModelId, "p/a");
    }

    // ---- The list in the sheet

    function test_filter() {
        sdk.modelsListed(three);
        spy.clear();
        models.filterModels(" FREE ");
        compare([models.modelSearchFilter, listed()], [" FREE ", ["p/b-free"]]);
        compare([spy.count, spy.signalArguments[0][0]], [1, -1]);
        // It also applies to the next list.
        sdk.modelsListed(three.concat([{ "id": "d-free", "fullId": "r/d-free" }]));
        compare(listed(), ["p/b-free", "r/d-free"]);
        models.filterModels("");
        compare(listed().length, 4);
        compare(models.modelsList.length, 4);
    }

    // So that the rows keep the focus and their place.
    function test_newListMovesTheRows() {
        sdk.modelsListed(three);
        const moved = createTemporaryObject(spies, test, { "target": models.settingsModelsListModel, "signalName": "rowsMoved" });
        const changed = createTemporaryObject(spies, test, { "target": models.settingsModelsListModel, "signalName": "dataChanged" });
        sdk.modelsListed([three[2], three[0], three[1]]);
        compare(listed(), ["q/c", "p/a", "p/b-free"]);
        compare([moved.count, changed.count], [1, 0]);
    }

    function test_positionOfTheCurrentModel() {
        sdk.modelsListed(three);
        bar.currentModelId = "q/c";
        spy.clear();
        models.syncSettingsCombos();
        compare([spy.count, spy.signalArguments[0][0]], [1, 2]);
        bar.currentModelId = "p/a";
        spy.clear();
        models.syncSettingsCombos();
        compare([spy.count, spy.signalArguments[0][0]], [1, 0]);
        bar.currentModelId = "q/c";
        models.filterModels("free");
        spy.clear();
        models.syncSettingsCombos();
        compare(spy.count, 0);
    }
}
