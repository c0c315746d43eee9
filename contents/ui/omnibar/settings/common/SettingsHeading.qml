// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! The heading of a page or, smaller, of a section.
PlainText {
    required property var theme
    property bool isSection: false

    width: parent.width
    color: theme.uiTextStrong
    font.pointSize: isSection ? 10 : 11
    font.bold: true
    Accessible.role: Accessible.Heading
}
