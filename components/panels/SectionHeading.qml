// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami

//! The heading of a part of a panel.
Kirigami.Heading {
    Layout.fillWidth: true
    Layout.topMargin: Kirigami.Units.largeSpacing
    level: 3
    color: Kirigami.Theme.textColor // in every style
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    Accessible.role: Accessible.Heading
    Accessible.name: text
}
