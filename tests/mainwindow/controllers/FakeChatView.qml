// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! What the controllers of the chat use of their view.
QtObject {
    property var sdk: null
    property var config: null
    property var chatModel: null
    property string currentAgentName: "Builder"

    function isReady() { return Boolean(sdk && sdk.ready); }
}
