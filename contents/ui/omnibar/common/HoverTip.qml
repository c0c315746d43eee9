// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! A tooltip made when the pointer first rests on its control.
LateLoader {
    id: tip

    //! The control that it speaks of; it has "hovered".
    required property Item control
    required property string text
    //! What must hold beside the hovering.
    property bool enabledHere: true

    file: Qt.resolvedUrl("PlainToolTip.qml")
    properties: ({ "tip": tip })
    wanted: enabledHere && text !== "" && control.hovered
}
