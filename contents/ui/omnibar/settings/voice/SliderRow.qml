// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A labelled slider for a value that is kept elsewhere and may refuse to change: after each move the slider shows that
//! value.
Item {
    id: row

    required property var theme
    required property string label
    //! Has from, to and step.
    required property var range
    //! Within the range.
    required property real current
    //! The value with its unit.
    required property string valueText
    property alias control: slider

    //! The user has moved the slider. @param value the wanted value
    signal moved(real value)

    width: parent.width
    height: 30
    opacity: enabled ? 1 : 0.5

    PlainText {
        anchors.left: parent.left
        anchors.right: slider.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        text: row.label
        color: row.theme.uiTextMed
        font.pointSize: 10
    }

    PlainSlider {
        id: slider

        anchors.right: figure.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, parent.width * 0.4)
        trackColor: row.theme.uiWellFillHi
        fillColor: row.theme.uiAccentBorder
        ringColor: row.theme.focusRing
        from: row.range.from
        to: row.range.to
        stepSize: row.range.step
        value: row.current
        Accessible.name: row.label
        Accessible.description: row.valueText
        onMoved: {
            row.moved(value);
            value = Qt.binding(() => row.current);
        }
    }

    PlainText {
        id: figure
        objectName: "figure"

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        // A longer text of another language needs more.
        width: Math.max(64, implicitWidth)
        horizontalAlignment: Text.AlignRight
        text: row.valueText
        color: row.theme.uiTextSoft
        font.pointSize: 10
    }
}
