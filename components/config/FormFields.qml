// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../logic/Translatable.js" as Translatable
import "ConfigObject.js" as ConfigObject

//! A form with a row for each field. A field is an object:
//!   key, label         what it edits, and the text before it
//!   control            a file in the folder "fields": line, area, number, choice, radio, check or pairs
//!   format             of a text, see FieldText.js
//!   placeholder        of a line
//!   from, to, step     range of a number; the control shows it multiplied by scale
//!   choices            of a choice
//!   fallback           what the control shows if the key is missing
//!   alias              another name of the key, which is only read
//!   isShown(values)    whether the form has the row; by default it does
ColumnLayout {
    id: root

    property var fields: []
    //! The object that is edited.
    property var values: ({})
    //! The fields forget what the user has typed when this changes.
    property int revision: 0
    //! Whether texts are edited with each key; by default when the user leaves the field.
    property bool immediate: false
    //! What is edited, for screen readers.
    property string subject
    //! Asks the user for a key and a text, and calls its argument with them.
    property var askPair: null

    //! An undefined value removes the key.
    signal edited(string key, var value)
    //! An entry of the object with this key; an undefined text removes it.
    signal pairEdited(string key, string entry, var text)

    spacing: Kirigami.Units.smallSpacing

    Repeater {
        // Not the rows, which would be copied without their functions.
        model: root.fields.length

        RowLayout {
            id: field

            required property int index
            readonly property var row: root.fields[index]
            readonly property Item form: root
            readonly property string label: Translatable.translated(row.label, Translation.tr)
            readonly property string accessibleName: root.subject === "" ? label : root.subject + " " + label
            readonly property var value: {
                const own = ConfigObject.get(root.values, row.key);
                return own === undefined && row.alias ? ConfigObject.get(root.values, row.alias) : own;
            }

            // The label is beside its first line.
            readonly property bool isTall: ["area", "pairs"].includes(row.control)

            function edit(value) {
                root.edited(row.key, value);
            }

            objectName: "field-" + row.key
            Layout.fillWidth: true
            visible: !row.isShown || row.isShown(root.values)
            spacing: Kirigami.Units.largeSpacing

            ConfigText {
                Layout.fillWidth: false
                Layout.preferredWidth: Kirigami.Units.gridUnit * 10
                Layout.alignment: field.isTall ? Qt.AlignTop : Qt.AlignVCenter
                Layout.topMargin: field.isTall ? Kirigami.Units.smallSpacing : 0
                text: field.label
                Accessible.ignored: true
            }
            Loader {
                Layout.fillWidth: true
                Component.onCompleted: {
                    const file = field.row.control.charAt(0).toUpperCase() + field.row.control.slice(1) + "Field.qml";
                    setSource(Qt.resolvedUrl("fields/" + file), { field: field });
                }
            }
        }
    }
}
