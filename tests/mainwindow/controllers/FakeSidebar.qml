// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! What the controller of the sessions uses of the sidebar.
QtObject {
    property var sdk: null

    function isReady() { return Boolean(sdk && sdk.ready); }
}
