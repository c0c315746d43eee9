// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.loomra.components.controls 1.0

import ".."
import "../ConfigObject.js" as ConfigObject

//! A choice of one of a few words in a form. Nothing is chosen if the value is none of them.
RowLayout {
    id: holder

    required property Item field
    readonly property var value: field.value === undefined ? field.row.fallback : field.value

    // Rules for single paths would be lost.
    readonly property bool isSplit: ConfigObject.isObject(value)

    WordBox {
        objectName: "control-" + holder.field.row.key

        words: holder.field.row.choices
        word: holder.value
        onChosen: holder.field.edit(word)
        enabled: !holder.isSplit
        Accessible.name: holder.field.accessibleName
    }
    ConfigText {
        text: Translation.tr("Depends on the path, see below")
        visible: holder.isSplit
        opacity: 0.8
    }
}
