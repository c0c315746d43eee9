// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../common"

//! A labelled choice for a value that is kept elsewhere and may refuse to change: after each choice the box shows that
//! value.
Item {
    id: row

    required property var theme
    required property string label
    //! Rows with "value" and "text".
    required property var choices
    required property string current
    property alias control: box

    //! The user has chosen a row. @param value the wanted value
    signal chosen(string value)

    width: parent.width
    height: box.height
    opacity: enabled ? 1 : 0.5

    PlainText {
        anchors.left: parent.left
        anchors.right: box.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        text: row.label
        color: row.theme.uiTextMed
        font.pointSize: 10
    }

    SettingsComboBox {
        id: box

        anchors.right: parent.right
        // A longer text of another language needs more.
        width: Math.min(Math.max(300, contentItem.implicitWidth), parent.width * 0.6)
        theme: row.theme
        model: row.choices
        currentIndex: row.choices.findIndex(choice => choice.value === row.current)
        Accessible.name: row.label
        onActivated: {
            row.chosen(currentValue);
            currentIndex = Qt.binding(() => row.choices.findIndex(choice => choice.value === row.current));
        }
    }
}
