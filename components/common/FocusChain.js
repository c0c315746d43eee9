// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Keeps the keyboard focus inside an item, such as an open dialog.

const longestChain = 1000; // more than any window has

function isInside(root, item) {
    for (let step = item; step; step = step.parent) {
        if (step === root) {
            return true;
        }
    }
    return false;
}

/** The dialog that an item is in, if any. */
function dialogAround(item) {
    let step = item;
    while (step && !step.isDialog) {
        step = step.parent;
    }
    return step;
}

/**
 * Moves the focus to the next control inside root, or the previous one; from the last to the first.
 * @param focused the item with the focus
 */
function step(root, focused, forward) {
    let item = focused || root;
    for (let i = 0; i < longestChain; ++i) {
        item = item.nextItemInFocusChain(forward);
        if (!item || (isInside(root, item) && item !== root)) {
            break;
        }
    }
    if (item && isInside(root, item)) {
        item.forceActiveFocus(forward ? 1 : 2); // Qt.TabFocusReason, Qt.BacktabFocusReason
    }
}

/** Gives the focus to the first control inside root, or to root if there is none. */
function focusFirst(root) {
    root.forceActiveFocus(1);
    step(root, root, true);
}
