// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

//! A row of a RowList. It is the tab stop of the list while it is the current row.
T.ItemDelegate {
    id: row

    //! Accessible name. Not "text", in which an ampersand becomes a shortcut.
    required property string label
    readonly property bool isCurrent: ListView.isCurrentItem

    x: ListView.view ? ListView.view.rowX : 0
    width: ListView.view ? ListView.view.rowWidth : implicitWidth
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: Kirigami.Units.smallSpacing
    leftPadding: Kirigami.Units.largeSpacing
    rightPadding: Kirigami.Units.largeSpacing
    hoverEnabled: true
    focusPolicy: Qt.ClickFocus
    // Qt refuses to change it while the row has the focus.
    activeFocusOnTab: isCurrent || activeFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: label
    Keys.onReturnPressed: if (!event.isAutoRepeat) clicked()
    Keys.onEnterPressed: if (!event.isAutoRepeat) clicked()

    background: Rectangle {
        color: Kirigami.Theme.highlightColor
        opacity: row.pressed ? 0.3 : row.hovered ? 0.15 : 0

        FocusRing {
            parent: row
            control: row
            anchors.margins: 1
            radius: 2
            border.color: Kirigami.Theme.highlightColor
        }
    }
}
