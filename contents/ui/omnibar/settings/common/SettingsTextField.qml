// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A text field in the colours of the settings sheet.
PlainTextField {
    required property var theme

    color: theme.uiInputText
    placeholderTextColor: theme.uiPlaceholder
    fillColor: theme.uiWellFill
    borderColor: theme.uiWellBorder
    ringColor: theme.focusRing
}
