// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import org.kde.loomra.components.controls 1.0

import "../logic/Geometry.js" as Geometry
import "../../../../components/logic/LiteralText.js" as LiteralText
import "../logic/Sessions.js" as Sessions
import "../../../../components/logic/Translatable.js" as Translatable

//! The sessions of the bridge, to switch between them and to delete them. Dark in both themes, like the bar.
Rectangle {
    id: popup
    objectName: "sessionPopup"

    required property var bar
    required property Item barCard

    readonly property int rowHeight: 52
    // The list's own count changes within its layout.
    readonly property int contentHeight: bar.sessionPopupModel.count * rowHeight
    readonly property bool scrolls: contentHeight > rows.height

    width: bar.barWidth - 60
    height: Geometry.menuHeight(header.height + 6 + contentHeight, 400, barCard.targetY)
    radius: 14
    color: Qt.rgba(0.10, 0.06, 0.18, 0.95)
    border.width: 1
    border.color: Qt.rgba(1, 1, 1, 0.10)
    visible: bar.slashSessionPopupVisible
    Keys.onEscapePressed: bar.slashSessionPopupVisible = false
    Accessible.role: Accessible.Dialog
    Accessible.name: heading.text

    ClickBarrier {}

    Item {
        id: header

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.leftMargin: 18
        anchors.rightMargin: 12
        anchors.topMargin: 8
        height: 36

        PlainText {
            id: heading

            anchors.left: parent.left
            anchors.right: deleteAll.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            text: Translatable.filled(popup.bar.tr("Sessions ({count})"), { "count": popup.bar.sessionPopupModel.count })
            color: Qt.rgba(1, 1, 1, 0.95)
            font.pixelSize: 14
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }

        PlainButton {
            id: deleteAll
            objectName: "deleteAllSessionsBtn"

            anchors.right: closeButton.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            width: deleteAllText.implicitWidth + 24
            height: 28
            label: popup.bar.tr("Delete All")
            onClicked: popup.bar.deleteListedSessions()

            background: Rectangle {
                radius: 8
                color: Qt.rgba(0.90, 0.22, 0.21, deleteAll.hovered || deleteAll.pressed ? 0.35 : 0.18)
            }
            contentItem: Item {
                PlainText {
                    id: deleteAllText

                    anchors.centerIn: parent
                    text: deleteAll.label
                    color: "#ff8a80"
                    font.pixelSize: 12
                    Accessible.ignored: true
                }
            }

            FocusRing {
                control: deleteAll
                radius: 10
                border.color: "#e9d5ff"
            }
        }

        RoundButton {
            id: closeButton
            objectName: "closeSessionsBtn"

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            implicitWidth: 28
            label: popup.bar.tr("Close")
            glyph: "\u2715"
            glyphSize: 12
            hoverFill: Qt.rgba(1, 1, 1, 0.15)
            onClicked: popup.bar.slashSessionPopupVisible = false
        }
    }

    ListView {
        id: rows
        objectName: "sessionList"

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: header.bottom
        anchors.topMargin: 6
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 8
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        interactive: popup.scrolls
        keyNavigationEnabled: true
        highlightMoveDuration: 0
        model: popup.bar.sessionPopupModel
        Accessible.role: Accessible.List
        Accessible.name: heading.text

        delegate: PlainButton {
            id: row
            objectName: "sessionRow"

            required property int index
            required property string sid
            required property string sname
            required property double screatedAt
            readonly property bool current: ListView.isCurrentItem && ListView.view.activeFocus

            x: LayoutMirroring.enabled ? ListView.view.width - width : 0
            width: ListView.view.width - (popup.scrolls ? scrollBar.width + 4 : 0)
            height: popup.rowHeight
            // Only the current row is in the tab order. It must stay there while it has the focus, see MessageRow.
            focusPolicy: ListView.isCurrentItem || activeFocus ? Qt.TabFocus : Qt.NoFocus
            label: LiteralText.oneLine(sname)
            Accessible.description: details.text
            onClicked: popup.bar.switchToSession(index)

            background: Rectangle {
                radius: 8
                color: row.hovered || row.pressed ? Qt.rgba(1, 1, 1, 0.08) : "transparent"
                border.width: row.current ? 2 : 0
                border.color: "#e9d5ff"
            }

            contentItem: Item {
                FallbackIcon {
                    id: icon

                    anchors.left: parent.left
                    anchors.leftMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    name: "view-history"
                    size: 18
                    color: Qt.rgba(1, 1, 1, 0.70)
                }

                Column {
                    anchors.left: icon.right
                    anchors.leftMargin: 12
                    anchors.right: deleteButton.left
                    anchors.rightMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 3

                    PlainText {
                        id: nameText

                        width: parent.width
                        text: row.label
                        color: Qt.rgba(1, 1, 1, 0.92)
                        font.pixelSize: 13
                        horizontalAlignment: Text.AlignLeft
                        Accessible.ignored: true
                    }

                    PlainText {
                        id: details

                        width: parent.width
                        horizontalAlignment: Text.AlignLeft
                        text: [Sessions.timeText(row.screatedAt, popup.bar.tr), Sessions.shortId(row.sid)]
                            .filter(part => part !== "").join(" · ")
                        color: Qt.rgba(1, 1, 1, 0.55)
                        font.pixelSize: 11
                        Accessible.ignored: true
                    }
                }

                RoundButton {
                    id: deleteButton
                    objectName: "deleteSessionBtn"

                    anchors.right: parent.right
                    anchors.rightMargin: 10
                    anchors.verticalCenter: parent.verticalCenter
                    implicitWidth: 28
                    focusPolicy: row.ListView.isCurrentItem || activeFocus ? Qt.TabFocus : Qt.NoFocus
                    label: popup.bar.tr("Delete session")
                    Accessible.description: row.label
                    iconName: "edit-delete"
                    iconSize: 14
                    iconMask: true
                    iconColor: highlighted ? "#ff8a80" : Qt.rgba(1, 1, 1, 0.70)
                    hoverFill: Qt.rgba(0.90, 0.22, 0.21, 0.25)
                    onClicked: popup.bar.deleteSession(row.index)
                }
            }

            HoverTip {
                control: row
                text: row.label
                enabledHere: nameText.truncated && !deleteButton.hovered
            }
        }

        T.ScrollBar.vertical: PlainScrollBar {
            id: scrollBar
            objectName: "sessionScrollBar"

            thumbColor: Qt.rgba(1, 1, 1, 0.3)
            Accessible.name: popup.bar.tr("Scroll sessions")
        }
    }
}
