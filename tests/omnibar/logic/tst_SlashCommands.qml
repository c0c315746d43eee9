// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/SlashCommands.js" as SlashCommands

TestCase {
    name: "SlashCommands"

    function tr(text) {
        return "<" + text + ">";
    }

    function test_table() {
        const rows = SlashCommands.filtered("").map(row => [row.name, row.icon, row.description]);
        compare(rows, [
            ["help", "help-about", "Show all available commands"],
            ["new", "document-new", "Start a new chat session"],
            ["clear", "edit-clear-history", "Clear the chat display"],
            ["session", "view-history", "List and switch sessions"],
            ["attach", "mail-attachment", "Attach a text file as context (max 2)"],
            ["detach", "edit-clear", "Remove all attached files"],
            ["about", "help-about-symbolic", "About this app"]
        ]);
    }

    function test_filter_data() {
        return [
            { tag: "all", filter: "", names: ["help", "new", "clear", "session", "attach", "detach", "about"] },
            { tag: "several", filter: "a", names: ["attach", "about"] },
            { tag: "one", filter: "se", names: ["session"] },
            { tag: "any case", filter: "SE", names: ["session"] },
            { tag: "whole name", filter: "help", names: ["help"] },
            { tag: "not within the name", filter: "tach", names: [] },
            { tag: "longer than the name", filter: "helpme", names: [] },
            { tag: "with an argument", filter: "session abc", names: [] },
            { tag: "space in front", filter: " help", names: [] },
            { tag: "member of all objects", filter: "constructor", names: [] }
        ];
    }
    function test_filter(row) {
        compare(SlashCommands.filtered(row.filter).map(command => command.name), row.names);
    }

    function test_filterOf_data() {
        return [
            { tag: "slash", text: "/", filter: "" },
            { tag: "whitespace around", text: " \t/he ", filter: "he" },
            { tag: "argument", text: "/session abc", filter: "session abc" },
            { tag: "prompt", text: "hello", filter: null },
            { tag: "slash inside", text: "a/b", filter: null },
            { tag: "nothing", text: "", filter: null }
        ];
    }
    function test_filterOf(row) {
        compare(SlashCommands.filterOf(row.text), row.filter);
    }

    function test_parse_data() {
        return [
            { tag: "command", text: "/help", name: "help", argument: "" },
            { tag: "any case", text: "/HELP", name: "help", argument: "" },
            { tag: "argument", text: "/session abc", name: "session", argument: "abc" },
            { tag: "words of the argument", text: " /session  one\t two ", name: "session", argument: "one two" },
            { tag: "case of the argument", text: "/session ABC", name: "session", argument: "ABC" },
            { tag: "longer word", text: "/helpme", name: null },
            { tag: "beginning of a command", text: "/he", name: null },
            { tag: "slash", text: "/", name: null },
            { tag: "two slashes", text: "//help", name: null },
            { tag: "prompt", text: "help", name: null },
            { tag: "member of all objects", text: "/toString", name: null }
        ];
    }
    function test_parse(row) {
        const found = SlashCommands.parse(row.text);
        compare(found ? found.command.name : null, row.name);
        if (found)
            compare(found.argument, row.argument);
    }

    function test_helpText() {
        compare(SlashCommands.helpText(null).split("\n"), [
            "**Available commands:**",
            "**/help** — Show all available commands",
            "**/new** — Start a new chat session",
            "**/clear** — Clear the chat display",
            "**/session** — List and switch sessions",
            "**/attach** — Attach a text file as context (max 2)",
            "**/detach** — Remove all attached files",
            "**/about** — About this app",
            "Type `/` in the input to see suggestions."
        ]);
        compare(SlashCommands.helpText(tr).split("\n")[1], "**/help** — <Show all available commands>");
    }

    function test_aboutText() {
        compare(SlashCommands.aboutText({ version: "0.3.2", model: "loomra/one", session: "0123456789", status: "idle" }, null).split("\n"), [
            "**Tovi for KeldaOS**",
            "Version 0.3.2 · Loomra Meridan",
            "",
            "A native KDE desktop assistant powered by AI.",
            "Chat, voice, desktop control, and workspace intelligence.",
            "",
            "**Current model:** loomra/one",
            "**Session:** 01234567…",
            "**Bridge:** idle",
            "",
            "Built with Qt5, KDE Frameworks 5, and Loomra SDK."
        ]);
    }

    function test_aboutTextWithoutFacts_data() {
        return [
            { tag: "empty", facts: { version: "1", model: "", session: "", status: "" } },
            { tag: "missing", facts: { version: "1" } }
        ];
    }
    function test_aboutTextWithoutFacts(row) {
        compare(SlashCommands.aboutText(row.facts, null).split("\n").slice(6, 9),
                ["**Current model:** (default)", "**Bridge:** unknown", ""]);
    }
}
