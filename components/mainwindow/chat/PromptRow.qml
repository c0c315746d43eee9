// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../../common"

//! The input of the chat. Ctrl+Return sends; Tab leaves the input.
FocusScope {
    id: row

    //! The ChatView.
    required property var chatView

    readonly property bool canSend: chatView.ready && input.text.trim() !== ""

    function send() {
        if (canSend && chatView.send(input.text))
            input.clear();
    }

    implicitHeight: layout.implicitHeight

    RowLayout {
        id: layout

        anchors.fill: parent
        spacing: Kirigami.Units.smallSpacing

        QQC2.ScrollView {
            focus: true
            Layout.fillWidth: true
            Layout.preferredHeight: Math.max(40, Math.min(150, input.implicitHeight))
            Kirigami.Theme.inherit: false
            Kirigami.Theme.colorSet: Kirigami.Theme.View
            QQC2.ScrollBar.horizontal.policy: QQC2.ScrollBar.AlwaysOff

            QQC2.TextArea {
                id: input
                objectName: "chatInput"

                focus: true
                placeholderText: Translation.tr("Type your message...")
                placeholderTextColor: Qt.rgba(color.r, color.g, color.b, 0.7)
                textFormat: TextEdit.PlainText
                wrapMode: TextEdit.Wrap
                // The cursor of an empty field is beside the placeholder. A text is aligned by its own direction.
                horizontalAlignment: LayoutMirroring.enabled && length === 0 ? TextEdit.AlignLeft : undefined
                selectByMouse: true
                color: Kirigami.Theme.textColor
                background: Rectangle {
                    radius: 3
                    color: Kirigami.Theme.backgroundColor
                    border.width: input.activeFocus ? 2 : 1
                    border.color: input.activeFocus ? Kirigami.Theme.focusColor
                                                    : Qt.rgba(Kirigami.Theme.textColor.r, Kirigami.Theme.textColor.g, Kirigami.Theme.textColor.b, 0.3)
                }
                Accessible.name: Translation.tr("Message")
                Accessible.description: Translation.tr("Ctrl+Return sends")
                Keys.onTabPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
                // Intentional: without Control, Return does nothing and begins no new line.
                Keys.onReturnPressed: if (event.modifiers & Qt.ControlModifier) row.send()
                Keys.onEnterPressed: if (event.modifiers & Qt.ControlModifier) row.send()
            }
        }

        TextButton {
            id: sendButton
            objectName: "sendButton"

            Layout.alignment: Qt.AlignBottom
            Layout.preferredHeight: 40
            label: Translation.tr("Send")
            enabled: row.canSend
            onClicked: {
                row.send();
                // The button is disabled now.
                input.forceActiveFocus(Qt.OtherFocusReason);
            }
        }
    }
}
