// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/Suggestions.js" as Suggestions

TestCase {
    name: "Suggestions"

    readonly property var fields: ["title", "subtitle", "prompt", "iconName", "iconColor", "iconBg"]

    function card(title, subtitle, prompt, iconName, iconColor, iconBg) {
        return { title: title, subtitle: subtitle, prompt: prompt, iconName: iconName, iconColor: iconColor,
                 iconBg: iconBg };
    }

    readonly property var table: ({
        windows: card("List windows", "Show what is open now.", "List my open windows", "window-list", "#3b82f6",
                      "0.2,0.4,0.8"),
        focus: card("Focus window", "Switch to a recent app.", "Focus the most recently used window", "focus", "#a855f7",
                    "0.4,0.2,0.8"),
        status: card("Refresh status", "Updated system snapshot.", "Show my current system status", "system-run",
                     "#eab308", "0.8,0.5,0.1"),
        processes: card("Top processes", "CPU and memory usage.", "Show top processes by CPU and memory",
                        "utilities-system-monitor", "#ec4899", "0.8,0.2,0.4"),
        reminder: card("Another reminder", "Schedule a follow-up.", "Help me set another reminder", "appointment-new",
                       "#eab308", "0.8,0.5,0.1"),
        settings: card("Open settings", "Related module.", "Open related system settings", "preferences-system",
                       "#3b82f6", "0.2,0.4,0.8"),
        more: card("Tell me more", "Go deeper on the last answer.", "Tell me more about that", "dialog-information",
                   "#a855f7", "0.4,0.2,0.8"),
        again: card("Run again", "Repeat the last task.", "Run that again", "system-run", "#eab308", "0.8,0.5,0.1"),
        what: card("What else?", "See related KDE actions.", "What else can you help me with?", "view-list-details",
                   "#ec4899", "0.8,0.2,0.4"),
        simplify: card("Simplify", "Shorter summary.", "Summarize that in one short paragraph", "text-summarize",
                       "#3b82f6", "0.2,0.4,0.8")
    })

    function compareCards(actual, expected) {
        compare(actual.map(one => one.title), expected.map(one => one.title));
        actual.forEach((one, index) => compare(one, expected[index]));
    }

    // ---- Contextual cards

    function test_contextualSuggestions_data() {
        const always = ["more", "again", "what", "simplify"];
        const rows = [
            { tag: "nothing said", query: "", reply: "", names: always },
            { tag: "null", query: null, reply: undefined, names: always },
            { tag: "in the reply", query: "", reply: "Your CPU is fine", names: ["status", "processes", "more", "again"] },
            { tag: "both texts", query: "remind me", reply: "The window is open",
              names: ["windows", "reminder", "focus", "more"] },
            { tag: "equal scores keep the order of the table", query: "theme window reminder status", reply: "",
              names: ["windows", "status", "reminder", "settings"] },
            { tag: "no part of a word", query: "windowed rewind statusbar displayed tiles", reply: "", names: always },
            { tag: "the end of one text is no beginning of the other", query: "win", reply: "dow", names: always },
            { tag: "punctuation bounds a word", query: "\"window\"!", reply: "", names: ["windows", "focus", "more", "again"] }
        ];
        const words = [
            { list: ["window", "windows", "focus", "tile"], names: ["windows", "focus", "more", "again"] },
            { list: ["status", "health", "cpu", "memory", "disk", "metrics", "performance"],
              names: ["status", "processes", "more", "again"] },
            { list: ["remind", "reminder", "schedule"], names: ["reminder", "more", "again", "what"] },
            { list: ["setting", "settings", "theme", "wallpaper", "volume", "brightness", "display"],
              names: ["settings", "more", "again", "what"] }
        ];
        words.forEach(group => group.list.forEach(word => {
            rows.push({ tag: word, query: "my " + word.toUpperCase() + " please", reply: "", names: group.names });
        }));
        return rows;
    }
    function test_contextualSuggestions(row) {
        compareCards(Suggestions.contextualSuggestions(row.query, row.reply), row.names.map(name => table[name]));
    }

    function test_contextualSuggestionsAreTranslated() {
        const cards = Suggestions.contextualSuggestions("window", "", text => {
            verify(text !== "" && text.indexOf("%") < 0);
            return "<" + text + ">";
        });
        compare(cards[0].title, "<List windows>");
        compare(cards[0].subtitle, "<Show what is open now.>");
        compare(cards[0].prompt, "List my open windows");
    }

    function test_cardsAreTheCallersOwn() {
        Suggestions.contextualSuggestions("", "")[0].title = "changed";
        compare(Suggestions.contextualSuggestions("", "")[0].title, "Tell me more");
    }

    // ---- Follow-ups

    function test_normalizeFollowUp_data() {
        const icon = "dialog-messages";
        const color = "#a855f7";
        const bg = "0.4,0.2,0.8";
        return [
            { tag: "prompt only", entry: { prompt: "p" }, card: card("p", "", "p", icon, color, bg) },
            { tag: "label only", entry: { label: "l" }, card: card("l", "", "l", icon, color, bg) },
            { tag: "prompt and label", entry: { prompt: "p", label: "l" }, card: card("l", "", "p", icon, color, bg) },
            { tag: "everything", entry: { title: "t", label: "l", prompt: "p", subtitle: "s", description: "d",
                                          iconName: "edit-copy", icon: "edit-cut", iconColor: "#123456",
                                          iconBg: "0,0.5,1" },
              card: card("t", "s", "p", "edit-copy", "#123456", "0,0.5,1") },
            { tag: "second names", entry: { label: "l", description: "d", icon: "edit-cut" },
              card: card("l", "d", "l", "edit-cut", color, bg) },
            { tag: "wrong types", entry: { prompt: "p", title: 1, label: {}, subtitle: [], description: true, iconName: 2,
                                           icon: null, iconColor: 3, iconBg: [0, 0, 0] },
              card: card("p", "", "p", icon, color, bg) },
            { tag: "fields of whitespace", entry: { prompt: " ", label: "l", title: "\n", subtitle: "", description: "d" },
              card: card("l", "d", "l", icon, color, bg) },
            { tag: "markup stays text", entry: { label: "<img src=x>" },
              card: card("<img src=x>", "", "<img src=x>", icon, color, bg) }
        ];
    }
    function test_normalizeFollowUp(row) {
        const actual = Suggestions.normalizeFollowUp(row.entry);
        compare(Object.keys(actual).sort(), fields.slice().sort());
        compare(actual, row.card);
    }

    function test_droppedFollowUps_data() {
        return [
            { tag: "nothing to ask", entry: { title: "t", subtitle: "s" } },
            { tag: "empty prompt", entry: { prompt: "", label: "" } },
            { tag: "prompt of another type", entry: { prompt: 1, label: ["l"] } },
            { tag: "text", entry: "prompt" },
            { tag: "number", entry: 1 },
            { tag: "array", entry: ["prompt"] },
            { tag: "null", entry: null },
            { tag: "undefined", entry: undefined }
        ];
    }
    function test_droppedFollowUps(row) {
        compare(Suggestions.normalizeFollowUp(row.entry), null);
    }

    function test_icons_data() {
        return [
            { tag: "edit-copy", safe: true }, { tag: "application-x-c++src", safe: true },
            { tag: "org.kde.dolphin", safe: true }, { tag: "Audio_1", safe: true },
            { tag: "/etc/passwd", safe: false }, { tag: "../x", safe: false }, { tag: "breeze/edit-copy", safe: false }, { tag: "..", safe: false },
            { tag: "file:x", safe: false }, { tag: "http://127.0.0.1/x.png", safe: false },
            { tag: "image://theme/x", safe: false }, { tag: "data:image/png;base64,AA", safe: false },
            { tag: "edit copy", safe: false }, { tag: "edit-copy\n", safe: false }, { tag: "édit", safe: false },
            { tag: "x".repeat(64), safe: true }, { tag: "x".repeat(65), safe: false }
        ];
    }
    function test_icons(row) {
        const expected = row.safe ? row.tag : "dialog-messages";
        compare(Suggestions.normalizeFollowUp({ prompt: "p", iconName: row.tag }).iconName, expected);
        compare(Suggestions.normalizeFollowUp({ prompt: "p", icon: row.tag }).iconName, expected);
    }

    function test_colors_data() {
        return [
            { tag: "#fff", valid: true }, { tag: "#A1b2C3", valid: true }, { tag: "#80ffffff", valid: true },
            { tag: "red", valid: true },
            { tag: "#ggg", valid: false }, { tag: "reddish", valid: false }, { tag: "rgb(1,2,3)", valid: false },
            { tag: "url(x)", valid: false }, { tag: "#a855f7;", valid: false }, { tag: "#" + "f".repeat(100), valid: false }
        ];
    }
    function test_colors(row) {
        compare(Suggestions.normalizeFollowUp({ prompt: "p", iconColor: row.tag }).iconColor,
                row.valid ? row.tag : "#a855f7");
    }

    function test_backgrounds_data() {
        return [
            { tag: "0.1,0.2,0.3", rgb: [0.1, 0.2, 0.3] }, { tag: "0,1,0.5", rgb: [0, 1, 0.5] },
            { tag: " .25 , 1.0,0.", rgb: [0.25, 1, 0] },
            { tag: "1.1,0,0" }, { tag: "-0.1,0,0" }, { tag: "0.1,0.2" }, { tag: "0,0,0,0" }, { tag: "a,b,c" },
            { tag: "NaN,0,0" }, { tag: "Infinity,0,0" }, { tag: "1e-1,0,0" }, { tag: "0x0,0,0" }, { tag: "0,,0" },
            { tag: "0.5".padEnd(100, "0") + ",0,0" }
        ];
    }
    function test_backgrounds(row) {
        compare(Suggestions.normalizeFollowUp({ prompt: "p", iconBg: row.tag }).iconBg,
                row.rgb ? row.tag : "0.4,0.2,0.8");
        const rgb = Suggestions.parseRgb(row.tag);
        compare(rgb && [rgb.r, rgb.g, rgb.b], row.rgb || null);
    }

    function test_captionsAreCutAndPromptsAreNot() {
        const wordy = "x".repeat(199) + "😀 and so on";
        const made = Suggestions.normalizeFollowUp({ prompt: wordy, subtitle: wordy });
        compare(made.title, "x".repeat(199));
        compare(made.subtitle, "x".repeat(199));
        compare(made.prompt, wordy);
    }

    function test_followUpCards_data() {
        const many = ["a", "b", "c", "d", "e"].map(label => ({ label: label }));
        return [
            { tag: "none", array: [], titles: [] },
            { tag: "four at most", array: many, titles: ["a", "b", "c", "d"] },
            { tag: "dropped ones don't count", array: [null, {}, "x"].concat(many), titles: ["a", "b", "c", "d"] },
            { tag: "no array", array: { length: 1, 0: { label: "a" } }, titles: [] },
            { tag: "text", array: "abcd", titles: [] },
            { tag: "undefined", array: undefined, titles: [] }
        ];
    }
    function test_followUpCards(row) {
        compare(Suggestions.followUpCards(row.array).map(one => one.title), row.titles);
    }

    // ---- Cards of both kinds

    function test_cards_data() {
        return [
            { tag: "no follow-ups", followUps: undefined, query: "window",
              titles: ["List windows", "Focus window", "Tell me more", "Run again"] },
            { tag: "filled up", followUps: [{ label: "a" }, {}, { label: "b" }], query: "window",
              titles: ["a", "b", "List windows", "Focus window"] },
            { tag: "full", followUps: ["a", "b", "c", "d", "e"].map(label => ({ label: label })), query: "window",
              titles: ["a", "b", "c", "d"] },
            { tag: "a follow-up doesn't displace a contextual card", followUps: [{ title: "a", prompt: "Tell me more about that" }],
              query: "", titles: ["a", "Tell me more", "Run again", "What else?"] },
            { tag: "two follow-ups of one prompt both stay", followUps: [{ label: "a" }, { label: "a" }], query: "",
              titles: ["a", "a", "Tell me more", "Run again"] }
        ];
    }
    function test_cards(row) {
        compare(Suggestions.cards(row.followUps, row.query, "").map(one => one.title), row.titles);
    }

    function test_hostileTexts_data() {
        return ["w", "window ", "statu", " ", "\u0130"].map(text => ({ tag: text }));
    }
    function test_hostileTexts(row) {
        const text = row.tag.repeat(Math.ceil(1048576 / row.tag.length));
        const cards = Suggestions.cards([{ prompt: text, label: "x" + text, iconName: text, iconColor: text, iconBg: text }],
                                        text, text);
        compare(cards.length, 4);
    }
}
