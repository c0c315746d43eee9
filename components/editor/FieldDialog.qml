// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra 1.0
import org.kde.loomra.components.controls 1.0

import "../common"
import "../common/Readable.js" as Readable

//! A dialog that asks for one line of text.
SimpleDialog {
    id: dialog

    property string fieldLabel
    property string placeholder
    property string acceptLabel
    //! Shown below the field until the text is edited.
    property string error
    readonly property bool isAcceptable: field.text.trim() !== ""

    //! The listener closes the dialog or sets the error.
    signal accepted(string value)

    function accept() {
        if (isAcceptable)
            accepted(field.text);
    }

    onOpened: {
        field.clear();
        error = "";
    }

    PlainText {
        Layout.fillWidth: true
        text: dialog.fieldLabel
        color: Kirigami.Theme.textColor
        Accessible.ignored: true
    }

    QQC2.TextField {
        id: field
        objectName: "dialogField"

        Layout.fillWidth: true
        placeholderText: dialog.placeholder
        placeholderTextColor: Qt.rgba(color.r, color.g, color.b, 0.7)
        selectByMouse: true
        Accessible.name: dialog.fieldLabel
        Accessible.description: dialog.error
        onAccepted: dialog.accept()
        onTextChanged: dialog.error = ""
    }

    PlainText {
        objectName: "dialogError"

        Layout.fillWidth: true
        visible: text !== ""
        text: dialog.error
        color: Readable.on(Kirigami.Theme.backgroundColor, Kirigami.Theme.negativeTextColor)
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        onTextChanged: announcer.announce(text)
    }

    Announcer {
        id: announcer
    }

    buttons: [
        TextButton {
            objectName: "acceptButton"

            label: dialog.acceptLabel
            enabled: dialog.isAcceptable
            onClicked: dialog.accept()
        },
        TextButton {
            objectName: "cancelButton"

            label: Translation.tr("Cancel")
            onClicked: dialog.close()
        }
    ]
}
