// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T

//! The menu of agents. Intentional: disabled and never opened, because the bridge chooses the agent.
T.Menu {
    id: agentMenu
    objectName: "agentMenu"

    required property var bar

    title: bar.tr("Select Agent")
    enabled: false
}
