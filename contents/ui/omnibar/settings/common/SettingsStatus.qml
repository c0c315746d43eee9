// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../../components/logic/LiteralText.js" as LiteralText

//! A message that may contain untrusted text. It is cut after a few lines; a tooltip shows more of it.
SettingsCaption {
    id: status

    required property string message
    //! In characters.
    property int longest: 600
    readonly property bool hovered: pointer.hovered

    text: LiteralText.oneLine(message, longest)
    maximumLineCount: 4
    elide: Text.ElideRight

    HoverHandler {
        id: pointer
    }

    HoverTip {
        control: status
        text: status.text
        longest: status.longest
        enabledHere: status.truncated
    }
}
