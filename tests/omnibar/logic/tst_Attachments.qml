// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/Attachments.js" as Attachments

TestCase {
    name: "Attachments"

    function test_contextPrefix_data() {
        const a = { name: "a.txt", path: "/tmp/a.txt", content: "one\ntwo", chars: 7 };
        const hostile = { name: "$&", path: "$1", content: "```\n$$\n```", chars: 10 };
        const prefixOfA = "--- File: a.txt (path: /tmp/a.txt) ---\n```\none\ntwo\n```\n\n";
        const prefixOfHostile = "--- File: $& (path: $1) ---\n```\n```\n$$\n```\n```\n\n";
        return [
            { tag: "no file", files: [], prefix: "" },
            { tag: "one", files: [a], prefix: prefixOfA },
            { tag: "content is taken as it is", files: [hostile], prefix: prefixOfHostile },
            { tag: "two", files: [a, hostile], prefix: prefixOfA + prefixOfHostile }
        ];
    }
    function test_contextPrefix(row) {
        compare(Attachments.contextPrefix(row.files), row.prefix);
    }
}
