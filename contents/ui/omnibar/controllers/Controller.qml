// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The base of all controllers. A controller holds the state, timers and connections of one subject and reaches other
//! controllers only through the bar.
QtObject {
    //! The root object of the window, or a fake in tests.
    required property var bar
    default property list<QtObject> parts

    //! Whether the SDK client exists and takes requests. A function, because a binding may be older than the signal whose
    //! handler asks.
    function isReady() {
        return Boolean(bar.sdk && bar.sdk.ready);
    }

    //! What the user reads about an error of the SDK client. Of a lost connection it has only a number, so @p lost is the
    //! text for that.
    function errorText(error, lost) {
        const text = String(error || "");
        return text.startsWith("WebSocket error:") ? lost : text || bar.tr("Request failed");
    }
}
