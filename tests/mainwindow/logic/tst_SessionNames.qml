// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components/mainwindow/logic/SessionNames.js" as SessionNames

TestCase {
    name: "SessionNames"

    readonly property double noon: new Date(2026, 2, 9, 12).getTime()

    function tr(text) { return text; }
    function dated(time) { return "Session - " + Qt.formatDate(new Date(time), Qt.DefaultLocaleShortDate); }

    function test_generated_data() {
        return [
            { tag: "title", session: { id: "ses_12345678", title: "  Garden ", createdAt: noon }, name: "Garden" },
            { tag: "date", session: { id: "ses_12345678", title: "", createdAt: noon }, name: dated(noon) },
            { tag: "blank title", session: { id: "ses_12345678", title: "  ", createdAt: noon }, name: dated(noon) },
            { tag: "seconds", session: { id: "ses_12345678", createdAt: noon / 1000 }, name: dated(noon) },
            { tag: "ISO date", session: { id: "ses_12345678", createdAt: "2026-03-09T12:00:00" }, name: dated(noon) },
            { tag: "id", session: { id: "ses_12345678" }, name: "ses_1234..." },
            { tag: "short id", session: { id: "abc" }, name: "abc..." },
            { tag: "malformed", session: { id: {}, title: [], createdAt: {} }, name: "..." }
        ];
    }

    function test_generated(data) {
        compare(SessionNames.generated(data.session, tr), data.name);
    }

    function test_rows() {
        const rows = SessionNames.rows([
            { id: "a", name: "not used", title: "Garden", createdAt: noon }, { id: "b", createdAt: noon }, { id: "c12345678" },
            { id: "a", title: "twice" }, { title: "no id" }, null, "text", 5, { sessionId: "d", title: " <b>&D</b>" }
        ], tr);
        compare(rows, [
            { id: "a", name: "Garden", title: "Garden", createdAt: noon }, { id: "b", name: dated(noon), title: "", createdAt: noon },
            { id: "c12345678", name: "c1234567...", title: "", createdAt: 0 }, { id: "d", name: " <b>&D</b>", title: " <b>&D</b>", createdAt: 0 }
        ]);
    }

    function test_renamed() {
        const rows = [{ id: "a", name: "A", title: "", createdAt: 1 }, { id: "b", name: "B", title: "B", createdAt: 2 }];
        compare(SessionNames.renamed(rows, "a", "New"), [{ id: "a", name: "New", title: "New", createdAt: 1 }, rows[1]]);
        compare(SessionNames.renamed(rows, "c", "New"), rows);
    }
}
