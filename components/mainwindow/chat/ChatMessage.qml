// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../../logic/LiteralText.js" as LiteralText
import "../../common/Readable.js" as Readable

//! A message: who wrote it, and its text, which is untrusted.
Rectangle {
    id: message
    objectName: "chatMessage"

    required property string role
    required property string content
    required property string agentName
    required property bool isStreaming
    required property bool visualFocus

    readonly property bool isOwn: role === "user"
    readonly property string author: isOwn ? Translation.tr("You") : Translation.tr("Assistant")

    //! Copies the selected part, or everything.
    function copy() {
        if (messageText.selectedText !== "") {
            messageText.copy();
            return;
        }
        messageText.selectAll();
        messageText.copy();
        messageText.deselect();
    }

    width: parent ? parent.width : 0
    implicitHeight: column.implicitHeight + 2 * Kirigami.Units.smallSpacing
    color: isOwn ? Kirigami.Theme.alternateBackgroundColor : Kirigami.Theme.backgroundColor
    Accessible.role: Accessible.ListItem
    Accessible.name: author + (agentLabel.visible ? " " + agentLabel.text : "") + ": " + content
    Accessible.focusable: true
    Accessible.focused: visualFocus

    Column {
        id: column

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Kirigami.Units.smallSpacing
        spacing: Kirigami.Units.smallSpacing / 2

        Row {
            width: parent.width
            spacing: Kirigami.Units.smallSpacing

            PlainText {
                id: authorLabel
                objectName: "messageAuthor"
                text: message.author
                color: Kirigami.Theme.textColor
                font.bold: true
                Accessible.ignored: true
            }
            PlainText {
                id: agentLabel
                objectName: "messageAgent"
                width: Math.min(implicitWidth, column.width - authorLabel.width - 2 * Kirigami.Units.gridUnit)
                visible: message.agentName !== ""
                text: "(" + LiteralText.oneLine(message.agentName) + ")"
                color: Kirigami.Theme.textColor
                opacity: 0.7
                Accessible.ignored: true
            }
            Loader {
                objectName: "streamingIndicator"
                active: message.isStreaming
                visible: active
                sourceComponent: QQC2.BusyIndicator {
                    width: Kirigami.Units.gridUnit
                    height: width
                    padding: 0
                    running: true
                    Accessible.name: Translation.tr("The reply is arriving")
                }
            }
        }

        TextEdit {
            id: messageText
            objectName: "messageText"

            width: parent.width
            text: message.content
            textFormat: TextEdit.PlainText
            readOnly: true
            selectByMouse: true
            persistentSelection: true
            wrapMode: TextEdit.Wrap
            color: Kirigami.Theme.textColor
            selectionColor: Kirigami.Theme.highlightColor
            selectedTextColor: Readable.on(Kirigami.Theme.highlightColor, Kirigami.Theme.highlightedTextColor)
            font: Kirigami.Theme.defaultFont
            Accessible.ignored: true
        }
    }

    FocusRing {
        control: message
        anchors.margins: 0
        radius: 2
        border.color: Kirigami.Theme.focusColor
    }
}
