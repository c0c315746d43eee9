// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Wraps the OmniBar in an Item, for engines that load an Item as root. The program itself loads OmniBar.qml.
Loader {
    source: "OmniBar.qml"
    onLoaded: item.bridge = agentBridge
}
