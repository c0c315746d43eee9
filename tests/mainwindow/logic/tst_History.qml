// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components/mainwindow/logic/History.js" as History

TestCase {
    name: "History"

    function state(changes) {
        return Object.assign({
            isSendingMessage: false, lastResponseTimestamp: 0, responseCooldownMs: 5000, isLoadingHistory: true,
            lastLoadedSessionId: "a", sessionId: "a", shownCount: 2, messageCount: 3, now: 100000
        }, changes);
    }

    function test_refusals_data() {
        const all = { isSendingMessage: true, lastResponseTimestamp: 99000, isLoadingHistory: false, shownCount: 3 };
        return [
            { tag: "sending is the first reason", changes: all, reason: "sending" },
            { tag: "the cooldown is the second", changes: Object.assign({}, all, { isSendingMessage: false }), reason: "cooldown" },
            { tag: "the rows are the third", changes: { isLoadingHistory: false, shownCount: 3 }, reason: "shown" },
            { tag: "more rows than messages", changes: { isLoadingHistory: false, shownCount: 9 }, reason: "shown" },
            { tag: "no request is the last", changes: { isLoadingHistory: false }, reason: "unrequested" },
            { tag: "another session, not requested", changes: { isLoadingHistory: false, sessionId: "b", shownCount: 9 }, reason: "unrequested" },
            { tag: "requested", changes: {}, reason: "" },
            { tag: "requested, and nothing new", changes: { shownCount: 3 }, reason: "" },
            { tag: "while loading and sending", changes: { isSendingMessage: true }, reason: "sending" },
            { tag: "last ms of the cooldown", changes: { lastResponseTimestamp: 95001 }, reason: "cooldown" },
            { tag: "after the cooldown", changes: { lastResponseTimestamp: 95000 }, reason: "" },
            { tag: "at the time of the reply", changes: { lastResponseTimestamp: 100000 }, reason: "cooldown" },
            { tag: "the clock was set back", changes: { lastResponseTimestamp: 900000 }, reason: "" }
        ];
    }

    function test_refusals(data) {
        compare(History.refusal(state(data.changes)), data.reason);
    }

    function test_newer_data() {
        return [
            { tag: "fewer rows", changes: {}, newer: true },
            { tag: "as many rows", changes: { shownCount: 3 }, newer: false },
            { tag: "another session", changes: { shownCount: 3, sessionId: "b" }, newer: true },
            { tag: "no rows, no messages", changes: { shownCount: 0, messageCount: 0 }, newer: true }
        ];
    }

    function test_newer(data) {
        compare(History.isNewer(state(data.changes)), data.newer);
    }

    function test_sessionNames_data() {
        return [
            { tag: "short", length: 1, expected: 1 },
            { tag: "50", length: 50, expected: 50 },
            { tag: "51", length: 51, expected: 50 },
            { tag: "long", length: 5000, expected: 50 }
        ];
    }

    function test_sessionNames(data) {
        const prompt = "abcdefghij".repeat(500).substring(0, data.length);
        const name = History.sessionName(prompt);
        compare(name.length, data.expected);
        compare(name, data.length > 50 ? prompt.substring(0, 47) + "..." : prompt);
    }

    function test_hashes() {
        compare(History.replyHash("hello"), "assistant|5|hello");
        compare(History.replyHash("x".repeat(300)), "assistant|300|" + "x".repeat(200));
        compare(History.rowHash("user", "y".repeat(300)), "user|" + "y".repeat(100));
    }

    function test_rows_data() {
        const user = text => ({ role: "user", content: text });
        const assistant = text => ({ role: "assistant", content: text });
        const longText = "z".repeat(100);
        return [
            { tag: "none", messages: [], shown: [], last: "" },
            { tag: "both sides", messages: [user("a"), assistant("b")], shown: ["user a", "assistant b"], last: "b" },
            { tag: "same text, other side", messages: [user("a"), assistant("a")], shown: ["user a", "assistant a"], last: "a" },
            { tag: "a repeated prompt", messages: [user("a"), assistant("b"), user("a")], shown: ["user a", "assistant b"], last: "b" },
            { tag: "a repeated reply", messages: [assistant("b"), assistant("b")], shown: ["assistant b"], last: "b" },
            { tag: "the same 100 characters", messages: [assistant(longText + "1"), assistant(longText + "2")], shown: ["assistant " + longText + "1"], last: longText + "1" },
            { tag: "other roles", messages: [{ role: "system", content: "s" }, user("a"), { role: "Assistant", content: "A" }], shown: ["user a"], last: "" },
            { tag: "malformed", messages: [null, 7, "text", [], {}, { role: "user" }, { role: {}, content: "x" }, { role: "user", content: [1] }, user("a")], shown: ["user ", "user a"], last: "" },
            { tag: "names of Object", messages: [{ role: "__proto__", content: "x" }, user("constructor")], shown: ["user constructor"], last: "" }
        ];
    }

    function test_rows(data) {
        const history = History.rows(data.messages);
        compare(history.rows.map(row => row.role + " " + row.content), data.shown);
        compare(history.lastReply, data.last);
    }

    function test_manyRows() {
        const messages = [];
        for (let i = 0; i < 20000; ++i)
            messages.push({ role: i % 2 ? "assistant" : "user", content: "message " + i });
        compare(History.rows(messages).rows.length, 20000);
        compare(History.rows(messages).hashes.length, 20000);
    }
}
