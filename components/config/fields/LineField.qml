// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import org.kde.loomra.components.controls 1.0

import "../../logic/Translatable.js" as Translatable

//! A line of text in a form.
QQC2.TextField {
    id: line

    required property Item field
    readonly property TextState textState: TextState {
        field: line.field
        control: line
    }

    objectName: "control-" + field.row.key
    placeholderText: Translatable.translated(field.row.placeholder || "", Translation.tr)
    placeholderTextColor: Qt.rgba(color.r, color.g, color.b, 0.7)
    readOnly: textState.isTooLong
    selectByMouse: true
    Accessible.name: field.accessibleName
}
