// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// The geometry of the prompt bar, the chat panel and the compact bubble, in pixels. Constants that QML uses are
// declared with var, because a library's const is not visible through the import name.

var barHeight = 56;
var barIdleLift = 30;
var barPanelGap = 10;
var barMenuGap = 8;

const menuPadding = 16;
const screenPadding = 8;

var expandedChatLimit = 1200;
var chatLimit = 780;
var chatScreenShare = 0.68;

var chatAreaMinHeight = 140;
// Margins, gaps and the disclaimer.
var chatPanelChrome = 70;
var chatColumnSpacing = 10;

var hintHeight = 20;
var notifyLineHeight = 16;
var voiceConfirmHeight = 42;

var minOpacity = 0.65;
var maxOpacity = 1.0;

/** The height that the screen leaves for the chat besides the bar, minimum minHeight. */
function chatHeightBudget(screenHeight, barHeight, shortcutHintHeight, bottomMargin, topSafePadding, minHeight) {
    return Math.max(minHeight,
                    Math.round(screenHeight - barHeight - shortcutHintHeight - bottomMargin - topSafePadding));
}

/** The maximum height of the chat panel; expanded: whether the user asked for the tall panel. */
function chatMaxHeight(expanded, screenHeight, budget) {
    if (expanded) {
        return Math.min(expandedChatLimit, budget);
    }
    return Math.min(chatLimit, Math.round(screenHeight * chatScreenShare), budget);
}

/** The top of the bar: just above the middle while idle, otherwise at the bottom, above the hint strip. */
function barY(idle, windowHeight, shortcutHintHeight) {
    return idle ? Math.round(windowHeight / 2 - barHeight / 2 - barIdleLift)
                : Math.round(windowHeight - barHeight - shortcutHintHeight);
}

/** The height of the chat panel above a bar at barY. On a low screen minHeight has priority over the padding. */
function chatPanelHeight(minHeight, maxHeight, barY, topSafePadding) {
    return Math.max(minHeight, Math.min(maxHeight, Math.floor(barY - barPanelGap - topSafePadding)));
}

/**
 * The height that the parts besides header, message area and disclaimer take from the message area, from the heights
 * of those that are visible. chatPanelChrome includes the gap of one part; each further one brings its own.
 */
function chatExtrasHeight(heights) {
    const sum = heights.reduce((total, height) => total + height, 0);
    return sum + chatColumnSpacing * Math.max(0, heights.length - 1);
}

/**
 * The height of the message area inside the panel. On a low screen its minimum has priority, and the panel scrolls.
 * extras: see chatExtrasHeight().
 */
function chatAreaHeight(panelHeight, headerHeight, extras) {
    return Math.max(chatAreaMinHeight, panelHeight - headerHeight - extras - chatPanelChrome);
}

/**
 * The maximum height of the plan card: half of the panel, and no more than leaves the message area its minimum.
 * others: the heights of the other parts that stay in view, see chatExtrasHeight().
 */
function planCardMaxHeight(panelHeight, headerHeight, others) {
    const room = panelHeight - headerHeight - chatPanelChrome - chatAreaMinHeight - chatExtrasHeight([0].concat(others));
    return Math.max(0, Math.min(Math.floor(panelHeight / 2), room));
}

/**
 * The position {x, y} of the compact bubble in the top right corner, the left one in a mirrored layout. Always inside
 * the screen.
 */
function bubblePosition(screenWidth, bubbleSize, bubbleMargin, mirrored) {
    return {
        x: Math.max(0, mirrored ? bubbleMargin : screenWidth - bubbleSize - bubbleMargin),
        y: Math.max(0, bubbleMargin)
    };
}

/** The height of the strip below the bar: keyboard hint, notification line, voice confirmation. */
function shortcutHintHeight(notifyLine, confirmPending) {
    return hintHeight + (notifyLine ? notifyLineHeight : 0) + (confirmPending ? voiceConfirmHeight : 0);
}

/** Limits a stored opacity to 0.65 to 1.0. Anything that is not a number gives 1.0. */
function clampOpacity(value) {
    // Settings files return numbers as strings; a missing or empty entry is not 0.
    const number = typeof value === "string" && value.trim() !== "" ? Number(value) : value;
    if (typeof number !== "number" || isNaN(number)) {
        return maxOpacity;
    }
    return Math.max(minOpacity, Math.min(maxOpacity, number));
}

/** The height of a menu above a bar at barY: at most maximum, and never beyond the top of the screen. */
function menuHeight(contentHeight, maximum, barY) {
    return Math.max(0, Math.min(contentHeight + menuPadding, maximum, barY - barMenuGap - screenPadding));
}
