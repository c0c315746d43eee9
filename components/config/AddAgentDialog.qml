// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import org.kde.loomra.components.controls 1.0

import ".."
import "AgentConfig.js" as AgentConfig
import "ConfigObject.js" as ConfigObject

//! Asks for a new agent.
SimpleDialog {
    id: dialog

    //! See FormFields.
    property alias askPair: form.askPair
    property var draft: ({})

    //! The user wants to add an agent. Nothing is closed here, because that may fail.
    signal submitted(string name, var agent)

    function submit() {
        submitted(field.text.trim(), AgentConfig.newAgent(draft));
    }

    function returnToName() {
        field.forceActiveFocus(Qt.OtherFocusReason);
    }

    objectName: "addAgentDialog"
    title: Translation.tr("Add New Agent")
    maximumWidth: 600
    heightShare: Math.min(0.9, 700 / Math.max(1, height))
    onOpened: {
        draft = {};
        form.revision += 1;
        field.clear();
    }
    buttons: [
        ConfigButton {
            objectName: "dialogCancel"
            text: Translation.tr("Cancel")
            onClicked: dialog.close()
        },
        ConfigButton {
            objectName: "dialogAdd"
            text: Translation.tr("Add")
            onClicked: dialog.submit()
        }
    ]

    ConfigText {
        text: Translation.tr("Agent Name:") + " *"
        Accessible.ignored: true
    }
    QQC2.TextField {
        id: field
        objectName: "dialogName"

        Layout.fillWidth: true
        selectByMouse: true
        Accessible.name: Translation.tr("Agent Name:")
        Accessible.description: Translation.tr("Required")
    }
    FormFields {
        id: form

        Layout.fillWidth: true
        immediate: true
        fields: AgentConfig.newFields
        values: dialog.draft
        onEdited: dialog.draft = ConfigObject.edited(dialog.draft, key, value)
        onPairEdited: {
            const options = ConfigObject.section(dialog.draft, key);
            dialog.draft = ConfigObject.edited(dialog.draft, key, AgentConfig.withOption(options, entry, text));
        }
    }
}
