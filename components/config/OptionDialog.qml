// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import org.kde.loomra.components.controls 1.0

//! Asks for the key and the value of an option.
NameDialog {
    id: dialog

    property var done: null

    //! @param done called with the key and the text of the value
    function ask(done) {
        dialog.done = done;
        open();
    }

    objectName: "optionDialog"
    title: Translation.tr("Add Option")
    label: Translation.tr("Option Key:")
    maximumWidth: 500
    z: 1001 // above the dialog for a new agent
    onOpened: field.clear()
    onAccepted: done(name, field.text)

    ConfigText {
        text: Translation.tr("Option Value:")
        Accessible.ignored: true
    }
    QQC2.TextField {
        id: field
        objectName: "optionValue"

        Layout.fillWidth: true
        selectByMouse: true
        Accessible.name: Translation.tr("Option Value:")
    }
}
