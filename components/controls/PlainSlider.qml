// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T

//! A slider with a thin track and a round handle.
T.Slider {
    id: slider

    required property color trackColor
    //! Of the track up to the handle.
    required property color fillColor
    required property color ringColor

    // Assistive technology reads the range from these names.
    readonly property real minimumValue: from
    readonly property real maximumValue: to

    implicitWidth: 200
    implicitHeight: 24
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    snapMode: T.Slider.SnapAlways
    Accessible.role: Accessible.Slider

    background: Rectangle {
        x: slider.leftPadding
        anchors.verticalCenter: parent.verticalCenter
        width: slider.availableWidth
        height: 4
        radius: 2
        color: slider.trackColor

        Rectangle {
            anchors.left: parent.left
            width: slider.position * parent.width
            height: parent.height
            radius: 2
            color: slider.fillColor
        }
    }

    handle: Rectangle {
        id: knob

        readonly property bool visualFocus: slider.visualFocus

        x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
        anchors.verticalCenter: parent.verticalCenter
        width: 16
        height: 16
        radius: 8
        color: "#ffffff"
        border.width: slider.pressed || slider.hovered ? 4 : 3
        border.color: "#8b47eb"

        FocusRing {
            control: knob
            border.color: slider.ringColor
        }
    }
}
