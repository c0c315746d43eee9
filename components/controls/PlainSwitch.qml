// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import org.kde.loomra 1.0

//! A switch with its label on the left.
T.Switch {
    id: control

    //! Never set "text" instead, see PlainButton.
    property string label
    required property color textColor
    required property color onColor
    required property color offColor
    //! Of the track while off.
    required property color borderColor
    required property color ringColor

    implicitWidth: contentItem.implicitWidth + spacing + indicator.width
    implicitHeight: 28
    spacing: 12
    hoverEnabled: true
    Accessible.role: Accessible.CheckBox
    Accessible.name: label
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onToggleAction: press()
    Keys.onReturnPressed: if (!event.isAutoRepeat) control.press()
    Keys.onEnterPressed: if (!event.isAutoRepeat) control.press()
    onTextChanged: {
        if (text === "")
            return;
        console.warn("PlainSwitch: use label instead of text");
        text = "";
    }

    //! Toggles like a click.
    function press() {
        toggle();
        toggled();
    }

    contentItem: PlainText {
        text: control.label
        color: control.textColor
        font.pointSize: 10
        verticalAlignment: Text.AlignVCenter
        leftPadding: control.mirrored ? control.indicator.width + control.spacing : 0
        rightPadding: control.mirrored ? 0 : control.indicator.width + control.spacing
        Accessible.ignored: true
    }

    indicator: Rectangle {
        id: track

        readonly property bool visualFocus: control.visualFocus

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: 36
        height: 20
        radius: 10
        color: control.checked ? control.onColor : control.offColor
        border.width: 1
        border.color: control.checked ? control.onColor : control.borderColor

        Rectangle {
            x: 2 + control.visualPosition * (parent.width - width - 4)
            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 16
            radius: 8
            color: "#ffffff"
            border.width: 1
            border.color: Qt.rgba(0, 0, 0, 0.15)

            Behavior on x {
                NumberAnimation {
                    duration: 120 * Motion.durationFactor
                }
            }
        }

        FocusRing {
            control: track
            border.color: control.ringColor
        }
    }
}
