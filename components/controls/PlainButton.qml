// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T

//! The base of all buttons. Return clicks like Space, a held key clicks only once, and only Tab moves the focus here,
//! so that the prompt keeps it after a click.
T.AbstractButton {
    //! What the button shows, and its accessible name. Never set "text" instead: AbstractButton makes a shortcut of an
    //! ampersand there, so "R&D" from an untrusted source would be clicked by Alt+D.
    property string label

    //! Whether holding Space emits pressAndHold, like holding the mouse button. The release still emits clicked with
    //! heldBySpace set, which onClicked has to ignore.
    property bool spaceHolds: false
    property bool heldBySpace: false
    //! When a hold of Space ended, in ms since the epoch.
    property real holdEnded: 0
    //! In ms; less than anybody needs to press the key again.
    readonly property int shortestPause: 50

    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.name: label
    Keys.onReturnPressed: if (!event.isAutoRepeat) clicked()
    Keys.onEnterPressed: if (!event.isAutoRepeat) clicked()
    Keys.onPressed: keepRepeatOfSpace(event)
    Keys.onReleased: keepRepeatOfSpace(event)

    onTextChanged: {
        if (text === "")
            return;
        console.warn("PlainButton: use label instead of text");
        text = "";
    }
    // Qt recognises a repeat under X11 only if it reads its release and its press at once. Otherwise they look like the
    // end of the hold and a new press, whose release would be a click.
    onPressed: {
        const pause = Date.now() - holdEnded;
        // A clock that was set back must not disable the button for hours.
        heldBySpace = pause >= 0 && pause < shortestPause;
    }
    onReleased: {
        if (heldBySpace)
            holdEnded = Date.now();
    }
    onCanceled: heldBySpace = false

    //! Hides the auto-repeat of Space from AbstractButton, which would emit a click each time.
    function keepRepeatOfSpace(event) {
        if (!event.isAutoRepeat || event.key !== Qt.Key_Space)
            return;
        event.accepted = true;
        if (spaceHolds && !heldBySpace) {
            heldBySpace = true;
            pressAndHold();
        }
    }
}
