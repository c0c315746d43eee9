// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../../components/logic/LiteralText.js" as LiteralText
import "../../common"
import "../common"

//! A row of the list of sessions: its name, or a field to change it, and what can be done with it.
Item {
    id: row
    objectName: "managedSession"

    required property var bar
    required property var theme
    //! Id of the current session, "" for none.
    required property string activeId
    required property int index
    required property string sid
    required property string sname

    readonly property bool active: sid === activeId
    readonly property bool renaming: sid === bar.renamingSessionId
    readonly property string shownName: LiteralText.oneLine(sname)

    //! The renaming was started from the keyboard, so the button gets the focus back afterwards. After a click the prompt
    //! gets it, as from anything that vanishes.
    property bool renamedByKeys: false

    //! The row is removed while its Delete button has the keyboard focus.
    signal removedByKeys()

    function focusDelete() {
        deleteButton.forceActiveFocus(Qt.TabFocusReason);
    }

    ListView.onRemove: {
        if (deleteButton.visualFocus)
            removedByKeys();
    }
    onRenamingChanged: {
        if (!renaming && renamedByKeys && nameField.item && nameField.item.activeFocus)
            renameButton.forceActiveFocus(Qt.TabFocusReason);
    }
    Accessible.role: Accessible.ListItem
    Accessible.name: shownName
    Accessible.description: [active ? activeBadge.text : "", idText.text].filter(text => text !== "").join(", ")

    Rectangle {
        objectName: "ground"

        anchors.fill: parent
        radius: 6
        color: row.active ? row.theme.uiAccentDim : "transparent"
        border.width: row.active ? 1 : 0
        border.color: row.theme.uiAccentBorder
    }

    Column {
        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.right: buttons.left
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Row {
            width: parent.width
            visible: !row.renaming
            spacing: 8

            ShortText {
                id: nameText
                objectName: "sessionName"

                width: Math.min(implicitWidth, parent.width - (row.active ? activeBadge.width + parent.spacing : 0))
                text: row.shownName
                whole: row.sname
                color: row.theme.uiTextStrong
                font.pointSize: 10
                Accessible.ignored: true
            }

            SettingsBadge {
                id: activeBadge
                objectName: "activeBadge"

                visible: row.active
                // An invisible text is laid out too.
                // i18n: the current session
                text: visible ? row.bar.tr("active") : ""
                textColor: row.theme.accentText
            }
        }

        LateLoader {
            id: nameField

            width: parent.width
            visible: row.renaming
            file: Qt.resolvedUrl("SessionNameField.qml")
            properties: ({ "bar": row.bar, "theme": row.theme })
            wanted: row.renaming
            kept: false
        }

        ShortText {
            id: idText
            objectName: "sessionId"

            width: parent.width
            text: LiteralText.oneLine(row.sid)
            whole: row.sid
            color: row.theme.uiTextCaption
            font.family: "monospace"
            font.pointSize: 7
            Accessible.ignored: true
        }
    }

    Row {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6

        SettingsButton {
            objectName: "switchSessionBtn"

            theme: row.theme
            visible: !row.active
            label: row.bar.tr("Switch")
            Accessible.description: row.shownName
            onClicked: row.bar.sessionSwitchTo(row.sid)
        }

        SettingsButton {
            id: renameButton
            objectName: "renameSessionBtn"

            theme: row.theme
            label: row.renaming ? row.bar.tr("Save") : row.bar.tr("Rename")
            Accessible.description: row.shownName
            onClicked: {
                if (row.renaming) {
                    row.bar.saveSessionName();
                    return;
                }
                row.renamedByKeys = visualFocus;
                row.bar.startRenaming(row.sid, row.sname);
                nameField.item.forceActiveFocus(Qt.TabFocusReason);
            }
        }

        SettingsButton {
            id: deleteButton
            objectName: "removeSessionBtn"

            theme: row.theme
            fill: row.theme.dangerFill
            hoverFill: row.theme.dangerHover
            borderColor: "transparent"
            textColor: row.theme.dangerText
            label: row.bar.tr("Delete")
            Accessible.description: row.shownName
            onClicked: row.bar.sessionDelete(row.sid)
        }
    }
}
