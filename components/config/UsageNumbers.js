// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

.import "../logic/Translatable.js" as Translatable

// Numbers of the page about tokens.

const mark = Translatable.mark;

const windows = [7, 14, 30, 60, 90];
const defaultWindow = 30;

/** "1.25M", "3.4k" or "12". */
function short(number) {
    if (number >= 1e6)
        return (number / 1e6).toFixed(2) + "M";
    if (number >= 1e3)
        return (number / 1e3).toFixed(1) + "k";
    return String(number);
}

const columns = [
    { title: mark("Date"), value: day => day.date },
    { title: mark("Messages"), value: day => short(day.messages) },
    { title: mark("Input"), value: day => short(day.input) },
    { title: mark("Output"), value: day => short(day.output) },
    { title: mark("Reasoning"), value: day => short(day.reasoning) },
    { title: mark("Cache R/W"), value: day => short(day.cacheRead) + " / " + short(day.cacheWrite) },
    { title: mark("Total"), value: day => short(day.total) }
];

function cells(day) {
    return columns.map(column => column.value(day));
}

/** The tokens of the busiest day. */
function peak(days) {
    return days.reduce((highest, day) => Math.max(highest, day.total), 0);
}

function sum(days) {
    return days.reduce((total, day) => total + day.total, 0);
}
