// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/MessageTime.js" as MessageTime

TestCase {
    name: "MessageTime"

    readonly property var now: new Date(2026, 4, 6, 15, 0)

    function test_formatMessageTime_data() {
        const months = ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"];
        return [
            { tag: "afternoon", at: new Date(2026, 4, 6, 14, 5), text: "2:05 PM" },
            { tag: "morning", at: new Date(2026, 4, 6, 9, 41), text: "9:41 AM" },
            { tag: "midnight", at: new Date(2026, 4, 6, 0, 0), text: "12:00 AM" },
            { tag: "noon", at: new Date(2026, 4, 6, 12, 30), text: "12:30 PM" },
            { tag: "last minute", at: new Date(2026, 4, 6, 23, 59), text: "11:59 PM" },
            { tag: "yesterday", at: new Date(2026, 4, 5, 23, 59), text: "May 5, 11:59 PM" },
            { tag: "tomorrow", at: new Date(2026, 4, 7, 0, 9), text: "May 7, 12:09 AM" },
            { tag: "the same day of another month", at: new Date(2026, 3, 6, 15, 0), text: "Apr 6, 3:00 PM" },
            { tag: "the same day of another year", at: new Date(2025, 4, 6, 15, 0), text: "May 6, 3:00 PM" }
        ].concat(months.map((name, month) => ({ tag: name, at: new Date(2020, month, 10, 1, 2),
                                               text: name + " 10, 1:02 AM" })));
    }
    function test_formatMessageTime(row) {
        compare(MessageTime.formatMessageTime(row.at.getTime(), now), row.text);
        compare(MessageTime.formatMessageTime(row.at.getTime(), now.getTime()), row.text);
    }

    function test_noStamp_data() {
        return [
            { tag: "zero", at: 0 }, { tag: "undefined", at: undefined }, { tag: "null", at: null },
            { tag: "NaN", at: NaN }, { tag: "empty", at: "" }, { tag: "words", at: "yesterday" },
            { tag: "beyond all dates", at: 1e300 }
        ];
    }
    function test_noStamp(row) {
        compare(MessageTime.formatMessageTime(row.at, now), "");
    }

    function test_presentByDefault() {
        verify(/^\d{1,2}:\d\d [AP]M$/.test(MessageTime.formatMessageTime(Date.now())));
        verify(/^Jan 1, /.test(MessageTime.formatMessageTime(new Date(2001, 0, 1).getTime())));
    }
}
