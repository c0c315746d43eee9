// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../common"

//! The field for a session's new name.
SettingsTextField {
    id: field
    objectName: "sessionNameField"

    required property var bar

    implicitHeight: 26
    Accessible.name: bar.tr("New name")
    onTextEdited: bar.renamingSessionName = text
    onAccepted: bar.saveSessionName()
    Keys.onEscapePressed: bar.stopRenaming()
    Component.onCompleted: {
        text = bar.renamingSessionName;
        selectAll();
    }
}
