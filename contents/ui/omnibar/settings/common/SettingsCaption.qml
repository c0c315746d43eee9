// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A small explanation or status text that wraps. Takes no place while it is empty.
PlainText {
    required property var theme

    width: parent.width
    visible: text !== ""
    color: theme.uiTextCaption
    font.pointSize: 9
    wrapMode: Text.Wrap
    elide: Text.ElideNone
}
