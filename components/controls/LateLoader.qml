// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Loads a part of the interface when it is first needed, and keeps it. The file isn't even read before, which saves
//! time until the first frame.
Loader {
    property url file
    //! Initial values of the part's properties.
    property var properties: ({})
    property bool wanted: false
    //! Load asynchronously, before the part is needed. If this turns false while loading, the rest is loaded at once.
    property bool ahead: false

    function build() {
        if (!wanted || status === Loader.Ready || status === Loader.Error)
            return;
        // Start again: turning "asynchronous" off while loading would lose the initial values.
        if (status === Loader.Loading)
            source = "";
        asynchronous = ahead;
        setSource(file, properties);
    }

    onWantedChanged: build()
    onAheadChanged: build()
    Component.onCompleted: build()
    Accessible.ignored: true
}
