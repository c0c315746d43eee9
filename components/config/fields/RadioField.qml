// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2

//! A choice of one of a few words in a form, all of them visible.
Row {
    id: group

    required property Item field
    readonly property var value: field.value === undefined ? field.row.fallback : field.value

    Repeater {
        model: group.field.row.choices

        QQC2.RadioButton {
            required property string modelData

            objectName: "radio-" + modelData
            text: modelData
            checked: group.value === modelData
            onClicked: group.field.edit(modelData)
            Accessible.name: group.field.accessibleName + " " + modelData
        }
    }
}
