// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

//! A text of the pages, which may be untrusted.
PlainText {
    Layout.fillWidth: true
    color: Kirigami.Theme.textColor
    font: Kirigami.Theme.defaultFont
    wrapMode: Text.Wrap
    // Beside its control, whatever the direction of an untrusted text.
    horizontalAlignment: Text.AlignLeft
    elide: Text.ElideNone
}
