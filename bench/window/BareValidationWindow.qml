// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Window 2.15

//! An empty window like the voice validation window, with the imports that it needs for the first frame.
Window {
    width: 580
    height: 720
    color: "#1a1a22"
    visible: true
}
