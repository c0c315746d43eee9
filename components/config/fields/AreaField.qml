// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import ".."

//! Some lines of text in a form. An invalid text is not applied, which a line below says.
ColumnLayout {
    id: column

    required property Item field

    ConfigTextArea {
        id: area
        objectName: "control-" + column.field.row.key

        readonly property TextState textState: TextState {
            field: column.field
            control: area
        }

        Layout.fillWidth: true
        readOnly: textState.isTooLong
        Layout.minimumHeight: Kirigami.Units.gridUnit * 4
        font.family: column.field.row.format === "json" ? "monospace" : Kirigami.Theme.defaultFont.family
        Accessible.name: column.field.accessibleName
    }
    ErrorText {
        objectName: "invalidText"

        visible: !area.textState.isValid
        text: Translation.tr("This is not a JSON object. The last valid value is kept.")
    }
}
