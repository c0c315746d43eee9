// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

//! A message inside a page. Screen readers speak warnings when they appear. Kirigami's shows markup, which a path may contain.
Rectangle {
    id: message

    property string text
    property bool isWarning: false

    readonly property color tone: isWarning ? Kirigami.Theme.neutralTextColor : Kirigami.Theme.activeTextColor

    readonly property real padding: Kirigami.Units.smallSpacing

    Layout.fillWidth: true
    // Not the height of a layout, which changes only after that of the text in it.
    implicitHeight: Math.max(icon.height, label.implicitHeight) + 2 * padding
    radius: Kirigami.Units.smallSpacing
    color: Qt.rgba(tone.r, tone.g, tone.b, 0.15)
    border.width: 1
    border.color: tone
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    onTextChanged: if (isWarning) announcer.announce(text)

    Announcer {
        id: announcer
    }

    Kirigami.Icon {
        id: icon

        anchors.left: parent.left
        anchors.top: parent.top
        anchors.margins: message.padding
        width: Kirigami.Units.iconSizes.smallMedium
        height: width
        source: message.isWarning ? "dialog-warning" : "dialog-information"
        Accessible.ignored: true
    }

    ConfigText {
        id: label

        anchors.left: icon.right
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.margins: message.padding
        text: message.text
        Accessible.ignored: true
    }
}
