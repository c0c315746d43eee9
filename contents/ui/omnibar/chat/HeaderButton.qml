// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! A square button of the chat header.
RoundButton {
    required property var theme

    implicitWidth: 28
    radius: 6
    hoverFill: theme.headerHover
    ring: theme.focusRing
    iconSize: 16
    iconColor: theme.uiTextMed
    glyphSize: 14
}
