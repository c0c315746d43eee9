// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "Readable.js" as Readable

//! A framed list. Tab leads to the current row and to its buttons, Up and Down to other rows. Only rows in view exist.
//! Its delegates are ListRows.
ListView {
    id: list

    //! Accessible name.
    required property string name
    //! Shown while there are no rows.
    property string emptyText
    readonly property real rowWidth: width - 2 - (scrollBar.visible ? scrollBar.width : 0)
    readonly property real rowX: LayoutMirroring.enabled ? width - 2 - rowWidth : 0

    implicitHeight: Kirigami.Units.gridUnit * 8
    topMargin: 1
    bottomMargin: 1
    leftMargin: 1
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: 0
    keyNavigationEnabled: true
    Kirigami.Theme.inherit: false
    Kirigami.Theme.colorSet: Kirigami.Theme.View
    Accessible.role: Accessible.List
    Accessible.name: name
    Keys.onPressed: {
        if (event.key !== Qt.Key_Home && event.key !== Qt.Key_End)
            return;
        currentIndex = event.key === Qt.Key_Home ? 0 : count - 1;
        event.accepted = true;
    }

    QQC2.ScrollBar.vertical: QQC2.ScrollBar {
        id: scrollBar
        visible: list.contentHeight > list.height
        focusPolicy: Qt.NoFocus
        Accessible.name: Translation.tr("Scroll")
    }

    // Not in the content, which scrolls.
    Rectangle {
        objectName: "ground"

        parent: list
        anchors.fill: parent
        z: -1
        color: Kirigami.Theme.backgroundColor
        border.width: 1
        border.color: Qt.rgba(Kirigami.Theme.textColor.r, Kirigami.Theme.textColor.g, Kirigami.Theme.textColor.b, 0.3)
    }

    PlainText {
        objectName: "emptyText"
        parent: list
        anchors.fill: parent
        anchors.margins: Kirigami.Units.largeSpacing
        visible: list.count === 0
        text: list.emptyText
        color: Readable.on(Kirigami.Theme.backgroundColor, Kirigami.Theme.disabledTextColor)
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
}
