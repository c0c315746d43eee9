// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A spin box in the colours of the settings sheet.
PlainSpinBox {
    required property var theme

    textColor: theme.uiTextStrong
    fillColor: theme.uiWellFill
    hoverColor: theme.uiWellFillHi
    borderColor: theme.uiWellBorder
    ringColor: theme.focusRing
}
