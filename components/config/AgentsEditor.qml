// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../logic/Translatable.js" as Translatable
import "AgentConfig.js" as AgentConfig

//! The agents as JSON. Each valid text is applied while the user types.
ColumnLayout {
    id: editor

    required property var configData
    required property string schema
    property int revision: 0
    property string error: ""
    property bool isTooLong: false
    //! The agents that the text stands for, as JSON. An older text would remove agents that were added since.
    property string shownAgents
    property bool isApplying: false

    // A text area would be busy with more for seconds.
    readonly property int longestText: 1000000

    signal edited(var agents)

    function agentsAsText() {
        return JSON.stringify(AgentConfig.agentsOf(configData));
    }

    function reload() {
        const text = AgentConfig.editorText(configData, schema);
        isTooLong = text.length > longestText;
        area.text = isTooLong ? "" : text;
        error = "";
        shownAgents = agentsAsText();
    }

    function apply() {
        const parsed = AgentConfig.fromEditor(area.text);
        error = parsed.error === "object" ? Translation.tr("not an object") : parsed.error;
        if (!parsed.agents || JSON.stringify(parsed.agents) === shownAgents)
            return;
        isApplying = true;
        edited(parsed.agents);
        isApplying = false;
        shownAgents = agentsAsText();
    }

    spacing: Kirigami.Units.smallSpacing
    onRevisionChanged: reload()
    onConfigDataChanged: {
        if (!isApplying && agentsAsText() !== shownAgents)
            reload();
    }
    Component.onCompleted: reload()

    RowLayout {
        ConfigText {
            text: Translation.tr("Edit Agents Configuration (JSON):")
        }
        ConfigButton {
            objectName: "reloadFromConfig"

            text: Translation.tr("Reload from Config")
            icon.name: "view-refresh"
            onClicked: editor.reload()
        }
    }
    ConfigText {
        text: editor.isTooLong ? Translation.tr("This configuration is too long to be edited here.")
                               : Translation.tr("Only changes of the agents are applied.")
        opacity: 0.8
    }
    ConfigTextArea {
        id: area
        objectName: "agentsJson"

        Layout.fillWidth: true
        Layout.minimumHeight: Kirigami.Units.gridUnit * 12
        font.family: "monospace"
        readOnly: editor.isTooLong
        onTextChanged: if (activeFocus && !readOnly) editor.apply()
        Accessible.name: Translation.tr("Edit Agents Configuration (JSON):")
    }
    ErrorText {
        objectName: "jsonError"

        visible: editor.error !== ""
        text: Translatable.filled(Translation.tr("JSON Error: {error}"), { error: editor.error })
    }
}
