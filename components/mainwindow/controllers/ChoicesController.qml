// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../logic/LiteralText.js" as LiteralText
import "../../logic/Native.js" as Native
import "../../logic/Untrusted.js" as Untrusted
import "../logic/Choices.js" as Choices

//! The model and the agent of the next prompt.
QtObject {
    id: choices

    //! The ChatView, or a fake in tests.
    required property var chatView

    //! Rows {id, name}.
    property var modelsList: []
    property int modelIndex: 0
    property bool modelsLoading: false
    //! Rows {id, name} and more: those of the agent tool's file, then those that only the bridge has.
    property var agentsList: []
    property var configAgentsList: []
    property int agentIndex: 0
    //! Shown beside new replies.
    property string currentAgentName: ""

    readonly property string modelText: {
        if (modelsLoading)
            return Translation.tr("Loading free models...");
        const row = modelsList[modelIndex];
        return row ? LiteralText.oneLine(row.name) : Translation.tr("No free models available");
    }
    // i18n: the name of an agent of the agent tool
    readonly property string agentText: currentAgentName !== "" ? Choices.buttonText(currentAgentName) : Translation.tr("Build")

    readonly property Connections sdkConnections: Connections {
        target: choices.chatView.sdk

        function onReadyChanged() {
            choices.load();
        }
        function onAgentsListed(agents) {
            choices.showAgents(agents);
        }
        function onModelsListed(models) {
            choices.showModels(models);
        }
        function onCurrentAgentChanged() {
            const id = choices.chatView.sdk.currentAgent;
            choices.currentAgentName = Choices.nameOf(choices.agentsList, id);
            choices.agentIndex = Choices.indexOf(choices.agentsList, id);
        }
        function onError(error) {
            if (/[mM]odel/.test(Untrusted.textOf(error)))
                choices.modelsLoading = false;
        }
    }

    //! Takes the agents of the agent tool's file. @return their rows
    function convertConfigAgents(agents) {
        configAgentsList = Choices.configAgents(agents);
        return configAgentsList;
    }

    function load() {
        if (!chatView.isReady())
            return;
        modelsLoading = true;
        Native.call(chatView.sdk, "listModels");
        Native.call(chatView.sdk, "listAgents");
    }

    function showAgents(agents) {
        // What the user has chosen stays chosen.
        const id = agentIndex > 0 ? agentsList[agentIndex].id : "";
        const rows = Choices.mergedAgents(configAgentsList, agents);
        agentIndex = 0;
        agentsList = rows;
        agentIndex = Choices.indexOf(rows, id);
        if (rows.length > 0 && agentIndex === 0)
            chooseAgent(0);
    }

    function showModels(models) {
        // What the user has chosen stays chosen.
        const id = modelIndex > 0 ? modelsList[modelIndex].id : "";
        const rows = Choices.models(models);
        modelsLoading = false;
        modelIndex = 0;
        modelsList = rows;
        modelIndex = Choices.indexOf(rows, id);
        if (rows.length > 0 && modelIndex === 0)
            chooseModel(0);
    }

    function chooseAgent(index) {
        const row = agentsList[index];
        if (!row)
            return;
        agentIndex = index;
        if (chatView.sdk)
            chatView.sdk.currentAgent = row.id;
        currentAgentName = row.name;
    }

    function chooseModel(index) {
        const row = modelsList[index];
        if (!row)
            return;
        modelIndex = index;
        if (chatView.sdk)
            chatView.sdk.currentModel = row.id;
    }

    //! The agents of the tool's file; none if it has keys that Qt can't pass to QML, such as "__proto__".
    function agentsOfConfig() {
        try {
            return Native.call(chatView.config, "getAgents");
        } catch (error) {
            console.warn("[ChatView] The agents of the configuration can't be used:", error);
            return ({});
        }
    }

    Component.onCompleted: {
        convertConfigAgents(agentsOfConfig());
        load();
    }
}
