// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! A small round light beside a text that says the same.
Rectangle {
    //! Diameter.
    property int size: 8

    width: size
    height: size
    radius: size / 2
}
