// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/ChatContext.js" as ChatContext

TestCase {
    name: "ChatContext"

    function test_chatContext_data() {
        const three = [{ role: "user", text: "a" }, { role: "assistant", text: "b" }, { role: "system", text: "c" }];
        return [
            { tag: "no rows", rows: [], size: 8, text: "" },
            { tag: "every role", rows: three, size: 8, text: "User: a\nAssistant: b\nAssistant: c" },
            { tag: "the last ones", rows: three, size: 2, text: "Assistant: b\nAssistant: c" },
            { tag: "as many as there are", rows: three, size: 3, text: "User: a\nAssistant: b\nAssistant: c" },
            { tag: "none wanted", rows: three, size: 0, text: "" },
            { tag: "fallback first", rows: [{ role: "assistant", text: "shown", fallbackText: "plain" }], size: 8,
              text: "Assistant: plain" },
            { tag: "text without a fallback", rows: [{ role: "user", text: "shown", fallbackText: "" }], size: 8,
              text: "User: shown" },
            { tag: "no text at all", rows: [{ role: "user" }], size: 8, text: "User:" },
            { tag: "trimmed as a whole", rows: [{ role: "user", text: " a \n" }, { role: "user", text: "b \n" }], size: 8,
              text: "User:  a \n\nUser: b" }
        ];
    }
    function test_chatContext(row) {
        compare(ChatContext.chatContext(row.rows, row.size), row.text);
    }
}
