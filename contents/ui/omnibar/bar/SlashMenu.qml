// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import org.kde.loomra.components.controls 1.0

import "../logic/Geometry.js" as Geometry
import "../../../../components/logic/Translatable.js" as Translatable

//! The local commands that match what the user types. The focus stays in the input, which handles the keys. Dark in
//! both themes, like the bar.
Rectangle {
    id: menu
    objectName: "slashMenu"

    required property var bar
    required property Item barCard

    readonly property int rowHeight: 38
    readonly property var commands: bar.filteredSlashCommands()
    readonly property int contentHeight: commands.length * rowHeight
    readonly property bool scrolls: contentHeight > rows.height

    //! Where the pointer was last seen, in the window; null since the menu opened. A row that appears below a resting
    //! pointer must not become the current one.
    property var pointer: null

    function followPointer(row, x, y, index) {
        const place = row.mapToItem(null, x, y);
        const moved = pointer !== null && (place.x !== pointer.x || place.y !== pointer.y);
        pointer = place;
        if (moved)
            bar.slashMenuIndex = index;
    }

    function revealCurrent() {
        rows.positionViewAtIndex(bar.slashMenuIndex, ListView.Contain);
    }

    width: bar.barWidth - 80
    height: Geometry.menuHeight(heading.height + contentHeight, 320, barCard.targetY)
    radius: 14
    color: Qt.rgba(0.12, 0.06, 0.20, 0.95)
    border.width: 1
    border.color: Qt.rgba(1, 1, 1, 0.10)
    visible: bar.slashMenuShown
    onVisibleChanged: pointer = null
    Accessible.role: Accessible.PopupMenu
    Accessible.name: heading.text

    ClickBarrier {}

    PlainText {
        id: heading

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.leftMargin: 18
        anchors.rightMargin: 18
        anchors.topMargin: 8
        height: 26
        verticalAlignment: Text.AlignVCenter
        text: menu.bar.tr("Commands")
        color: Qt.rgba(1, 1, 1, 0.55)
        font.pixelSize: 11
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }

    ListView {
        id: rows
        objectName: "slashMenuList"

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: heading.bottom
        anchors.bottom: parent.bottom
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        anchors.bottomMargin: 8
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        interactive: menu.scrolls
        keyNavigationEnabled: false
        model: menu.commands
        Accessible.ignored: true
        // Deferred because new rows have no place yet.
        onCountChanged: Qt.callLater(menu.revealCurrent)

        delegate: PlainButton {
            id: row
            objectName: "slashMenuRow"

            required property int index
            required property var modelData
            readonly property bool current: index === menu.bar.slashMenuIndex

            x: LayoutMirroring.enabled ? ListView.view.width - width : 0
            width: ListView.view.width - (menu.scrolls ? scrollBar.width + 4 : 0)
            height: menu.rowHeight
            focusPolicy: Qt.NoFocus
            activeFocusOnTab: false
            label: "/" + modelData.name
            Accessible.description: summary.text
            Accessible.selected: current
            onClicked: menu.bar.runSlashCommandAt(index)

            background: Rectangle {
                radius: 8
                color: row.current ? Qt.rgba(1, 0.6, 0.3, 0.18) : "transparent"
            }

            contentItem: Item {
                FallbackIcon {
                    id: icon

                    anchors.left: parent.left
                    anchors.leftMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    name: row.modelData.icon
                    size: 18
                    color: Qt.rgba(1, 1, 1, 0.80)
                }

                PlainText {
                    id: name

                    anchors.left: icon.right
                    anchors.leftMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    width: 70
                    horizontalAlignment: Text.AlignLeft
                    text: row.label
                    color: Qt.rgba(1, 1, 1, 0.95)
                    font.pixelSize: 14
                    font.weight: Font.Medium
                    Accessible.ignored: true
                }

                PlainText {
                    id: summary

                    anchors.left: name.right
                    anchors.leftMargin: 12
                    anchors.right: parent.right
                    anchors.rightMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    text: Translatable.translated(row.modelData.description, menu.bar.tr)
                    color: Qt.rgba(1, 1, 1, 0.60)
                    font.pixelSize: 13
                    Accessible.ignored: true
                }
            }

            MouseArea {
                anchors.fill: parent
                hoverEnabled: true
                acceptedButtons: Qt.NoButton
                onEntered: menu.followPointer(row, mouseX, mouseY, row.index)
                onPositionChanged: menu.followPointer(row, mouseX, mouseY, row.index)
                Accessible.ignored: true
            }
        }

        T.ScrollBar.vertical: PlainScrollBar {
            id: scrollBar
            objectName: "slashMenuScrollBar"

            thumbColor: Qt.rgba(1, 1, 1, 0.3)
            Accessible.name: menu.bar.tr("Scroll commands")
        }
    }

    Connections {
        target: menu.bar

        function onSlashMenuIndexChanged() {
            menu.revealCurrent();
        }
    }
}
