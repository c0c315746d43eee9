// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components/logic/LiteralText.js" as LiteralText
import "qrc:/org/kde/loomra/components/MarkdownRenderer.js" as MarkdownRenderer

TestCase {
    name: "LiteralText"

    readonly property string hostile: "<img src=\"http://127.0.0.1/x\"> [x](http://127.0.0.1) ![y](z) &amp; <b>b</b>"

    function test_oneLine_data() {
        const longName = "x".repeat(300);
        return [
            { tag: "ordinary", text: "notes_2.txt", shown: "notes_2.txt" },
            { tag: "empty", text: "", shown: "" },
            { tag: "line breaks", text: "a\nb\r\u2028c\u2029d", shown: "a\ufffdb\ufffd\ufffdc\ufffdd" },
            { tag: "control characters", text: "a\u0000\u001b\u007f\u0085b", shown: "a\ufffd\ufffd\ufffd\ufffdb" },
            { tag: "reversed", text: "invoice\u202efdp.sh", shown: "invoice\ufffdfdp.sh" },
            { tag: "isolated", text: "a\u2066b\u2069", shown: "a\ufffdb\ufffd" },
            { tag: "isolated value", text: "ملف: \u2068/home/me\u2069", shown: "ملف: \u2068/home/me\u2069" },
            { tag: "reversed in it", text: "\u2068a\u202eb\u2069", shown: "\u2068a\ufffdb\u2069" },
            { tag: "isolated within", text: "\u2068a\u2066b\u2069", shown: "\ufffda\ufffdb\ufffd" },
            { tag: "isolated without an end", text: "a\u2068b", shown: "a\ufffdb" },
            { tag: "right to left", text: "שלום.txt", shown: "שלום.txt" },
            { tag: "emoji with joiners", text: "👩\u200d💻.md", shown: "👩\u200d💻.md" },
            { tag: "longest", text: longName.substring(0, 200), shown: longName.substring(0, 200) },
            { tag: "too long", text: longName, shown: longName.substring(0, 200) + "…" },
            { tag: "pair at the end", text: "x".repeat(199) + "😀x", shown: "x".repeat(199) + "…" },
            { tag: "cut within an isolated value", text: "ملف: \u2068" + longName, shown: "ملف: \u2068" + "x".repeat(194) + "…\u2069" },
            { tag: "cut before the end of one", text: "\u2068" + "x".repeat(199) + "\u2069x", shown: "\u2068" + "x".repeat(199) + "…\u2069" },
            { tag: "markup", text: hostile, shown: hostile }
        ];
    }
    function test_oneLine(row) {
        compare(LiteralText.oneLine(row.text), row.shown);
    }

    function test_oneLineOfAGivenLength() {
        compare(LiteralText.oneLine("x".repeat(600), 600), "x".repeat(600));
        compare(LiteralText.oneLine("x".repeat(601), 600), "x".repeat(600) + "…");
        compare(LiteralText.oneLine("ab😀", 3), "ab…");
    }

    //! The text that rich text shows.
    function shown(html) {
        return html.replace(/<[^>]*>/g, "").replace(/[\ufeff\u2060\u2068\u2069]/g, "").replace(/&lt;/g, "<").replace(/&gt;/g, ">")
            .replace(/&nbsp;/g, " ").replace(/&amp;/g, "&");
    }

    function test_asMarkdown_data() {
        return [
            { tag: "ordinary", text: "notes.txt" },
            { tag: "underscores", text: "_private_ my_file_name.txt __init__.py" },
            { tag: "underscores at the ends", text: "_x_" },
            { tag: "asterisks", text: "*a* **b** ***c*** d*e" },
            { tag: "only asterisks", text: "***" },
            { tag: "percentages", text: "100% **50%** 5 %" },
            { tag: "heading", text: "# heading" },
            { tag: "list", text: "- item" },
            { tag: "number", text: "1. item" },
            { tag: "quote", text: "> quote" },
            { tag: "space around", text: " x " },
            { tag: "right to left", text: "שלום_עולם.txt" },
            { tag: "HTML", text: hostile },
            { tag: "entities", text: "&lt;b&gt;&nbsp;" },
            { tag: "replacement patterns", text: "$& $1 $$ {name}" }
        ];
    }
    function test_asMarkdown(row) {
        const bold = "Attached **" + LiteralText.asMarkdown(row.text) + "** (7 chars).";
        const html = MarkdownRenderer.render(bold, {});
        compare(shown(html), "Attached " + row.text + " (7 chars).");
        compare(html.match(/<[^>]*>/g).slice(1), ["<b>", "</b>", "</p>"]);
        const alone = MarkdownRenderer.render("matching \"" + LiteralText.asMarkdown(row.text) + "\". Use `/session`", {});
        compare(shown(alone), "matching \"" + row.text + "\". Use  /session ");
        compare(alone.match(/<[^>]*>/g).length, 4);
    }

    function test_backtick() {
        compare(LiteralText.asMarkdown("a`b```c"), "a\u02cbb\u02cb\u02cb\u02cbc");
    }

    function test_ordinaryNamesStayAsTheyAre() {
        compare(LiteralText.asMarkdown("notes-2.txt"), "notes-2.txt");
    }
}
