// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "logic/Translatable.js" as Translatable
import "config"
import "config/ConfigObject.js" as ConfigObject
import "config/ToolRules.js" as ToolRules

//! The tools that agents have.
ConfigPage {
    id: page

    readonly property var tools: ConfigObject.section(configData, "tools")

    function setTool(tool, isOn) {
        push("tools", ToolRules.withTool(tools, tool, isOn));
    }

    ConfigText {
        text: Translation.tr("Enable or disable tools. Tools control what capabilities are available to agents.")
    }
    Flow {
        Layout.fillWidth: true
        spacing: Kirigami.Units.smallSpacing

        Repeater {
            model: ToolRules.knownTools

            QQC2.CheckBox {
                required property string modelData

                objectName: "tool-" + modelData
                width: Kirigami.Units.gridUnit * 12
                text: ToolRules.labelOf(modelData, Translation.tr)
                checked: ToolRules.isOn(page.tools, modelData)
                onToggled: page.setTool(modelData, checked)
                Accessible.name: text
            }
        }
    }
    ConfigText {
        text: Translation.tr("Custom Tools")
        font.bold: true
        Accessible.role: Accessible.Heading
    }
    KeyRows {
        objectName: "customTools"

        Layout.fillWidth: true
        pane: page.pane
        focusAfterRemoval: addButton
        step: 20
        spacing: Kirigami.Units.smallSpacing
        keys: ToolRules.customTools(page.tools)

        delegate: RowLayout {
            id: row

            required property string key

            Layout.fillWidth: true

            ConfigText {
                text: ConfigObject.shortened(row.key)
                wrapMode: Text.Wrap
            }
            ConfigButton {
                objectName: "removeTool"

                text: Translation.tr("Remove")
                icon.name: "edit-delete"
                onClicked: page.setTool(row.key, false)
                Accessible.name: Translatable.filled(Translation.tr("Remove {name}"), { name: ConfigObject.shortened(row.key) })
            }
        }
    }
    ConfigButton {
        id: addButton
        objectName: "addTool"

        text: Translation.tr("Add Custom Tool")
        icon.name: "list-add"
        onClicked: dialog.open()
    }

    dialogs: NameDialog {
        id: dialog
        objectName: "addToolDialog"

        title: Translation.tr("Add Custom Tool")
        placeholder: Translation.tr("Enter tool name")
        onAccepted: page.setTool(name, true)
    }
}
