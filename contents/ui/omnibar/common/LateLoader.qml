// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Builds a part of the interface when it is first wanted, and keeps it from then on. The part's file isn't even read
//! before, so that the first frame pays for nothing that it doesn't show.
Loader {
    property url file
    //! First values of the part's properties.
    property var properties: ({})
    property bool wanted: false
    //! Built beforehand, between frames, rather than at once. When it turns false on the way, the rest is built in one go.
    property bool ahead: false

    function build() {
        if (!wanted || status === Loader.Ready || status === Loader.Error)
            return;
        // Anew rather than by turning "asynchronous" off under way: that loses the first values.
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
