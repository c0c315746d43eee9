// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "logic/Translatable.js" as Translatable
import "common/Readable.js" as Readable
import "config"
import "config/AgentConfig.js" as AgentConfig
import "config/ConfigObject.js" as ConfigObject

//! The agents of the agent tool, as forms or as JSON. Changes in the forms are saved at once.
ConfigPage {
    id: page

    property bool showsJson: false
    readonly property url documentation: "https://loomra.example/docs"

    function getEnabledAgents() {
        return AgentConfig.enabledAgents(configData);
    }

    //! An empty value removes the key, and an agent without any key is removed.
    function updateAgentConfig(name, key, value) {
        return store(AgentConfig.withField(AgentConfig.agentsOf(configData), name, key, value));
    }

    //! @param text of the value; undefined removes the option
    function updateAgentOption(name, option, text) {
        const agent = ConfigObject.section(AgentConfig.agentsOf(configData), name);
        return updateAgentConfig(name, "options",
                                 AgentConfig.withOption(ConfigObject.section(agent, "options"), option, text));
    }

    function removeAgent(name) {
        return store(ConfigObject.without(AgentConfig.agentsOf(configData), name));
    }

    //! @return whether the agent was added, and saved unless the user has to do that
    function addAgent(name, agent) {
        const agents = AgentConfig.agentsOf(configData);
        if (!AgentConfig.isValidName(name) || ConfigObject.has(agents, name)) {
            console.log("AgentsConfigPage: an agent needs a new name");
            addDialog.returnToName();
            return false;
        }
        const before = ConfigObject.section(configData, "agent");
        const wasUnsaved = controller.hasUnsavedChanges;
        if (store(ConfigObject.withValue(AgentConfig.cleaned(agents), name, agent)) || controller.problem !== "")
            return true;
        // The dialog keeps it. Here its name would no longer be new.
        controller.push("agent", before);
        controller.hasUnsavedChanges = wasUnsaved;
        return false;
    }

    //! @return whether the agents were saved
    function store(agents) {
        controller.push("agent", agents);
        if (!controller.saveAtOnce())
            return false;
        configChanged();
        controller.readBack();
        return true;
    }

    RowLayout {
        spacing: 0

        ConfigText {
            Layout.fillWidth: false
            text: Translation.tr("Configure agent settings. See") + " "
        }
        Kirigami.LinkButton {
            objectName: "documentationLink"

            text: Translation.tr("Loomra documentation")
            color: Readable.on(Kirigami.Theme.backgroundColor, Kirigami.Theme.linkColor)
            onClicked: Qt.openUrlExternally(page.documentation)
            Accessible.role: Accessible.Link
        }
    }
    Flow {
        Layout.fillWidth: true
        spacing: Kirigami.Units.smallSpacing

        ConfigButton {
            objectName: "formEditor"

            text: Translation.tr("Form Editor")
            checkable: true
            autoExclusive: true
            checked: !page.showsJson
            onClicked: page.showsJson = false
        }
        ConfigButton {
            objectName: "jsonEditor"

            text: Translation.tr("JSON Editor")
            checkable: true
            autoExclusive: true
            checked: page.showsJson
            onClicked: page.showsJson = true
        }
        ConfigButton {
            id: addButton
            objectName: "addAgent"

            text: Translation.tr("Add Agent")
            icon.name: "list-add"
            onClicked: addDialog.open()
        }
    }
    ConfigText {
        objectName: "noAgents"

        visible: !page.showsJson && cards.keys.length === 0
        text: Translation.tr("No enabled agents. Add an agent to get started.")
    }
    ConfigCards {
        id: cards
        objectName: "cards"

        visible: !page.showsJson
        pane: page.pane
        focusAfterRemoval: addButton
        entries: page.getEnabledAgents()
        fields: AgentConfig.fields
        revision: page.controller ? page.controller.revision : 0
        titleOf: name => Translatable.filled(Translation.tr("{name} Agent"), { name: AgentConfig.capitalized(name) })
        askPair: done => optionDialog.ask(done)
        onEdited: page.updateAgentConfig(name, key, value)
        onPairEdited: page.updateAgentOption(name, entry, text)
        onRemoved: page.removeAgent(name)
    }
    Loader {
        Layout.fillWidth: true
        active: page.showsJson
        visible: active
        sourceComponent: AgentsEditor {
            configData: page.configData
            schema: page.controller.schema
            revision: page.controller.revision
            onEdited: page.push("agent", agents)
        }
    }

    dialogs: [
        AddAgentDialog {
            id: addDialog

            askPair: done => optionDialog.ask(done)
            onSubmitted: {
                if (page.addAgent(name, agent))
                    close();
            }
        },
        OptionDialog {
            id: optionDialog
        }
    ]
}
