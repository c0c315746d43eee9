// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "common/FocusChain.js" as FocusChain

//! A dialog inside its parent, which it dims. A click outside or Escape closes it. While it is open, Tab stays inside;
//! afterwards the focus returns to where it was.
FocusScope {
    id: dialog

    readonly property bool isDialog: true
    property string title
    //! Below the title, in a column.
    default property alias content: contentColumn.data
    //! At the bottom right.
    property alias buttons: buttonRow.data
    //! The most that the dialog takes of its parent.
    property int maximumWidth: 500
    property real widthShare: 0.9
    property real heightShare: 0.9
    property Item focusBefore: null
    readonly property alias box: box

    signal opened()
    signal closed()

    function open() {
        if (visible)
            return;
        focusBefore = Window.activeFocusItem;
        visible = true;
        opened();
        // Not if a listener has chosen a field.
        if (!activeFocus)
            FocusChain.focusFirst(dialog);
    }

    function close() {
        if (!visible)
            return;
        const hadFocus = activeFocus;
        visible = false;
        if (hadFocus && focusBefore)
            focusBefore.forceActiveFocus(Qt.OtherFocusReason);
        focusBefore = null;
        closed();
    }

    //! Called when the focus has moved. Controls handle Tab themselves, so that it can't be caught before.
    function keepFocus() {
        const item = Window.activeFocusItem;
        if (visible && item && !FocusChain.dialogAround(item))
            FocusChain.step(dialog, item, item.focusReason !== Qt.BacktabFocusReason);
    }

    anchors.fill: parent
    z: 1000
    visible: false
    Keys.onEscapePressed: close()
    Accessible.role: Accessible.Dialog
    Accessible.name: title

    Connections {
        target: dialog.Window.window
        enabled: dialog.visible

        // Deferred, because the change may be a step of a longer one.
        function onActiveFocusItemChanged() {
            Qt.callLater(dialog.keepFocus);
        }
    }

    Rectangle {
        objectName: "dialogShade"

        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.5)

        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
            hoverEnabled: true
            onClicked: dialog.close()
            onWheel: wheel.accepted = true
            Accessible.ignored: true
        }
    }

    Rectangle {
        id: box
        objectName: "dialogBox"

        readonly property real padding: Kirigami.Units.largeSpacing
        //! Height of the whole content. No binding: when a wrapped text appears, the layout reports its height twice.
        property real contentLength: 0

        anchors.centerIn: parent
        width: Math.min(dialog.maximumWidth, dialog.width * dialog.widthShare)
        height: Math.min(heading.implicitHeight + contentLength + buttonRow.implicitHeight + 4 * padding,
                         dialog.height * dialog.heightShare)
        radius: Kirigami.Units.smallSpacing
        color: Kirigami.Theme.backgroundColor
        border.width: 1
        border.color: Qt.rgba(Kirigami.Theme.textColor.r, Kirigami.Theme.textColor.g, Kirigami.Theme.textColor.b, 0.3)
        Kirigami.Theme.inherit: false
        Kirigami.Theme.colorSet: Kirigami.Theme.Window

        ClickBarrier {}

        PlainText {
            id: heading
            objectName: "dialogTitle"

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.margins: box.padding
            text: dialog.title
            color: Kirigami.Theme.textColor
            font.bold: true
            font.pointSize: Kirigami.Theme.defaultFont.pointSize * 1.2
            Accessible.role: Accessible.Heading
        }

        ScrollPane {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: heading.bottom
            anchors.bottom: buttonRow.top
            anchors.margins: box.padding
            anchors.rightMargin: 0 // the scroll bar is beside the content
            contentHeight: box.contentLength
            thumbColor: Qt.rgba(Kirigami.Theme.textColor.r, Kirigami.Theme.textColor.g, Kirigami.Theme.textColor.b, 0.35)
            scrollBarName: Translation.tr("Scroll dialog")

            ColumnLayout {
                id: contentColumn

                anchors.left: parent.left
                width: parent.width - box.padding
                spacing: Kirigami.Units.smallSpacing
                onImplicitHeightChanged: box.contentLength = implicitHeight
            }
        }

        RowLayout {
            id: buttonRow

            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: box.padding
            spacing: Kirigami.Units.smallSpacing
        }
    }
}
