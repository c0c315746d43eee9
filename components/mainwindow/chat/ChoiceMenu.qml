// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../../logic/LiteralText.js" as LiteralText
import "../../common/Readable.js" as Readable

//! The list of a ChoiceButton. There may be thousands of rows, so that a menu, which creates all its entries, won't do.
QQC2.Popup {
    id: menu

    required property var button

    parent: menu.button
    y: menu.button.height
    width: menu.button.menuWidth
    height: Math.min(list.contentHeight + topPadding + bottomPadding, 400)
    margins: Kirigami.Units.smallSpacing
    padding: 1
    focus: true
    closePolicy: QQC2.Popup.CloseOnEscape | QQC2.Popup.CloseOnPressOutsideParent
    onAboutToShow: {
        list.currentIndex = menu.button.currentIndex;
        list.positionViewAtIndex(menu.button.currentIndex, ListView.Center);
    }
    onOpened: list.forceActiveFocus(Qt.TabFocusReason)
    onClosed: menu.button.forceActiveFocus(Qt.PopupFocusReason)

    contentItem: ListView {
        id: list
        objectName: "choiceList"

        model: menu.visible ? menu.button.rows : []
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: true
        Kirigami.Theme.inherit: false
        Kirigami.Theme.colorSet: Kirigami.Theme.View
        QQC2.ScrollBar.vertical: QQC2.ScrollBar {
            Accessible.name: Translation.tr("Scroll")
        }
        Accessible.role: Accessible.List
        Accessible.name: menu.button.name
        Keys.onReturnPressed: choose(currentIndex)
        Keys.onEnterPressed: choose(currentIndex)
        Keys.onSpacePressed: choose(currentIndex)
        Keys.onPressed: {
            const last = count - 1;
            const page = Math.max(1, Math.floor(height / Kirigami.Units.gridUnit / 2));
            const steps = ({});
            steps[Qt.Key_Home] = 0;
            steps[Qt.Key_End] = last;
            steps[Qt.Key_PageUp] = currentIndex - page;
            steps[Qt.Key_PageDown] = currentIndex + page;
            if (steps.hasOwnProperty(event.key)) {
                currentIndex = Math.max(0, Math.min(last, steps[event.key]));
                event.accepted = true;
            }
        }

        function choose(index) {
            menu.close();
            if (index >= 0)
                menu.button.chosen(index);
        }

        delegate: Rectangle {
            id: row
            objectName: "choiceRow"

            required property int index
            required property var modelData
            readonly property bool current: ListView.isCurrentItem

            width: list.width
            height: Math.max(rowText.implicitHeight + 2 * Kirigami.Units.smallSpacing, Kirigami.Units.gridUnit * 1.5)
            color: current ? Kirigami.Theme.highlightColor : Kirigami.Theme.backgroundColor
            Accessible.role: Accessible.MenuItem
            Accessible.name: rowText.text
            Accessible.onPressAction: list.choose(index)

            PlainText {
                id: rowText
                objectName: "choiceName"

                anchors.fill: parent
                anchors.leftMargin: Kirigami.Units.smallSpacing
                anchors.rightMargin: Kirigami.Units.smallSpacing
                verticalAlignment: Text.AlignVCenter
                text: LiteralText.oneLine(row.modelData.name)
                color: row.current ? Readable.on(row.color, Kirigami.Theme.highlightedTextColor) : Kirigami.Theme.textColor
                font.bold: row.index === menu.button.currentIndex
                Accessible.ignored: true
            }
            MouseArea {
                anchors.fill: parent
                hoverEnabled: true
                onPositionChanged: list.currentIndex = row.index
                onClicked: list.choose(row.index)
                Accessible.ignored: true
            }
        }
    }
}
