// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../../components/logic/LiteralText.js" as LiteralText
import "../common"

//! A workspace template. Its texts may come from the bridge.
Rectangle {
    id: row
    objectName: "templateRow"

    required property var bar
    required property var theme
    required property int index
    //! Whether the bridge has workspaces.
    required property bool available

    readonly property var template: bar.workspaceTemplateCatalog[index] || bar.workspaceTemplateCatalogBase[index]
    readonly property int margin: 10

    width: parent.width
    implicitHeight: content.implicitHeight + 2 * margin
    radius: 8
    color: theme.uiWellFill
    border.width: 1
    border.color: theme.uiWellBorder
    Accessible.role: Accessible.Grouping
    Accessible.name: enabledSwitch.label

    Column {
        id: content

        anchors.left: parent.left
        anchors.leftMargin: row.margin
        y: row.margin
        width: row.width - 2 * row.margin
        spacing: 4

        StateSwitch {
            id: enabledSwitch
            objectName: "templateSwitch"

            theme: row.theme
            label: LiteralText.oneLine(row.template.name)
            enabled: row.available
            on: row.template.enabled
            Accessible.description: details.text
            onSwitched: row.bar.switchWorkspaceTemplate(row.template.id, on)

            HoverTip {
                control: enabledSwitch
                text: enabledSwitch.label
                enabledHere: enabledSwitch.contentItem.truncated
            }
        }

        Item {
            width: parent.width
            height: Math.max(details.height, prepareButton.height)

            SettingsStatus {
                id: details
                objectName: "templateDescription"

                anchors.left: parent.left
                anchors.right: prepareButton.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                theme: row.theme
                message: row.template.description
                maximumLineCount: 2
            }

            SettingsButton {
                id: prepareButton
                objectName: "templatePrepareBtn"

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                theme: row.theme
                label: row.bar.tr("Prepare")
                enabled: row.available && row.template.enabled && row.template.workspaceId > 0 && row.bar.toolsEnabled
                Accessible.description: enabledSwitch.label
                onClicked: row.bar.prepareWorkspaceTemplate(row.template.id)
            }
        }
    }
}
