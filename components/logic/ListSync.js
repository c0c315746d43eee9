// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Changes a ListModel to other rows in place, so that a view keeps its scroll position, and the rows that stay keep
// their focus and the text that is being typed into them.

// Rows that moved are searched for one by one, which is only cheap in short lists. Longer ones are replaced.
const maxMergedRows = 1000;

function isSame(row, other) {
    return row === other || Object.keys(row).every(role => row[role] === other[role]);
}

/**
 * Changes a ListModel from the rows "shown", which it has now, to the rows "wanted". All rows have the same roles; the
 * role "key" tells which rows are the same.
 */
function update(model, shown, wanted, key) {
    let start = 0;
    while (start < shown.length && start < wanted.length && isSame(shown[start], wanted[start])) {
        ++start;
    }
    let end = 0;
    while (end < shown.length - start && end < wanted.length - start
           && isSame(shown[shown.length - 1 - end], wanted[wanted.length - 1 - end])) {
        ++end;
    }
    const before = shown.slice(start, shown.length - end);
    const after = wanted.slice(start, wanted.length - end);
    if (before.length + after.length > maxMergedRows) {
        replace(model, start, before, after);
    } else {
        merge(model, start, before, after, key);
    }
}

/** Changes a ListModel at once, from row "start" on. Nothing of these rows stays. */
function replace(model, start, before, after) {
    if (before.length > 0) {
        model.remove(start, before.length);
    }
    if (after.length > 0) {
        model.insert(start, after);
    }
}

function merge(model, start, before, after, key) {
    const kept = new Set(after.map(row => row[key]));
    const rows = before.slice();
    for (let i = rows.length - 1; i >= 0; --i) {
        if (!kept.has(rows[i][key])) {
            model.remove(start + i);
            rows.splice(i, 1);
        }
    }
    after.forEach((row, i) => {
        const from = rows.findIndex((candidate, j) => j >= i && candidate[key] === row[key]);
        if (from < 0) {
            model.insert(start + i, row);
            rows.splice(i, 0, row);
            return;
        }
        if (from > i) {
            model.move(start + from, start + i, 1);
            rows.splice(i, 0, rows.splice(from, 1)[0]);
        }
        if (!isSame(rows[i], row)) {
            model.set(start + i, row);
        }
    });
    // Left are rows whose key occurs less often than before.
    if (rows.length > after.length) {
        model.remove(start + after.length, rows.length - after.length);
    }
}
