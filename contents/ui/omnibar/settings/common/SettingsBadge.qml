// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A word on a small coloured ground, such as "default".
Rectangle {
    id: badge

    required property string text
    required property color textColor

    implicitWidth: word.implicitWidth + 12
    implicitHeight: 18
    radius: 9
    color: Qt.rgba(textColor.r, textColor.g, textColor.b, 0.16)

    PlainText {
        id: word

        anchors.centerIn: parent
        text: badge.text
        color: badge.textColor
        font.pointSize: 8
    }
}
