// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2

//! A number in a form. A fraction is a whole number for the control, which has a scale.
Item {
    id: holder

    required property Item field
    readonly property real factor: field.row.scale || 1

    implicitWidth: box.implicitWidth
    implicitHeight: box.implicitHeight

    QQC2.SpinBox {
        id: box
        objectName: "control-" + holder.field.row.key

        anchors.left: parent.left
        // Assistive technology reads the range from these names.
        readonly property int minimumValue: from
        readonly property int maximumValue: to
        readonly property int digits: Math.round(Math.log(holder.factor) / Math.LN10)

        from: holder.field.row.from
        to: holder.field.row.to
        stepSize: holder.field.row.step || 1
        editable: true
        wheelEnabled: false
        value: typeof holder.field.value === "number" ? Math.round(holder.field.value * holder.factor)
                                                      : holder.field.row.fallback
        textFromValue: (value, locale) => digits > 0 ? Number(value / holder.factor).toLocaleString(locale, "f", digits)
                                                     : String(value)
        valueFromText: (text, locale) => fromText(text, locale)
        validator: RegExpValidator { regExp: /[0-9.,]*/ }
        onValueModified: holder.field.edit(value / holder.factor)
        Accessible.role: Accessible.SpinBox
        Accessible.name: holder.field.accessibleName

        // The input has the focus instead of the box.
        Binding {
            target: box.contentItem
            property: "Accessible.name"
            value: holder.field.accessibleName
        }

        function fromText(text, locale) {
            try {
                return Math.round((digits > 0 ? Number.fromLocaleString(locale, text) : Number(text)) * holder.factor);
            } catch (error) {
                return value;
            }
        }
    }
}
