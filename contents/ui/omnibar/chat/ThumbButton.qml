// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A thumb, up or down. It is an outline, and filled if active.
RoundButton {
    id: thumb

    required property var theme
    property bool pointsDown: false
    property bool active: false
    property color activeColor
    property color activeFill

    implicitWidth: 24
    radius: 4
    fill: active ? activeFill : "transparent"
    hoverFill: active ? activeFill : theme.uiWellFillHi
    ring: theme.focusRing
    iconColor: active ? activeColor : theme.uiIconMuted
    Accessible.checkable: true
    Accessible.checked: active

    contentItem: Item {
        Canvas {
            id: canvas

            readonly property color stroke: thumb.iconColor
            readonly property bool filled: thumb.active

            anchors.centerIn: parent
            width: 14
            height: 14
            rotation: thumb.pointsDown ? 180 : 0
            onStrokeChanged: requestPaint()
            onFilledChanged: requestPaint()
            onPaint: {
                const context = getContext("2d");
                context.reset();
                context.lineWidth = 1.2;
                context.lineJoin = "round";
                context.strokeStyle = stroke;
                context.fillStyle = stroke;

                context.beginPath();
                context.rect(1, 6.2, 2.4, 6.4);
                if (filled)
                    context.fill();
                context.stroke();

                context.beginPath();
                context.moveTo(4.8, 6.4);
                context.lineTo(7.2, 1.4);
                context.quadraticCurveTo(9.2, 1.6, 8.8, 3.6);
                context.lineTo(8.4, 5.6);
                context.lineTo(11.6, 5.6);
                context.quadraticCurveTo(13.2, 5.8, 12.8, 7.4);
                context.lineTo(11.8, 11.4);
                context.quadraticCurveTo(11.5, 12.5, 10.4, 12.6);
                context.lineTo(4.8, 12.6);
                context.closePath();
                if (filled)
                    context.fill();
                context.stroke();
            }
        }
    }
}
