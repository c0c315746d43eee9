// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

//! A row of the table about tokens, with a bar.
RowLayout {
    id: row

    property var cells: []
    property bool isHeader: false
    //! Length of the bar, from 0 to 1.
    property real share: 0

    Layout.fillWidth: true
    spacing: Kirigami.Units.largeSpacing
    Accessible.role: Accessible.Row
    Accessible.name: cells.join(", ")

    Repeater {
        model: row.cells

        ConfigText {
            required property string modelData
            required property int index

            Layout.preferredWidth: Kirigami.Units.gridUnit * (index === 5 ? 8 : 5)
            Layout.maximumWidth: Layout.preferredWidth
            horizontalAlignment: index === 0 ? Text.AlignLeft : Text.AlignRight
            text: modelData
            font.bold: row.isHeader
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
            // Titles may be longer in another language.
            fontSizeMode: row.isHeader ? Text.HorizontalFit : Text.FixedSize
            minimumPointSize: Kirigami.Theme.defaultFont.pointSize * 0.6
            Accessible.role: row.isHeader ? Accessible.ColumnHeader : Accessible.Cell
        }
    }
    Item {
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.preferredWidth: Kirigami.Units.gridUnit * 5

        Rectangle {
            objectName: "usageBar"

            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width * row.share
            height: parent.height * 0.7
            radius: 2
            color: Kirigami.Theme.highlightColor
        }
    }
}
