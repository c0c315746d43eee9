// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../logic/Native.js" as Native
import ".."

//! The sheet of the project's settings.
SimpleDialog {
    id: sheet
    objectName: "projectSettingsSheet"

    //! The ConfigManager; may be null.
    required property var config

    title: Translation.tr("Project Settings")

    PlainText {
        text: Translation.tr("API Key:")
        color: Kirigami.Theme.textColor
    }
    QQC2.TextField {
        id: keyField
        objectName: "apiKeyField"

        Layout.fillWidth: true
        echoMode: TextInput.Password
        selectByMouse: true
        text: sheet.config ? sheet.config.apiKey : ""
        Accessible.name: Translation.tr("API Key")
        onTextEdited: {
            if (sheet.config)
                sheet.config.apiKey = text;
        }

        // Typing ends the binding.
        Connections {
            target: sheet.config
            function onApiKeyChanged() {
                if (keyField.text !== sheet.config.apiKey)
                    keyField.text = sheet.config.apiKey;
            }
        }
    }

    buttons: QQC2.Button {
        objectName: "saveProjectButton"
        text: Translation.tr("Save")
        Accessible.name: text
        onClicked: {
            Native.call(sheet.config, "save");
            sheet.close();
        }
    }
}
