// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T

//! A choice of one from a few rows with the roles "value" and "text". Its accessible name has to be set.
T.ComboBox {
    id: box

    required property color textColor
    required property color fillColor
    required property color hoverColor
    required property color borderColor
    required property color popupColor
    required property color ringColor

    implicitWidth: 200
    implicitHeight: 32
    textRole: "text"
    valueRole: "value"
    font.pointSize: 10
    hoverEnabled: true
    Accessible.role: Accessible.ComboBox
    // Otherwise assistive technology reads the name only.
    Accessible.description: displayText

    background: Rectangle {
        radius: 6
        color: box.hovered || box.down ? box.hoverColor : box.fillColor
        border.width: 1
        border.color: box.borderColor
    }

    FocusRing {
        control: box
        radius: 8
        border.color: box.ringColor
    }

    contentItem: PlainText {
        leftPadding: box.mirrored ? 28 : 10
        rightPadding: box.mirrored ? 10 : 28
        text: box.displayText
        color: box.textColor
        font: box.font
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }

    indicator: PlainText {
        x: box.mirrored ? 10 : box.width - width - 10
        anchors.verticalCenter: parent.verticalCenter
        text: "\u25be"
        color: box.textColor
        font.pixelSize: 12
        Accessible.ignored: true
    }

    delegate: T.ItemDelegate {
        id: choice

        required property var modelData
        required property int index

        // Not "text", see PlainButton.
        readonly property string label: modelData[box.textRole]

        width: ListView.view.width
        implicitHeight: 30
        highlighted: box.highlightedIndex === index
        hoverEnabled: true
        Accessible.role: Accessible.ListItem
        Accessible.name: label

        background: Rectangle {
            radius: 4
            color: choice.highlighted ? box.hoverColor : "transparent"
        }
        contentItem: PlainText {
            leftPadding: 10
            rightPadding: 10
            text: choice.label
            color: box.textColor
            font: box.font
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
    }

    popup: T.Popup {
        // Above, if there is no room below.
        margins: 6
        y: box.height + 4
        width: box.width
        implicitHeight: contentItem.implicitHeight + 8
        padding: 4

        background: Rectangle {
            radius: 8
            color: box.popupColor
            border.width: 1
            border.color: box.borderColor
        }
        contentItem: ListView {
            implicitHeight: Math.min(contentHeight, 240)
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: box.popup.visible ? box.delegateModel : null
            currentIndex: box.highlightedIndex
            highlightMoveDuration: 0
            Accessible.role: Accessible.List
            Accessible.name: box.Accessible.name
        }
    }
}
