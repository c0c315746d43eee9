// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T

//! What all buttons share: Return clicks like Space, a key that is held clicks once, and only Tab takes the focus, so
//! that a click leaves the cursor in the prompt. "text" is the accessible name.
T.AbstractButton {
    //! A held Space is a held pointer: it leads to pressAndHold, and its end is no click. For buttons that have a meaning
    //! for that: their onClicked has to pass over the click that comes with heldBySpace.
    property bool spaceHolds: false
    property bool heldBySpace: false

    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Keys.onReturnPressed: if (!event.isAutoRepeat) clicked()
    Keys.onEnterPressed: if (!event.isAutoRepeat) clicked()
    Keys.onPressed: keepRepeatOfSpace(event)
    Keys.onReleased: keepRepeatOfSpace(event)

    onPressed: heldBySpace = false
    onCanceled: heldBySpace = false

    //! From the base, to which each repetition is a click.
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
