// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra 1.0
import org.kde.loomra.components.controls 1.0

import "../common"

//! A question with several answers, besides "Cancel".
SimpleDialog {
    id: dialog

    property string question
    //! The labels of the answers. The first one gets the focus.
    property var answers: []

    //! The dialog is closed already.
    signal chosen(int answer)

    PlainText {
        objectName: "dialogQuestion"

        Layout.fillWidth: true
        text: dialog.question
        color: Kirigami.Theme.textColor
        wrapMode: Text.Wrap
        elide: Text.ElideNone
    }

    buttons: [
        Repeater {
            model: dialog.answers

            TextButton {
                objectName: "answerButton"

                required property int index
                required property string modelData

                label: modelData
                Accessible.description: dialog.question
                onClicked: {
                    dialog.close();
                    dialog.chosen(index);
                }
            }
        },
        TextButton {
            objectName: "cancelButton"

            label: Translation.tr("Cancel")
            onClicked: dialog.close()
        }
    ]
}
