// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../../common/Readable.js" as Readable

//! The list of sessions. Return switches to a session, F2 renames and Delete deletes it; the menu key opens its menu.
ListView {
    id: list
    objectName: "sessionList"

    //! The SessionListController.
    required property var sessions

    //! A click doesn't give it the focus.
    readonly property bool visualFocus: activeFocus
    readonly property string currentId: currentItem ? currentItem.sessionId : ""

    function openMenu(row, position) {
        currentIndex = row.index;
        menuLoader.active = true;
        menuLoader.item.sessionId = row.sessionId;
        menuLoader.item.popup(row, position.x, position.y);
    }

    model: sessions.rows
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: 0
    activeFocusOnTab: true
    Kirigami.Theme.inherit: false
    Kirigami.Theme.colorSet: Kirigami.Theme.View
    Accessible.role: Accessible.List
    Accessible.name: Translation.tr("Sessions")
    Keys.onReturnPressed: if (currentId !== "") sessions.choose(currentId)
    Keys.onEnterPressed: if (currentId !== "") sessions.choose(currentId)
    Keys.onSpacePressed: if (currentId !== "") sessions.choose(currentId)
    Keys.onDeletePressed: if (currentId !== "") sessions.remove(currentId)
    Keys.onPressed: {
        if (!currentItem)
            return;
        if (event.key === Qt.Key_F2) {
            sessions.startEditing(currentId);
            event.accepted = true;
        } else if (event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier)) {
            openMenu(currentItem, Qt.point(Kirigami.Units.gridUnit, currentItem.height));
            event.accepted = true;
        }
    }

    QQC2.ScrollBar.vertical: QQC2.ScrollBar {
        Accessible.name: Translation.tr("Scroll sessions")
    }

    delegate: SessionRow {
        width: list.width
        view: list
        sessions: list.sessions
    }

    Rectangle {
        z: -1
        anchors.fill: parent
        color: Kirigami.Theme.backgroundColor
    }

    PlainText {
        objectName: "noSessions"
        anchors.centerIn: parent
        width: Math.min(implicitWidth, parent.width)
        visible: list.count === 0
        text: Translation.tr("No sessions")
        color: Readable.on(Kirigami.Theme.backgroundColor, Kirigami.Theme.disabledTextColor)
    }

    FocusRing {
        control: list
        anchors.fill: parent
        anchors.margins: 0
        radius: 2
        border.color: Kirigami.Theme.focusColor
        visible: list.visualFocus && list.count === 0
    }

    Loader {
        id: menuLoader

        active: false
        sourceComponent: QQC2.Menu {
            objectName: "sessionMenu"

            property string sessionId

            QQC2.MenuItem {
                objectName: "renameSessionItem"
                text: Translation.tr("Rename")
                onTriggered: list.sessions.startEditing(sessionId)
            }
            QQC2.MenuItem {
                objectName: "deleteSessionItem"
                text: Translation.tr("Delete")
                onTriggered: list.sessions.remove(sessionId)
            }
        }
    }
}
