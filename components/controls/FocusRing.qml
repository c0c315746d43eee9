// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The outline of the control that has the keyboard focus.
Rectangle {
    //! The outlined control. It has a property "visualFocus".
    required property Item control

    anchors.fill: control
    anchors.margins: -2
    radius: height / 2
    color: "transparent"
    border.width: 2
    visible: control.visualFocus
}
