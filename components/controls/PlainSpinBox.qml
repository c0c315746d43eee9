// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T

//! A whole number to edit, with buttons. Its accessible name has to be set.
T.SpinBox {
    id: spinBox

    required property color textColor
    required property color fillColor
    required property color hoverColor
    required property color borderColor
    required property color ringColor

    // Assistive technology reads the range from these names.
    readonly property int minimumValue: from
    readonly property int maximumValue: to

    implicitWidth: 120
    implicitHeight: 32
    // Beside the buttons, which would get no click under the text.
    leftPadding: 32
    rightPadding: 32
    editable: true
    font.pointSize: 10
    hoverEnabled: true
    Accessible.role: Accessible.SpinBox
    validator: IntValidator {
        locale: spinBox.locale.name
        bottom: spinBox.from
        top: spinBox.to
    }

    background: Rectangle {
        id: ground

        readonly property bool visualFocus: spinBox.contentItem.activeFocus

        radius: 6
        color: spinBox.fillColor
        border.width: 1
        border.color: spinBox.borderColor
        opacity: spinBox.enabled ? 1 : 0.5

        FocusRing {
            control: ground
            radius: 8
            border.color: spinBox.ringColor
        }
    }

    contentItem: TextInput {
        text: spinBox.displayText
        color: spinBox.textColor
        opacity: spinBox.enabled ? 1 : 0.5
        font: spinBox.font
        horizontalAlignment: TextInput.AlignHCenter
        verticalAlignment: TextInput.AlignVCenter
        selectByMouse: true
        selectionColor: "#8b47eb"
        selectedTextColor: "white"
        readOnly: !spinBox.editable
        validator: spinBox.validator
        inputMethodHints: spinBox.inputMethodHints
        Accessible.ignored: true
    }

    down.indicator: StepButton {
        box: spinBox
        x: spinBox.mirrored ? spinBox.width - width - 1 : 1
        glyph: "\u2212"
        active: spinBox.down.hovered || spinBox.down.pressed
        available: spinBox.enabled && spinBox.value > spinBox.from
    }
    up.indicator: StepButton {
        box: spinBox
        x: spinBox.mirrored ? 1 : spinBox.width - width - 1
        glyph: "+"
        active: spinBox.up.hovered || spinBox.up.pressed
        available: spinBox.enabled && spinBox.value < spinBox.to
    }

    component StepButton: Rectangle {
        required property Item box
        required property string glyph
        required property bool active
        required property bool available

        y: 1
        width: 28
        height: box.height - 2
        radius: 5
        color: active && available ? box.hoverColor : "transparent"

        PlainText {
            anchors.centerIn: parent
            text: parent.glyph
            color: parent.box.textColor
            opacity: parent.available ? 1 : 0.4
            font.pixelSize: 14
            Accessible.ignored: true
        }
    }
}
