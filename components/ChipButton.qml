// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A button in a widget: a text in a rounded box.
PlainButton {
    id: chip

    //! The widget, for its colours.
    required property BlockWidget widget
    property bool selected: false
    //! Duration of a change of colour in ms.
    property int colorDuration: 150

    implicitWidth: caption.implicitWidth + leftPadding + rightPadding
    implicitHeight: caption.implicitHeight + topPadding + bottomPadding
    leftPadding: 12
    rightPadding: 12
    topPadding: 7
    bottomPadding: 7

    background: Rectangle {
        objectName: "chipFill"

        radius: 8
        color: chip.selected ? Qt.rgba(0.25, 0.60, 1.0, chip.widget.lightChrome ? 0.22 : 0.35)
                             : chip.hovered || chip.pressed ? chip.widget.hoverColor : chip.widget.wellColor
        border.width: 1
        border.color: chip.selected ? Qt.rgba(0.25, 0.60, 1.0, chip.widget.lightChrome ? 0.45 : 0.50)
                                    : chip.widget.lineColor

        Behavior on color {
            ColorAnimation {
                duration: chip.colorDuration
            }
        }
    }

    contentItem: PlainText {
        id: caption
        objectName: "caption"

        text: chip.label.replace(/\s+/g, " ")
        color: chip.widget.textColor
        font.pointSize: 11
        maximumLineCount: 1
        horizontalAlignment: Text.AlignHCenter
        Accessible.ignored: true
    }

    FocusRing {
        control: chip
        radius: 10
        border.color: chip.widget.ringColor
    }

    HoverTip {
        control: chip
        text: chip.label
        enabledHere: caption.truncated
    }
}
