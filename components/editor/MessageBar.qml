// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../common"

//! A message about something that failed. Visible while there is one.
Rectangle {
    id: messageBar

    property string text

    signal dismissed()

    implicitHeight: content.implicitHeight + 2 * Kirigami.Units.smallSpacing
    visible: text !== ""
    radius: Kirigami.Units.smallSpacing
    color: Kirigami.Theme.backgroundColor
    border.width: 1
    border.color: Kirigami.Theme.negativeTextColor
    onTextChanged: announcer.announce(text)

    Announcer {
        id: announcer
    }

    RowLayout {
        id: content

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.margins: Kirigami.Units.smallSpacing
        spacing: Kirigami.Units.smallSpacing

        FallbackIcon {
            name: "dialog-error"
            size: Kirigami.Units.iconSizes.small
            color: Kirigami.Theme.negativeTextColor
        }

        PlainText {
            objectName: "editorMessage"

            Layout.fillWidth: true
            text: messageBar.text
            color: Kirigami.Theme.textColor
            wrapMode: Text.Wrap
            maximumLineCount: 4
        }

        TextButton {
            objectName: "dismissButton"

            label: Translation.tr("Close")
            Accessible.description: messageBar.text
            onClicked: messageBar.dismissed()
        }
    }
}
