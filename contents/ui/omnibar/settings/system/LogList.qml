// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../logic/DashboardText.js" as DashboardText
import "../common"

//! The latest errors and warnings, one line each.
SettingsList {
    id: list
    objectName: "logList"

    required property var bar

    visible: count > 0
    count: bar.dashLogRows.count
    rowHeight: 22
    rowSpacing: 0
    maximumHeight: 8 * rowHeight + 4
    name: bar.tr("Errors and warnings")
    scrollBarName: bar.tr("Scroll errors and warnings")
    model: bar.dashLogRows

    delegate: Item {
        id: row
        objectName: "logRow"

        required property int index
        required property string llevel
        required property string lmessage
        required property real lts
        readonly property bool visualFocus: activeFocus
        readonly property bool hovered: hover.hovered

        x: list.rowX
        width: list.rowWidth
        height: list.rowHeight
        activeFocusOnTab: ListView.isCurrentItem || activeFocus
        Accessible.role: Accessible.ListItem
        Accessible.name: line.text

        PlainText {
            id: line
            objectName: "logLine"

            anchors.left: parent.left
            anchors.leftMargin: 10
            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            text: DashboardText.logLine(row.llevel, row.lts, row.lmessage)
            color: DashboardText.isError(row.llevel) ? list.theme.dangerText : list.theme.warningText
            font.pointSize: 9
            horizontalAlignment: Text.AlignLeft
            maximumLineCount: 1
            Accessible.ignored: true
        }

        HoverHandler {
            id: hover
        }

        HoverTip {
            control: row
            text: line.text
            longest: 600
            enabledHere: line.truncated
        }

        FocusRing {
            control: row
            anchors.margins: 0
            radius: 6
            border.color: list.theme.focusRing
        }
    }
}
