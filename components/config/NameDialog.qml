// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import org.kde.loomra.components.controls 1.0

import ".."

//! A dialog that asks for a name, and for what its children ask. Nothing is accepted without a name.
SimpleDialog {
    id: dialog

    property string label
    property string placeholder
    property bool enterAccepts: false
    readonly property alias name: field.text

    signal accepted(string name)

    function accept() {
        const name = field.text.trim();
        if (name === "") {
            field.forceActiveFocus(Qt.OtherFocusReason);
            return;
        }
        close();
        accepted(name);
    }

    maximumWidth: 400
    widthShare: 0.8
    onOpened: field.clear()
    buttons: [
        ConfigButton {
            objectName: "dialogCancel"
            text: Translation.tr("Cancel")
            onClicked: dialog.close()
        },
        ConfigButton {
            objectName: "dialogAdd"
            text: Translation.tr("Add")
            onClicked: dialog.accept()
        }
    ]

    ConfigText {
        text: dialog.label
        visible: text !== ""
        Accessible.ignored: true
    }
    QQC2.TextField {
        id: field
        objectName: "dialogName"

        Layout.fillWidth: true
        placeholderText: dialog.placeholder
        placeholderTextColor: Qt.rgba(color.r, color.g, color.b, 0.7)
        selectByMouse: true
        onAccepted: if (dialog.enterAccepts) dialog.accept()
        Accessible.name: dialog.label === "" ? dialog.placeholder : dialog.label
    }
}
