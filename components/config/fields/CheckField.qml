// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2

//! A check box in a form. With the fallback true, only a false value turns it off.
Item {
    id: holder

    required property Item field

    implicitWidth: box.implicitWidth
    implicitHeight: box.implicitHeight

    QQC2.CheckBox {
        id: box
        objectName: "control-" + holder.field.row.key

        anchors.left: parent.left
        checked: holder.field.row.fallback === true ? holder.field.value !== false : holder.field.value === true
        onToggled: holder.field.edit(checked)
        Accessible.name: holder.field.accessibleName
    }
}
