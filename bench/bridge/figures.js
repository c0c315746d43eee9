// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Prints figures as bench/support/Figures.cpp does.

function print(name, value, unit, target, verdict) {
    const columns = [name.padEnd(34), value.toFixed(3).padStart(10), unit.padEnd(7), target.padEnd(9), verdict];
    process.stdout.write(`${columns.join(' ')}\n`);
}

//! A figure with a maximum.
const bounded = (name, value, unit, maximum) =>
    print(name, value, unit, `<= ${maximum}`, value <= maximum ? 'ok' : 'MISSED');

//! A figure without a target.
const plain = (name, value, unit) => print(name, value, unit, '-', '-');

function median(values) {
    const sorted = [...values].sort((a, b) => a - b);
    return sorted[Math.floor(sorted.length / 2)];
}

module.exports = { bounded, median, plain };
