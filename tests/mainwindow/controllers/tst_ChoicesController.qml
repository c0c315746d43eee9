// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components/mainwindow/controllers"

TestCase {
    id: test
    name: "ChoicesController"

    property var sdk: null
    property var view: null
    property var choices: null

    Component {
        id: sdkComponent
        FakeMainSdk {}
    }
    Component {
        id: viewComponent
        FakeChatView {}
    }
    Component {
        id: configComponent
        QtObject {
            function getAgents() { return { "plan": { description: "My planner" }, "off": { disable: true } }; }
        }
    }
    Component {
        id: controllerComponent
        ChoicesController {}
    }

    readonly property var models: [{ fullId: "p/a", displayName: "A" }, { fullId: "p/b", displayName: "B" }]

    function open(properties) {
        sdk = createTemporaryObject(sdkComponent, test, properties);
        view = createTemporaryObject(viewComponent, test, { sdk: sdk, config: createTemporaryObject(configComponent, test) });
        choices = createTemporaryObject(controllerComponent, test, { chatView: view });
    }

    function init() {
        open({});
    }

    function test_start() {
        compare(sdk.takeCalls(), ["listModels()", "listAgents()"]);
        compare(choices.configAgentsList.map(row => row.id), ["plan"]);
        compare([choices.modelsList, choices.agentsList, choices.currentAgentName], [[], [], ""]);
        compare([choices.modelText, choices.agentText], ["Loading free models...", "Build"]);
    }

    function test_notReady() {
        open({ ready: false });
        compare(sdk.takeCalls(), []);
        compare(choices.modelText, "No free models available");
        sdk.ready = true;
        compare(sdk.takeCalls(), ["listModels()", "listAgents()"]);
        compare(choices.modelText, "Loading free models...");
        sdk.ready = false;
        compare(sdk.takeCalls(), []);
    }

    function test_models() {
        sdk.modelsListed(models);
        compare(choices.modelsList, [{ id: "p/a", name: "A" }, { id: "p/b", name: "B" }]);
        compare([sdk.currentModel, choices.modelText], ["p/a", "A"]);
        choices.chooseModel(1);
        compare([sdk.currentModel, choices.modelText], ["p/b", "B"]);
        // A choice stays, at its new place, until it is gone.
        sdk.modelsListed([{ id: "new" }].concat(models));
        compare([sdk.currentModel, choices.modelIndex, choices.modelText], ["p/b", 2, "B"]);
        sdk.modelsListed([{ id: "new" }]);
        compare([sdk.currentModel, choices.modelIndex, choices.modelText], ["new", 0, "new"]);
    }

    function test_noModels() {
        sdk.modelsListed([]);
        compare([sdk.currentModel, choices.modelText], ["default", "No free models available"]);
    }

    function test_agents() {
        sdk.agentsListed([{ id: "build", name: "Builder" }, { id: "plan", name: "The bridge's" }]);
        compare(choices.agentsList.map(row => row.name), ["My planner", "Builder"]);
        compare([sdk.currentAgent, choices.currentAgentName, choices.agentText], ["plan", "My planner", "My planner"]);
        choices.chooseAgent(1);
        compare([sdk.currentAgent, choices.currentAgentName, choices.agentIndex], ["build", "Builder", 1]);
        sdk.agentsListed([{ id: "x", name: "X" }, { id: "build", name: "Builder" }]);
        compare([sdk.currentAgent, choices.agentIndex], ["build", 2]);
    }

    function test_agentChangedElsewhere() {
        sdk.agentsListed([{ id: "build", name: "Builder" }]);
        sdk.currentAgent = "build";
        compare([choices.currentAgentName, choices.agentIndex], ["Builder", 1]);
        sdk.currentAgent = "unknown";
        compare([choices.currentAgentName, choices.agentText], ["unknown", "unknown"]);
    }

    function test_longAgentName() {
        sdk.currentAgent = "123456789012345678901";
        compare(choices.agentText, "12345678901234567...");
    }

    function test_errors_data() {
        return [
            { tag: "model", error: "no model found", loading: false }, { tag: "Model", error: "Model list failed", loading: false },
            { tag: "MODEL", error: "MODEL", loading: true }, { tag: "other", error: "WebSocket error: 0", loading: true }, { tag: "empty", error: "", loading: true }
        ];
    }

    function test_errors(data) {
        sdk.error(data.error);
        compare(choices.modelsLoading, data.loading);
    }

    function test_invalidChoices() {
        sdk.modelsListed(models);
        choices.chooseModel(7);
        choices.chooseModel(-1);
        choices.chooseAgent(0);
        compare([sdk.currentModel, sdk.currentAgent], ["p/a", "build"]);
    }

    function test_missingObjects() {
        view = createTemporaryObject(viewComponent, test, {});
        choices = createTemporaryObject(controllerComponent, test, { chatView: view });
        choices.showModels(models);
        choices.showAgents([{ id: "a" }]);
        choices.chooseModel(1);
        choices.chooseAgent(0);
        compare([choices.modelText, choices.agentText, choices.configAgentsList], ["B", "a", []]);
    }

    //! The models and the agents of the bridge are loaded all the same.
    function test_unusableConfiguration() {
        const config = { getAgents: () => { throw new TypeError("no such key"); } };
        view = createTemporaryObject(viewComponent, test, { sdk: sdk, config: config });
        sdk.takeCalls();
        ignoreWarning("[ChatView] The agents of the configuration can't be used: TypeError: no such key");
        choices = createTemporaryObject(controllerComponent, test, { chatView: view });
        compare(choices.configAgentsList, []);
        compare(sdk.takeCalls(), ["listModels()", "listAgents()"]);
    }
}
