// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T

//! A line of text to edit. Its accessible name has to be set, because a placeholder vanishes.
T.TextField {
    id: field

    required property color fillColor
    required property color borderColor
    required property color ringColor

    implicitWidth: 200
    implicitHeight: 32
    leftPadding: 10
    rightPadding: 10
    font.pointSize: 10
    verticalAlignment: TextInput.AlignVCenter
    // The cursor of an empty field is beside the placeholder. A text is aligned by its own direction.
    horizontalAlignment: LayoutMirroring.enabled && length === 0 ? TextInput.AlignLeft : undefined
    selectByMouse: true
    selectionColor: "#8b47eb"
    selectedTextColor: "white"
    clip: contentWidth > width - leftPadding - rightPadding
    Accessible.role: Accessible.EditableText
    Accessible.description: placeholderText

    background: Rectangle {
        id: ground

        readonly property bool visualFocus: field.activeFocus

        radius: 6
        color: field.fillColor
        border.width: 1
        border.color: field.borderColor

        // Inside, because a long text is clipped.
        FocusRing {
            control: ground
            anchors.margins: 0
            radius: 6
            border.color: field.ringColor
        }
    }

    PlainText {
        anchors.fill: parent
        anchors.leftMargin: field.leftPadding
        anchors.rightMargin: field.rightPadding
        verticalAlignment: Text.AlignVCenter
        visible: field.length === 0 && field.preeditText === ""
        text: field.placeholderText
        color: field.placeholderTextColor
        font: field.font
        Accessible.ignored: true
    }
}
