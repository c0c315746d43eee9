// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "BlockContent.js" as BlockContent

//! A cell of BotTableWidget. Its row has the accessible name.
PlainText {
    required property string modelData

    text: modelData
    wrapMode: Text.Wrap
    // Beside the start of its column, which is on the right in a mirrored layout.
    horizontalAlignment: LayoutMirroring.enabled ? Text.AlignLeft : undefined
    maximumLineCount: BlockContent.maxCellLines
    leftPadding: Math.min(8, width / 6)
    rightPadding: leftPadding
    topPadding: 5
    bottomPadding: 5
    font.pointSize: 11
    Accessible.ignored: true
}
