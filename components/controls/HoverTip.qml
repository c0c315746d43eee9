// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! A tooltip that is created when the pointer first hovers over its control.
LateLoader {
    id: tip

    //! The control with the tooltip. It has a property "hovered".
    required property Item control
    required property string text
    //! Maximum number of characters, because untrusted text may have any length.
    property int longest: 400
    //! An additional condition besides hovering.
    property bool enabledHere: true

    file: Qt.resolvedUrl("PlainToolTip.qml")
    properties: ({ "tip": tip })
    wanted: enabledHere && text !== "" && control.hovered
}
