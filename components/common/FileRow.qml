// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

//! A file or folder in a RowList. A name that doesn't fit is in the tooltip.
ListRow {
    id: row

    required property int index
    property string iconName
    property alias elide: nameText.elide

    contentItem: Item {
        implicitHeight: Math.max(rowIcon.height, nameText.implicitHeight)

        Kirigami.Icon {
            id: rowIcon

            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            width: Kirigami.Units.iconSizes.small
            height: width
            source: row.iconName
            fallback: "text-plain"
            color: Kirigami.Theme.textColor
            Accessible.ignored: true
        }

        PlainText {
            id: nameText
            objectName: "fileName"

            anchors.left: rowIcon.right
            anchors.leftMargin: Kirigami.Units.smallSpacing
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            horizontalAlignment: Text.AlignLeft
            text: row.label
            color: Kirigami.Theme.textColor
            font: Kirigami.Theme.defaultFont
            maximumLineCount: 1
            Accessible.ignored: true
        }
    }

    HoverTip {
        control: row
        text: row.label
        longest: 4096
        enabledHere: nameText.truncated
    }
}
