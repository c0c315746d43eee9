// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A button whose label may be too long, such as an untrusted one. The whole label is in a tooltip.
SettingsButton {
    id: button

    HoverTip {
        control: button
        text: button.label
        enabledHere: button.truncated
    }
}
