// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Scrolls controls into view, in any Flickable, such as a list.

/**
 * The scroll position closest to position that shows a part of the content with a margin above and below. If it
 * doesn't fit, its top is shown. All lengths are in pixels, and positions are limited to minimum and maximum.
 */
function revealedPosition(position, viewLength, top, length, margin, minimum, maximum) {
    const highest = top - margin; // a position below hides the top
    const lowest = top + length + margin - viewLength;
    const wanted = lowest > highest ? highest : Math.max(lowest, Math.min(highest, position));
    return Math.max(minimum, Math.min(maximum, wanted));
}

/** Whether an item can be scrolled: a Flickable, or anything that is derived from it. */
function scrolls(item) {
    return item.contentY !== undefined && item.originY !== undefined && item.contentItem !== undefined;
}

/** The Flickables around an item, from the inside out, up to the outermost one; none if that isn't around it. */
function viewsAround(item, outermost) {
    const views = [];
    for (let around = item.parent; around; around = around.parent) {
        if (scrolls(around)) {
            views.push(around);
        }
        if (around === outermost) {
            return views;
        }
    }
    return [];
}

/** Scrolls one Flickable so that an item inside it is visible. */
function reveal(item, view, margin) {
    const top = item.mapToItem(view.contentItem, 0, 0).y;
    const maximum = view.originY + Math.max(0, view.contentHeight - view.height);
    const position = revealedPosition(view.contentY, view.height, top, item.height, margin, view.originY, maximum);
    if (position !== view.contentY) {
        view.contentY = position;
    }
}
