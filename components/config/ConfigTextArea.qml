// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2

//! A text area that Tab leaves.
QQC2.TextArea {
    id: area

    function leave(forward) {
        const next = nextItemInFocusChain(forward);
        if (next)
            next.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason);
    }

    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    selectByMouse: true
    background: Rectangle {
        color: area.palette.base
        border.width: area.activeFocus ? 2 : 1
        border.color: area.activeFocus ? area.palette.highlight : area.palette.mid
    }
    Keys.onTabPressed: leave(true)
    Keys.onBacktabPressed: leave(false)
}
