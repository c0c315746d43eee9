// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import org.kde.kirigami 2.20 as Kirigami

//! A button that Return clicks too. Its text is never untrusted, because an ampersand there makes a shortcut.
QQC2.Button {
    // Kirigami's palette has no colours for disabled controls, and icons are black by default.
    opacity: enabled ? 1 : 0.5
    icon.color: Kirigami.Theme.textColor
    Accessible.name: text
    Keys.onReturnPressed: if (!event.isAutoRepeat) clicked()
    Keys.onEnterPressed: if (!event.isAutoRepeat) clicked()
}
