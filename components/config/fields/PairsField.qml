// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../../logic/Translatable.js" as Translatable
import ".."
import "../ConfigObject.js" as ConfigObject

//! The entries of an object in a form. Entries that are lists or objects can't be edited here.
ColumnLayout {
    id: column

    required property Item field
    readonly property var pairs: ConfigObject.isObject(field.value) ? field.value : ({})

    function edit(entry, text) {
        field.form.pairEdited(field.row.key, entry, text);
    }

    KeyRows {
        keys: Object.keys(column.pairs)
        focusAfterRemoval: addButton
        Layout.fillWidth: true

        delegate: RowLayout {
            id: pair

            required property string key
            readonly property var value: ConfigObject.get(column.pairs, key)
            readonly property string whole: ConfigObject.asText(value)
            readonly property string shown: ConfigObject.shortened(whole, ConfigObject.longestText)

            Layout.fillWidth: true

            ConfigText {
                Layout.fillWidth: false
                Layout.preferredWidth: Kirigami.Units.gridUnit * 8
                text: ConfigObject.shortened(pair.key)
                wrapMode: Text.WrapAnywhere
            }
            QQC2.TextField {
                objectName: "pairText"

                Layout.fillWidth: true
                text: pair.shown
                readOnly: pair.value instanceof Object || pair.shown !== pair.whole
                selectByMouse: true
                onEditingFinished: if (!readOnly && text !== pair.shown) column.edit(pair.key, text)
                Accessible.name: column.field.accessibleName + " " + pair.key
            }
            ConfigButton {
                objectName: "removePair"

                text: Translation.tr("Remove")
                onClicked: column.edit(pair.key, undefined)
                Accessible.name: Translatable.filled(Translation.tr("Remove {name}"), { name: pair.key })
            }
        }
    }
    ConfigButton {
        id: addButton
        objectName: "addOption"

        text: Translation.tr("Add Option")
        onClicked: column.field.form.askPair((entry, text) => column.edit(entry, text))
    }
}
