// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../common"

//! A button of a RecordRow. It can be reached by Tab while its row is the current one.
TextButton {
    id: button

    required property RecordRow row

    focusPolicy: row.isCurrent || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
    enabled: row.recordId !== ""
    Accessible.description: row.label
}
