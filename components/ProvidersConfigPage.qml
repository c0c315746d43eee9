// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "config"
import "config/ConfigObject.js" as ConfigObject
import "config/ServerRules.js" as ServerRules

//! The providers of models.
ConfigPage {
    id: page

    readonly property var providers: ConfigObject.section(configData, "provider")

    ConfigCards {
        objectName: "cards"

        pane: page.pane
        focusAfterRemoval: addButton
        immediate: true
        entries: ConfigObject.filtered(page.providers, (name, provider) => ConfigObject.isObject(provider))
        fields: ServerRules.providerFields
        revision: page.controller ? page.controller.revision : 0
        onEdited: page.push("provider", ServerRules.withField(page.providers, name, key, value))
        onRemoved: page.push("provider", ConfigObject.without(page.providers, name))
    }
    ConfigButton {
        id: addButton
        objectName: "addProvider"

        text: Translation.tr("Add Provider")
        icon.name: "list-add"
        onClicked: dialog.open()
    }

    dialogs: NameDialog {
        id: dialog
        objectName: "addProviderDialog"

        title: Translation.tr("Add Provider")
        label: Translation.tr("Provider Name:")
        enterAccepts: true
        // Intentional: a provider of the same name is replaced.
        onAccepted: page.push("provider", ConfigObject.withValue(page.providers, name, {}))
    }
}
