// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/Attachments.js" as Attachments

TestCase {
    name: "Attachments"

    function test_limits() {
        compare([Attachments.maxFiles, Attachments.maxChars], [2, 2000]);
    }

    function test_pathAndName_data() {
        return [
            { tag: "file", url: "file:///home/me/notes.txt", path: "/home/me/notes.txt", name: "notes.txt" },
            { tag: "encoded", url: "file:///a%20b/50%25%23.md", path: "/a b/50%#.md", name: "50%#.md" },
            { tag: "not ASCII", url: "file:///%C3%BC/\u00fc%E2%82%AC.txt", path: "/\u00fc/\u00fc\u20ac.txt", name: "\u00fc\u20ac.txt" },
            { tag: "four bytes", url: "file:///a/%F0%9F%98%80.txt", path: "/a/\ud83d\ude00.txt", name: "\ud83d\ude00.txt" },
            { tag: "not UTF-8", url: "file:///a/%FF.txt", path: "/a/%FF.txt", name: "%FF.txt" },
            { tag: "cut sequence", url: "file:///a/%E2%82", path: "/a/%E2%82", name: "%E2%82" },
            { tag: "beside others", url: "file:///a/%FF%20%C3%BC%25", path: "/a/%FF \u00fc%", name: "%FF \u00fc%" },
            { tag: "overlong", url: "file:///a/%C0%AFb", path: "/a/%C0%AFb", name: "%C0%AFb" },
            { tag: "surrogate", url: "file:///a/%ED%A0%80", path: "/a/%ED%A0%80", name: "%ED%A0%80" },
            { tag: "lone percent sign", url: "file:///a/5%.txt", path: "/a/5%.txt", name: "5%.txt" },
            { tag: "encoded slash", url: "file:///a/b%2Fc", path: "/a/b/c", name: "c" },
            { tag: "line break", url: "file:///a/x%0Ay", path: "/a/x\ny", name: "x\ny" },
            { tag: "root", url: "file:///", path: "/", name: "" },
            { tag: "folder", url: "file:///a/", path: "/a/", name: "" },
            { tag: "nothing", url: "", path: "", name: "" },
            { tag: "only the scheme", url: "file://", path: "", name: "" },
            { tag: "another host", url: "file://host/a", path: "", name: "" },
            { tag: "web", url: "http://127.0.0.1/a.txt", path: "", name: "" },
            { tag: "resource", url: "qrc:/a.txt", path: "", name: "" }
        ];
    }
    function test_pathAndName(row) {
        compare(Attachments.pathOf(row.url), row.path);
        compare(Attachments.nameOf(row.path), row.name);
    }

    function test_binaryExtensions() {
        compare(Attachments.binaryExtensions.join(", "),
                "pdf, doc, docx, xls, xlsx, ppt, pptx, odt, ods, odp, zip, tar, gz, bz2, xz, 7z, rar, png, jpg, jpeg, gif, bmp,"
                + " webp, svg, ico, mp3, mp4, wav, flac, ogg, avi, mkv, mov, webm, exe, bin, so, o, a, deb, rpm, appimage,"
                + " sqlite, db, wasm");
    }

    function test_isBinary_data() {
        return [
            { tag: "text", name: "a.txt", binary: false },
            { tag: "binary", name: "a.pdf", binary: true },
            { tag: "any case", name: "A.PDF", binary: true },
            { tag: "last extension", name: "a.tar.gz", binary: true },
            { tag: "inner extension", name: "a.pdf.txt", binary: false },
            { tag: "no extension", name: "pdf", binary: false },
            { tag: "hidden", name: ".db", binary: true },
            { tag: "dot at the end", name: "a.", binary: false },
            { tag: "unknown", name: "a.constructor", binary: false }
        ];
    }
    function test_isBinary(row) {
        compare(Attachments.isBinary(row.name), row.binary);
    }

    function test_nameFilters() {
        compare(Attachments.nameFilters(null), [
            "Text & code files (*.txt *.md *.json *.jsonc *.js *.ts *.py *.cpp *.h *.c *.qml *.xml *.yaml *.yml *.toml *.ini"
                + " *.cfg *.conf *.csv *.log *.sh *.bash *.zsh *.html *.css *.scss *.sql *.rs *.go *.java *.kt *.rb *.lua"
                + " *.cmake *.service)",
            "All files (*)"
        ]);
    }

    function test_refusal_data() {
        return [
            { tag: "file", found: { kind: "file", size: 1 }, key: "" },
            { tag: "empty file", found: { kind: "file", size: 0 }, key: "empty" },
            { tag: "largest", found: { kind: "file", size: 10485760 }, key: "" },
            { tag: "too large", found: { kind: "file", size: 10485761 }, key: "large" },
            { tag: "2 GB", found: { kind: "file", size: 2147483648 }, key: "large" },
            { tag: "missing", found: { kind: "missing", size: 0 }, key: "missing" },
            { tag: "folder", found: { kind: "folder", size: 0 }, key: "folder" },
            { tag: "FIFO", found: { kind: "special", size: 0 }, key: "special" },
            { tag: "unreadable", found: { kind: "unreadable", size: 0 }, key: "unreadable" },
            { tag: "unknown", found: { kind: "door", size: 0 }, key: "special" }
        ];
    }
    function test_refusal(row) {
        compare(Attachments.refusal(row.found), row.key);
    }

    function test_rows_data() {
        const a = { name: "a.txt" };
        return [
            { tag: "kinds", text: "**Accepted:** Plain-text files — .txt, .md, .json, .js, .ts, .py, .cpp, .h, .qml, .css, .html, .xml, .yaml, .yml, .toml, .ini, .cfg, .sh, .bash, .log, .csv, .sql, .rs, .go, .java, .kt, .rb, .c, .cmake, etc.\n**Not accepted:** Binary files — images (.png, .jpg, .gif, .svg), documents (.pdf, .doc, .xlsx, .ppt), archives (.zip, .tar, .7z), media (.mp3, .mp4, .wav), executables (.exe, .bin, .so, .deb, .appimage), databases (.sqlite, .db).\nMax **2** files, up to **2000** chars each." },
            { tag: "full", text: "Maximum 2 files allowed. Use `/detach` to clear, then attach again." },
            { tag: "noName", text: "No file selected." },
            { tag: "binary", values: a, text: "**a.txt** is a binary file and can't be read as text.\nPlease select a text-based file (code, config, logs, markdown, etc.)." },
            { tag: "fullNow", text: "Maximum 2 files. Use `/detach` first." },
            { tag: "missing", values: a, text: "Could not read **a.txt**: the file no longer exists." },
            { tag: "folder", values: a, text: "Could not read **a.txt**: it is a folder." },
            { tag: "special", values: a, text: "Could not read **a.txt**: it is not a regular file." },
            { tag: "unreadable", values: a, text: "Could not read **a.txt**: you have no permission to read it." },
            { tag: "large", values: a, text: "Could not read **a.txt**: it is larger than 10 MB." },
            { tag: "failed", values: { name: "a.txt", status: 404 }, text: "Could not read **a.txt** (status 404)." },
            { tag: "empty", values: a, text: "**a.txt** appears to be empty." },
            { tag: "attached", values: { name: "a.txt", chars: 2000 }, text: "Attached **a.txt** (2000 chars). Now type your question." },
            { tag: "attachedCut", values: { name: "a.txt", chars: 2001 }, text: "Attached **a.txt** (2001 chars (truncated to 2000)). Now type your question." },
            { tag: "nothing", text: "No files attached." },
            { tag: "removed", values: { count: 2 }, text: "Removed 2 attached file(s)." }
        ];
    }
    function test_rows(data) {
        compare(Attachments.row(data.tag, null, data.values), data.text);
    }

    function test_everyRowHasATest() {
        compare(Object.keys(Attachments.texts), test_rows_data().map(row => row.tag));
    }

    function test_namesInRowsAreLiteral() {
        compare(Attachments.row("empty", null, { name: "{status}`\n$&" }), "**{status}\u02cb\ufffd$&** appears to be empty.");
    }

    function test_entry_data() {
        const full = "x".repeat(2000);
        return [
            { tag: "short", content: "one\ntwo", kept: "one\ntwo" },
            { tag: "longest", content: full, kept: full },
            { tag: "too long", content: full + "y", kept: full + "\n…(truncated at 2000 chars)" },
            { tag: "much too long", content: full.repeat(100), kept: full + "\n…(truncated at 2000 chars)" }
        ];
    }
    function test_entry(row) {
        compare(Attachments.entry("a", "/a", row.content),
                { "name": "a", "path": "/a", "content": row.kept, "chars": row.content.length });
    }

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
