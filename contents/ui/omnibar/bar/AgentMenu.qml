// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T

//! The choice of an agent. Routing is the bridge's and the user sees one agent, so it stays disabled and never opens.
T.Menu {
    id: agentMenu
    objectName: "agentMenu"

    required property var bar

    title: bar.tr("Select Agent")
    enabled: false
}
