// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The base of the fakes: a record of the calls that they receive. What a fake declares itself must exist in the real
//! object too, which tst_QmlNames checks.
QtObject {
    //! Calls in their order, such as "sendToBridge(hello)".
    property var calls: []

    function note(name, values) {
        calls = calls.concat(name + "(" + values.join(", ") + ")");
    }

    //! Returns the calls so far and forgets them.
    function takeCalls() {
        const taken = calls;
        calls = [];
        return taken;
    }
}
