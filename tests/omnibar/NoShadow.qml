// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Takes the place of DropShadow and draws nothing, see OmniBarFixture::drawShadows().
Item {
    property variant source
    property real verticalOffset
    property real radius
    property int samples
    property color color
    property bool transparentBorder
}
