// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/Sessions.js" as Sessions

TestCase {
    name: "Sessions"

    readonly property double march9: new Date(2026, 2, 9, 15, 5).getTime()

    function test_rows_data() {
        const row = (sid, sname, screatedAt) => [{ "sid": sid, "sname": sname, "screatedAt": screatedAt }];
        return [
            { tag: "usual keys", session: { id: "a", name: "Garden", createdAt: march9 }, rows: row("a", "Garden", march9) },
            { tag: "other keys", session: { sessionId: "a", title: "Garden", created: march9 }, rows: row("a", "Garden", march9) },
            { tag: "both", session: { id: "a", sessionId: "b", name: "c", title: "d", createdAt: march9, created: 1 },
              rows: row("a", "c", march9) },
            { tag: "only an id", session: { id: "a" }, rows: row("a", "a", 0) },
            { tag: "empty name", session: { id: "a", name: "", title: "t" }, rows: row("a", "t", 0) },
            { tag: "number as id", session: { id: 7, name: 8 }, rows: row("7", "8", 0) },
            { tag: "wrong types", session: { id: "a", name: {}, title: [], createdAt: {} }, rows: row("a", "a", 0) },
            { tag: "no id", session: { name: "Garden" }, rows: [] },
            { tag: "empty id", session: { id: "" }, rows: [] },
            { tag: "null", session: null, rows: [] },
            { tag: "text", session: "a", rows: [] },
            { tag: "huge name", session: { id: "a", name: "x".repeat(100000) }, rows: row("a", "x".repeat(1000), 0) }
        ];
    }
    function test_rows(data) {
        compare(Sessions.rows([data.session]), data.rows);
    }

    function test_timeOf_data() {
        return [
            { tag: "milliseconds", value: march9, time: march9 },
            { tag: "seconds", value: march9 / 1000, time: march9 },
            { tag: "first milliseconds", value: 1e12, time: 1e12 },
            { tag: "last seconds", value: 1e12 - 1, time: (1e12 - 1) * 1000 },
            { tag: "number in a text", value: String(march9), time: march9 },
            { tag: "ISO date", value: "2026-03-09T15:05:00.000Z", time: Date.UTC(2026, 2, 9, 15, 5) },
            { tag: "0", value: 0, time: 0 },
            { tag: "negative", value: -5, time: 0 },
            { tag: "too large", value: 1e300, time: 0 },
            { tag: "no date", value: "yesterday", time: 0 },
            { tag: "empty", value: "", time: 0 },
            { tag: "null", value: null, time: 0 },
            { tag: "missing", value: undefined, time: 0 },
            { tag: "list", value: [5], time: 0 }
        ];
    }
    function test_timeOf(row) {
        compare(Sessions.timeOf(row.value), row.time);
    }

    function test_names_data() {
        return [
            { tag: "given", row: { sid: "a", sname: "Garden", screatedAt: march9 }, name: "Garden" },
            { tag: "the id", row: { sid: "a", sname: "a", screatedAt: march9 }, name: "Chat · Mar 9, 3:05 PM" },
            { tag: "an id", row: { sid: "a", sname: "ses_5", screatedAt: march9 }, name: "Chat · Mar 9, 3:05 PM" },
            { tag: "without a time", row: { sid: "a", sname: "a", screatedAt: 0 }, name: "Chat 2" },
            { tag: "other case", row: { sid: "a", sname: "SES_5", screatedAt: march9 }, name: "SES_5" }
        ];
    }
    function test_names(data) {
        const first = { sid: "x", sname: "First", screatedAt: 0 };
        compare(Sessions.namedRows([first, data.row], null),
                [first, { sid: data.row.sid, sname: data.name, screatedAt: data.row.screatedAt }]);
    }

    function test_timeText_data() {
        const now = new Date(2026, 2, 1, 0, 30);
        return [
            { tag: "now", time: now, text: "Today, 12:30 AM" },
            { tag: "later today", time: new Date(2026, 2, 1, 23, 59), text: "Today, 11:59 PM" },
            { tag: "yesterday, the month before", time: new Date(2026, 1, 28, 12, 0), text: "Yesterday, 12:00 PM" },
            { tag: "two days ago", time: new Date(2026, 1, 27, 23, 59), text: "Feb 27, 11:59 PM" },
            { tag: "tomorrow", time: new Date(2026, 2, 2, 9, 5), text: "Mar 2, 9:05 AM" },
            { tag: "a year ago", time: new Date(2025, 2, 1, 0, 30), text: "Mar 1, 12:30 AM" }
        ].map(row => Object.assign(row, { now: now }));
    }
    function test_timeText(row) {
        compare(Sessions.timeText(row.time.getTime(), null, row.now), row.text);
    }

    function test_noTimeText() {
        compare(Sessions.timeText(0, null), "");
    }

    function test_yesterdayWhenTheClocksChange() {
        // In a zone with summer time this day has 23 hours.
        const now = new Date(2026, 2, 30, 0, 15);
        compare(Sessions.timeText(new Date(2026, 2, 29, 0, 20).getTime(), null, now), "Yesterday, 12:20 AM");
    }

    function test_shortId_data() {
        return [
            { tag: "long", id: "ses_0123456789", text: "ses_0123…" },
            { tag: "short", id: "a", text: "a…" },
            { tag: "line break", id: "a\nb", text: "a\ufffdb…" }
        ];
    }
    function test_shortId(row) {
        compare(Sessions.shortId(row.id), row.text);
    }

    function test_find_data() {
        const rows = [{ sid: "a", sname: "Garden", screatedAt: 0 }];
        return [
            { tag: "name in our list", list: rows, text: "Garden", found: undefined },
            { tag: "id in our list", list: rows, text: "a", found: undefined },
            { tag: "empty list", list: [], text: "a", found: undefined },
            { tag: "key id", list: [{ id: "a" }], text: "a", found: 0 },
            { tag: "key sessionId", list: [{ id: "a" }, { sessionId: "b" }], text: "b", found: 1 },
            { tag: "key title", list: [{ title: "Garden" }], text: "Garden", found: 0 },
            { tag: "key name", list: [{ name: "Garden" }], text: "Garden", found: 0 },
            { tag: "other case", list: [{ name: "Garden" }], text: "garden", found: undefined }
        ];
    }
    function test_find(data) {
        compare(Sessions.find(data.list, data.text), data.found === undefined ? undefined : data.list[data.found]);
    }
}
