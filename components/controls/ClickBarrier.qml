// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The bottom layer of a floating surface: accepts clicks between the controls, so that they don't reach what is below,
//! such as the scrim, which closes the settings sheet.
MouseArea {
    anchors.fill: parent
    acceptedButtons: Qt.AllButtons
    Accessible.ignored: true
}
