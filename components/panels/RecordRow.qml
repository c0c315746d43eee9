// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../common/Readable.js" as Readable
import "../common"

//! A record: its name, a smaller line below and buttons. A narrow row has its buttons below the text.
ListRow {
    id: row

    required property string recordId
    required property string name
    property string detail
    property alias buttons: buttonRow.data

    label: name
    Accessible.description: detail

    contentItem: GridLayout {
        columns: width < Kirigami.Units.gridUnit * 18 ? 1 : 2
        rowSpacing: Kirigami.Units.smallSpacing
        columnSpacing: Kirigami.Units.largeSpacing

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 0

            PlainText {
                objectName: "recordName"

                Layout.fillWidth: true
                text: row.label
                color: Kirigami.Theme.textColor
                font.bold: true
                font.family: Kirigami.Theme.defaultFont.family
                maximumLineCount: 1
                Accessible.ignored: true
            }

            PlainText {
                objectName: "recordDetail"

                Layout.fillWidth: true
                visible: text !== ""
                text: row.detail
                color: Readable.on(Kirigami.Theme.backgroundColor, Kirigami.Theme.disabledTextColor)
                font: Kirigami.Theme.smallFont
                maximumLineCount: 1
                Accessible.ignored: true
            }
        }

        RowLayout {
            id: buttonRow

            Layout.alignment: Qt.AlignRight
            spacing: Kirigami.Units.smallSpacing
        }
    }
}
