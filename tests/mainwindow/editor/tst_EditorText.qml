// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "../../../components/editor/EditorText.js" as EditorText

TestCase {
    name: "EditorText"

    function test_messages() {
        compare(EditorText.message("folder", "/a {path} & <b>", text => text), "/a {path} & <b> is a folder.");
        compare(EditorText.message("folder", "/a", text => "«" + text + "»"), "«/a is a folder.»");
        compare(EditorText.message("unreadable", "/a", text => text), "You have no permission to read /a.");
        for (const key of EditorText.refusedKinds)
            verify(EditorText.messages[key].includes("{path}"), key);
    }

    function test_asWritten_data() {
        return [
            { tag: "lines", format: { lineBreak: "\n", byteOrderMark: false }, text: "a\nb\n" },
            { tag: "lines of Windows", format: { lineBreak: "\r\n", byteOrderMark: false }, text: "a\r\nb\r\n" },
            { tag: "byte order mark", format: { lineBreak: "\n", byteOrderMark: true }, text: "\uFEFFa\nb\n" },
            { tag: "both", format: { lineBreak: "\r\n", byteOrderMark: true }, text: "\uFEFFa\r\nb\r\n" },
            { tag: "new file", format: {}, text: "a\nb\n" }
        ];
    }

    function test_asWritten(data) {
        compare(EditorText.asWritten("a\nb\n", data.format), data.text);
    }
}
