// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A text of a widget. It wraps, and can leave a corner free.
PlainText {
    //! A size in the upper right corner, the left one in a mirrored layout, in which there is no text.
    property size freeCorner: Qt.size(0, 0)
    readonly property bool mirrored: LayoutMirroring.enabled

    wrapMode: Text.Wrap
    onFreeCornerChanged: forceLayout()
    onMirroredChanged: forceLayout()
    onLineLaidOut: {
        if (line.y + topPadding < freeCorner.height) {
            line.width -= freeCorner.width;
            if (mirrored)
                line.x += freeCorner.width;
        }
    }
}
