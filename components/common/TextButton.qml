// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import org.kde.kirigami 2.20 as Kirigami

//! A button in the desktop's style. Set "label" instead of "text", in which an ampersand becomes a shortcut. Return
//! clicks like Space.
QQC2.Button {
    property string label

    // The palette has no colours for disabled controls, and icons are black by default.
    opacity: enabled ? 1 : 0.5
    icon.color: Kirigami.Theme.textColor
    text: label.replace(/&/g, "&&")
    Accessible.name: label
    Keys.onReturnPressed: if (!event.isAutoRepeat) clicked()
    Keys.onEnterPressed: if (!event.isAutoRepeat) clicked()
}
