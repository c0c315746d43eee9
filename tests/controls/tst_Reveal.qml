// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components/controls/Reveal.js" as Reveal

TestCase {
    name: "Reveal"

    function test_revealedPosition_data() {
        // A view of 100 pixels on a content of 500, with a margin of 8.
        return [
            { tag: "visible", position: 40, top: 60, length: 20, to: 40 },
            { tag: "just visible at the top", position: 52, top: 60, length: 20, to: 52 },
            { tag: "too close to the top", position: 53, top: 60, length: 20, to: 52 },
            { tag: "above", position: 300, top: 60, length: 20, to: 52 },
            { tag: "just visible at the bottom", position: 40, top: 112, length: 20, to: 40 },
            { tag: "too close to the bottom", position: 40, top: 113, length: 20, to: 41 },
            { tag: "below", position: 0, top: 300, length: 20, to: 228 },
            { tag: "first", position: 300, top: 0, length: 20, to: 0 },
            { tag: "last", position: 0, top: 480, length: 20, to: 400 },
            { tag: "just fits", position: 0, top: 200, length: 84, to: 192 },
            { tag: "too high, from above", position: 0, top: 200, length: 200, to: 192 },
            { tag: "too high, from below", position: 380, top: 200, length: 200, to: 192 }
        ];
    }
    function test_revealedPosition(row) {
        compare(Reveal.revealedPosition(row.position, 100, row.top, row.length, 8, 0, 400), row.to);
    }

    function test_limitsOfAListThatBeginsAboveZero() {
        compare(Reveal.revealedPosition(0, 100, -200, 20, 8, -200, 200), -200);
        compare(Reveal.revealedPosition(0, 100, 280, 20, 8, -200, 200), 200);
    }
}
