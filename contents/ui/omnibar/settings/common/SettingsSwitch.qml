// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A switch in the colours of the settings sheet.
PlainSwitch {
    required property var theme

    width: parent.width
    opacity: enabled ? 1 : 0.5
    textColor: theme.uiTextMed
    onColor: theme.uiAccentBorder
    offColor: theme.uiWellFillHi
    borderColor: theme.uiWellBorder
    ringColor: theme.focusRing
}
