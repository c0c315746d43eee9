// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! One line of untrusted text. What doesn't fit is in its tooltip and its accessible name.
PlainText {
    id: label

    //! The text before it was cut for this place.
    required property string whole
    //! Shows the tooltip as if the pointer were here.
    property bool tipWanted: false
    readonly property bool hovered: pointer.hovered || tipWanted

    maximumLineCount: 1
    // Right-to-left text stays beside its heading too.
    horizontalAlignment: Text.AlignLeft
    Accessible.name: whole

    HoverHandler {
        id: pointer
    }

    HoverTip {
        control: label
        text: label.whole
        longest: 1000
        enabledHere: label.truncated || label.text !== label.whole
    }
}
