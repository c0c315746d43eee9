// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! An arc around the centre. It is repainted only when "to" changes.
Canvas {
    required property real radius
    required property color color
    //! Colour of the full circle below the arc.
    property color track: "transparent"
    property real line: 2.5
    //! Angles in radians, clockwise, 0 is right. By default the arc begins at the top.
    property real from: -Math.PI / 2
    required property real to

    function stroke(context, color, from, to) {
        context.strokeStyle = color;
        context.beginPath();
        context.arc(width / 2, height / 2, radius, from, to);
        context.stroke();
    }

    onToChanged: requestPaint()
    onPaint: {
        const context = getContext("2d");
        context.reset();
        context.lineWidth = line;
        stroke(context, track, 0, 2 * Math.PI);
        stroke(context, color, from, to);
    }
}
