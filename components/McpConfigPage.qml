// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.loomra.components.controls 1.0

import "config"
import "config/ConfigObject.js" as ConfigObject
import "config/ServerRules.js" as ServerRules

//! The MCP servers that give agents more tools.
ConfigPage {
    id: page

    readonly property var servers: ConfigObject.section(configData, "mcp")

    ConfigCards {
        objectName: "cards"

        pane: page.pane
        focusAfterRemoval: addButton
        immediate: true
        entries: ConfigObject.filtered(page.servers, (name, server) => ConfigObject.isObject(server))
        fields: ServerRules.serverFields
        revision: page.controller ? page.controller.revision : 0
        onEdited: page.push("mcp", ServerRules.withField(page.servers, name, key, value))
        onRemoved: page.push("mcp", ConfigObject.without(page.servers, name))
    }
    ConfigButton {
        id: addButton
        objectName: "addServer"

        text: Translation.tr("Add MCP Server")
        icon.name: "list-add"
        onClicked: dialog.open()
    }

    dialogs: NameDialog {
        id: dialog
        objectName: "addServerDialog"

        title: Translation.tr("Add MCP Server")
        label: Translation.tr("Server Name:")
        // Intentional: a server of the same name is replaced.
        onAccepted: page.push("mcp", ConfigObject.withValue(page.servers, name, ServerRules.newServer(type.currentText)))

        ConfigText {
            text: Translation.tr("Type:")
            Accessible.ignored: true
        }
        WordBox {
            id: type
            objectName: "newType"

            words: ServerRules.types
            word: words[0]
            Accessible.name: Translation.tr("Type:")
        }
    }
}
