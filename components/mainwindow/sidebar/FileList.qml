// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../../logic/LiteralText.js" as LiteralText
import "../../common/Readable.js" as Readable

//! The files and folders of the project. Return or a click chooses one.
ListView {
    id: list
    objectName: "fileList"

    required property var projectModel

    //! A click doesn't give it the focus.
    readonly property bool visualFocus: activeFocus

    signal chosen(string path)

    function choose(index) {
        if (projectModel && index >= 0)
            chosen(projectModel.getPath(index));
    }

    model: projectModel
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: 0
    activeFocusOnTab: true
    Kirigami.Theme.inherit: false
    Kirigami.Theme.colorSet: Kirigami.Theme.View
    Accessible.role: Accessible.List
    Accessible.name: Translation.tr("Files")
    Keys.onReturnPressed: choose(currentIndex)
    Keys.onEnterPressed: choose(currentIndex)
    Keys.onSpacePressed: choose(currentIndex)

    QQC2.ScrollBar.vertical: QQC2.ScrollBar {
        Accessible.name: Translation.tr("Scroll files")
    }

    delegate: Rectangle {
        id: row
        objectName: "fileRow"

        required property int index
        required property var model
        readonly property bool visualFocus: list.visualFocus && ListView.isCurrentItem
        readonly property color textColor: mouse.containsMouse ? Readable.on(Kirigami.Theme.hoverColor, Kirigami.Theme.highlightedTextColor)
                                                              : Kirigami.Theme.textColor

        width: list.width
        height: Kirigami.Units.gridUnit * 1.5
        color: mouse.containsMouse ? Kirigami.Theme.hoverColor : "transparent"
        Accessible.role: Accessible.ListItem
        Accessible.name: nameText.text
        Accessible.description: model.isDirectory ? Translation.tr("Folder") : Translation.tr("File")
        Accessible.focusable: true
        Accessible.focused: visualFocus
        Accessible.onPressAction: list.choose(index)

        FallbackIcon {
            id: icon

            anchors.left: parent.left
            anchors.leftMargin: Kirigami.Units.smallSpacing
            anchors.verticalCenter: parent.verticalCenter
            name: row.model.icon
            fallback: row.model.isDirectory ? "folder" : "text-x-generic"
            color: row.textColor
        }
        PlainText {
            id: nameText
            objectName: "fileName"

            anchors.left: icon.right
            anchors.leftMargin: Kirigami.Units.smallSpacing
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            horizontalAlignment: Text.AlignLeft
            text: LiteralText.oneLine(row.model.name)
            color: row.textColor
            Accessible.ignored: true
        }
        MouseArea {
            id: mouse

            readonly property bool hovered: containsMouse

            anchors.fill: parent
            hoverEnabled: true
            Accessible.ignored: true
            onClicked: {
                list.currentIndex = row.index;
                list.choose(row.index);
            }
        }
        HoverTip {
            control: mouse
            text: nameText.truncated ? LiteralText.printable(row.model.name) : ""
        }
        FocusRing {
            control: row
            anchors.margins: 0
            radius: 2
            border.color: Kirigami.Theme.focusColor
        }
    }

    Rectangle {
        z: -1
        anchors.fill: parent
        color: Kirigami.Theme.backgroundColor
    }

    FocusRing {
        control: list
        anchors.fill: parent
        anchors.margins: 0
        radius: 2
        border.color: Kirigami.Theme.focusColor
        visible: list.visualFocus && list.count === 0
    }
}
