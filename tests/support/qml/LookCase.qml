// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

//! The base of tests that compare what a component draws with tables, see DrawnValues.
TestCase {
    //! In which part() finds the parts, such as a window.
    property var subject: parent
    // Where the pointer rests: outside of what is compared.
    property Item pointerRest: parent

    when: windowShown

    //! The part with this name, which may be created late. See DrawnValues.
    function part(name) {
        tryVerify(() => drawn.part(subject, name) !== null, 5000, name);
        return drawn.part(subject, name);
    }

    //! Compares an item, or the part with a name, with a table, once its animations have ended. @param hovered the item
    //! below the pointer, if any
    function look(item, table, hovered) {
        const root = typeof item === "string" ? part(item) : item;
        const differences = () => drawn.differences(root, table).join("\n");
        // A value that is reached only in passing doesn't count: it must still hold a moment later.
        // Up to 9 s, because a busy machine may need seconds for the first frame of a page.
        for (let i = 0, held = true; i < 300 && (differences() !== "" || !held); ++i) {
            held = i > 0 && differences() === "";
            wait(30);
            // The window may lose the pointer, for example when something moves.
            if (hovered)
                hover(hovered);
        }
        compare(differences(), "");
    }

    //! The same with the pointer on an item.
    function lookHovered(hovered, item, table) {
        hover(hovered);
        look(item, table, hovered);
    }

    function hover(item) {
        // From beside the place, because a pointer that is there already sends no event.
        mouseMove(item, item.width / 2, item.height / 2 - 1);
        mouseMove(item, item.width / 2, item.height / 2);
    }

    //! So that nothing is hovered.
    function movePointerAway() {
        mouseMove(pointerRest, pointerRest.width - 1, pointerRest.height - 1);
    }
}
