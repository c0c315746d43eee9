// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The base of the widgets that show a block of a structured reply. A widget fills the bubble of its row, which is 18
//! pixels higher than implicitHeight. With the 3 pixels here that makes margins of 12 pixels on all sides.
Item {
    id: widget

    //! The block, {} if it could not be parsed. Untrusted: read it only through BlockContent.js.
    property var payload: ({})
    property bool lightChrome: false
    //! A size in the upper right corner of the bubble, the left one in a mirrored layout, that the content leaves free,
    //! for buttons of the row.
    property size freeCorner: Qt.size(0, 0)
    //! Translates a text of the user interface.
    property var tr: text => text

    readonly property int margin: 12
    //! The part of the free corner inside the margins.
    readonly property real freeWidth: Math.max(0, freeCorner.width - margin)
    readonly property real freeHeight: Math.max(0, freeCorner.height - margin)

    readonly property color textColor: lightChrome ? Qt.rgba(0, 0, 0, 0.88) : Qt.rgba(1, 1, 1, 0.95)
    readonly property color mutedColor: lightChrome ? Qt.rgba(0, 0, 0, 0.55) : Qt.rgba(1, 1, 1, 0.65)
    readonly property color wellColor: lightChrome ? Qt.rgba(0, 0, 0, 0.06) : Qt.rgba(1, 1, 1, 0.08)
    readonly property color hoverColor: lightChrome ? Qt.rgba(0, 0, 0, 0.10) : Qt.rgba(1, 1, 1, 0.14)
    readonly property color lineColor: lightChrome ? Qt.rgba(0, 0, 0, 0.10) : Qt.rgba(1, 1, 1, 0.12)
    readonly property color ringColor: lightChrome ? "#7c3aed" : "#c084fc"

    default property alias parts: column.data
    property alias spacing: column.spacing

    // At least that of the buttons in the corner.
    implicitHeight: Math.max(30, Math.ceil(column.implicitHeight) + 6)

    Column {
        id: column

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: widget.margin
        anchors.rightMargin: widget.margin
        y: 3
    }
}
