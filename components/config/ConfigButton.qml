// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2

//! A button that Return clicks too. Its text is never untrusted, because an ampersand there makes a shortcut.
QQC2.Button {
    Accessible.name: text
    Keys.onReturnPressed: if (!event.isAutoRepeat) clicked()
    Keys.onEnterPressed: if (!event.isAutoRepeat) clicked()
}
