// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Loads a part of the interface when it is first needed, and keeps it by default. The file isn't even read before,
//! which saves time until the first frame.
Loader {
    property url file
    //! Values of the part's properties: an object, or a function, which becomes a binding. Any other value would be a
    //! snapshot that ignores later changes, so it is refused.
    property var properties: ({})
    //! The part is loaded when this first becomes true.
    property bool wanted: false
    //! Whether the part stays when it is no longer wanted.
    property bool kept: true
    //! Load asynchronously, before the part is needed. If this turns false while loading, the rest is loaded at once.
    property bool ahead: false

    //! Whether all bindings have their first value. Before, "wanted" may be true although its condition isn't, which
    //! would load a part that is not needed.
    property bool bound: false

    function build() {
        if (!bound)
            return;
        if (!wanted && !kept)
            source = "";
        if (!wanted || status === Loader.Ready || status === Loader.Error)
            return;
        // Start again: turning "asynchronous" off while loading would lose the initial values.
        if (status === Loader.Loading)
            source = "";
        asynchronous = ahead;
        setSource(file, boundProperties());
    }

    //! The initial properties, with functions as bindings.
    function boundProperties() {
        const bound = {};
        Object.keys(properties).forEach(name => {
            const value = properties[name];
            if (typeof value === "function")
                bound[name] = Qt.binding(value);
            else if (isObject(value))
                bound[name] = value;
            else
                throw new TypeError("the property \"" + name + "\" of " + file + " is neither an object nor a function");
        });
        return bound;
    }

    function isObject(value) {
        return typeof value === "object" && value !== null && typeof value.objectName === "string";
    }

    onWantedChanged: build()
    onAheadChanged: build()
    Component.onCompleted: {
        bound = true;
        build();
    }
    Accessible.ignored: true
}
