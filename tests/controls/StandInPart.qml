// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! What a LateLoader loads.
Item {
    property Item owner
    property int length
    property Item other

    focus: true
}
