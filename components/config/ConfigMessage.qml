// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami

//! A message inside a page. Kirigami's shows markup, which a path may contain.
Rectangle {
    id: message

    property string text
    property bool isWarning: false

    readonly property color tone: isWarning ? Kirigami.Theme.neutralTextColor : Kirigami.Theme.activeTextColor

    Layout.fillWidth: true
    implicitHeight: row.implicitHeight + 2 * row.anchors.margins
    radius: Kirigami.Units.smallSpacing
    color: Qt.rgba(tone.r, tone.g, tone.b, 0.15)
    border.width: 1
    border.color: tone
    Accessible.role: isWarning ? Accessible.AlertMessage : Accessible.StaticText
    Accessible.name: text

    RowLayout {
        id: row

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Kirigami.Units.smallSpacing
        spacing: Kirigami.Units.smallSpacing

        Kirigami.Icon {
            implicitWidth: Kirigami.Units.iconSizes.smallMedium
            implicitHeight: implicitWidth
            source: message.isWarning ? "dialog-warning" : "dialog-information"
            Accessible.ignored: true
        }
        ConfigText {
            text: message.text
            Accessible.ignored: true
        }
    }
}
