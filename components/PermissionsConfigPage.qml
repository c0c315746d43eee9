// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "config"
import "config/ConfigObject.js" as ConfigObject
import "config/PermissionRules.js" as PermissionRules

//! What agents may do, without asking or at all.
ConfigPage {
    id: page

    readonly property var permissions: ConfigObject.section(configData, "permission")

    function setPermission(action, permission) {
        push("permission", PermissionRules.withPermission(permissions, action, permission));
    }

    function setPath(action, path, permission) {
        push("permission", PermissionRules.withPath(permissions, action, path, permission));
    }

    FormFields {
        Layout.fillWidth: true
        fields: PermissionRules.fields
        values: page.permissions
        onEdited: page.setPermission(key, value)
    }
    ConfigText {
        text: Translation.tr("Path-Specific Permissions")
        font.bold: true
        Accessible.role: Accessible.Heading
    }
    KeyRows {
        id: paths
        objectName: "paths"

        Layout.fillWidth: true
        pane: page.pane
        focusAfterRemoval: addButton
        step: 20
        spacing: Kirigami.Units.smallSpacing
        keys: PermissionRules.pathRows(page.permissions).map(row => JSON.stringify([row.action, row.path]))

        delegate: RowLayout {
            id: row

            required property string key
            readonly property string action: JSON.parse(key)[0]
            readonly property string path: JSON.parse(key)[1]
            readonly property string title: ConfigObject.shortened(action) + ": " + ConfigObject.shortened(path)

            Layout.fillWidth: true

            ConfigText {
                text: row.title
                wrapMode: Text.Wrap
            }
            WordBox {
                objectName: "pathPermission"

                words: PermissionRules.choices
                word: ConfigObject.get(ConfigObject.section(page.permissions, row.action), row.path)
                onChosen: page.setPath(row.action, row.path, word)
                Accessible.name: row.title
            }
        }
    }
    ConfigButton {
        id: addButton
        objectName: "addPath"

        text: Translation.tr("Add Path Permission")
        icon.name: "list-add"
        onClicked: dialog.open()
    }

    dialogs: NameDialog {
        id: dialog
        objectName: "addPathDialog"

        title: Translation.tr("Add Path Permission")
        label: Translation.tr("Path Pattern:")
        maximumWidth: 450
        onAccepted: page.setPath(action.currentText, name, permission.currentText)

        ConfigText {
            text: Translation.tr("Action:")
            Accessible.ignored: true
        }
        WordBox {
            id: action
            objectName: "pathAction"

            words: PermissionRules.pathActions
            word: words[0]
            Accessible.name: Translation.tr("Action:")
        }
        ConfigText {
            text: Translation.tr("Permission:")
            Accessible.ignored: true
        }
        WordBox {
            id: permission
            objectName: "newPermission"

            words: PermissionRules.choices
            word: words[0]
            Accessible.name: Translation.tr("Permission:")
        }
    }
}
