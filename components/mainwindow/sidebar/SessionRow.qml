// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../../logic/LiteralText.js" as LiteralText
import "../../common/Readable.js" as Readable

//! A session: its name, or a field to change it.
Rectangle {
    id: row
    objectName: "sessionRow"

    required property ListView view
    required property var sessions
    required property int index
    required property var model

    readonly property string sessionId: model.id
    readonly property bool selected: sessionId === sessions.selectedSessionId
    readonly property bool editing: sessionId === sessions.editedSessionId
    readonly property bool visualFocus: view.visualFocus && ListView.isCurrentItem
    readonly property string shownName: LiteralText.oneLine(model.name)

    height: Math.max(nameText.implicitHeight + 2 * Kirigami.Units.smallSpacing, Kirigami.Units.gridUnit * 1.8)
    color: selected ? Kirigami.Theme.highlightColor : mouse.containsMouse ? Kirigami.Theme.hoverColor : "transparent"
    Accessible.role: Accessible.ListItem
    Accessible.name: shownName
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.focusable: true
    Accessible.focused: visualFocus
    Accessible.onPressAction: sessions.choose(sessionId)

    PlainText {
        id: nameText
        objectName: "sessionName"

        anchors.fill: parent
        anchors.leftMargin: Kirigami.Units.smallSpacing
        anchors.rightMargin: Kirigami.Units.smallSpacing
        visible: !row.editing
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        text: row.shownName
        color: row.selected || mouse.containsMouse ? Readable.on(row.color, Kirigami.Theme.highlightedTextColor)
                                                  : Kirigami.Theme.textColor
        Accessible.ignored: true
    }

    MouseArea {
        id: mouse

        readonly property bool hovered: containsMouse

        anchors.fill: parent
        enabled: !row.editing
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        Accessible.ignored: true
        onClicked: {
            row.view.currentIndex = row.index;
            if (mouse.button === Qt.RightButton)
                row.view.openMenu(row, Qt.point(mouse.x, mouse.y));
            else
                row.sessions.choose(row.sessionId);
        }
        onDoubleClicked: {
            if (mouse.button === Qt.LeftButton)
                row.sessions.startEditing(row.sessionId);
        }
    }

    HoverTip {
        control: mouse
        text: nameText.truncated || row.shownName !== row.model.name ? LiteralText.printable(row.model.name) : ""
    }

    Loader {
        anchors.fill: parent
        active: row.editing
        // Otherwise the list would give it the focus again, and assistive technology does not know it.
        onActiveChanged: {
            if (!active && focus)
                row.focus = true;
        }
        Accessible.ignored: true
        sourceComponent: QQC2.TextField {
            id: field
            objectName: "sessionNameField"

            property bool wasFocused: false

            selectByMouse: true
            Accessible.name: Translation.tr("New name")
            Keys.onEscapePressed: stop()
            onAccepted: {
                row.sessions.saveName(text);
                row.view.forceActiveFocus(Qt.OtherFocusReason);
            }
            onActiveFocusChanged: {
                // Leaving the field discards the change.
                if (!activeFocus && wasFocused)
                    row.sessions.stopEditing();
                wasFocused = activeFocus;
            }
            Component.onCompleted: {
                text = row.model.name;
                selectAll();
                forceActiveFocus(Qt.OtherFocusReason);
            }

            function stop() {
                row.sessions.stopEditing();
                row.view.forceActiveFocus(Qt.OtherFocusReason);
            }
        }
    }

    FocusRing {
        control: row
        anchors.margins: 1
        radius: 2
        border.color: row.selected ? Kirigami.Theme.highlightedTextColor : Kirigami.Theme.focusColor
    }
}
