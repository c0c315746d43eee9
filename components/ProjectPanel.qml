// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "logic/Native.js" as Native
import "common"

//! A page with the settings of a project.
Kirigami.ScrollablePage {
    id: page

    property QtObject config: typeof configManager !== "undefined" ? configManager : null

    title: Translation.tr("Project Settings")

    ColumnLayout {
        spacing: Kirigami.Units.smallSpacing

        PlainText {
            Layout.fillWidth: true
            text: Translation.tr("Project Path:")
            color: Kirigami.Theme.textColor
            Accessible.ignored: true
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: Kirigami.Units.smallSpacing

            QQC2.TextField {
                objectName: "pathField"

                Layout.fillWidth: true
                selectByMouse: true
                Accessible.name: Translation.tr("Project Path:")
                onTextEdited: if (page.config) page.config.currentProject = text

                Binding on text {
                    value: page.config ? page.config.currentProject : ""
                }
            }

            // Intentional: without function.
            TextButton {
                objectName: "browseButton"

                label: Translation.tr("Browse...")
            }
        }

        PlainText {
            Layout.fillWidth: true
            Layout.topMargin: Kirigami.Units.largeSpacing
            text: Translation.tr("API Key:")
            color: Kirigami.Theme.textColor
            Accessible.ignored: true
        }

        QQC2.TextField {
            objectName: "keyField"

            Layout.fillWidth: true
            echoMode: TextInput.Password
            selectByMouse: true
            // Qt gives password fields no name.
            Accessible.description: Translation.tr("API Key:")
            onTextEdited: if (page.config) page.config.apiKey = text

            Binding on text {
                value: page.config ? page.config.apiKey : ""
            }
        }

        TextButton {
            objectName: "saveButton"

            Layout.topMargin: Kirigami.Units.largeSpacing
            label: Translation.tr("Save Settings")
            icon.name: "document-save"
            onClicked: Native.call(page.config, "save")
        }
    }
}
