// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! A thin root around the OmniBar, for engines that load an item. The program itself loads the window.
Loader {
    source: "OmniBar.qml"
    onLoaded: item.bridge = agentBridge
}
