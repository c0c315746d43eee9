// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Where the prompt bar, the chat panel and the compact bubble lie, in pixels of the window. Constants that
// QML binds to are declared by var: a library's const is not visible through its import name.

var barHeight = 56;
var barIdleLift = 30;
var barPanelGap = 10;

var expandedChatLimit = 1200;
var chatLimit = 780;
var chatScreenShare = 0.68;

var chatAreaMinHeight = 140;
var chatPanelChrome = 70;

var hintHeight = 20;
var notifyLineHeight = 16;
var voiceConfirmHeight = 42;

var minOpacity = 0.65;
var maxOpacity = 1.0;

/** The vertical room for chat: what the screen leaves beside the bar, but never under minHeight. */
function chatHeightBudget(screenHeight, barHeight, shortcutHintHeight, bottomMargin, topSafePadding, minHeight) {
    return Math.max(minHeight,
                    Math.round(screenHeight - barHeight - shortcutHintHeight - bottomMargin - topSafePadding));
}

/** The upper limit of the chat panel's height; expanded tells whether the user asked for the tall panel. */
function chatMaxHeight(expanded, screenHeight, budget) {
    if (expanded) {
        return Math.min(expandedChatLimit, budget);
    }
    return Math.min(chatLimit, Math.round(screenHeight * chatScreenShare), budget);
}

/** The top of the bar: just above the middle while idle, else at the lower edge above the hint strip. */
function barY(idle, windowHeight, shortcutHintHeight) {
    return idle ? Math.round(windowHeight / 2 - barHeight / 2 - barIdleLift)
                : Math.round(windowHeight - barHeight - shortcutHintHeight);
}

/** The height of the chat panel above a bar at barY. On a short screen minHeight wins over the top padding. */
function chatPanelHeight(minHeight, maxHeight, barY, topSafePadding) {
    return Math.max(minHeight, Math.min(maxHeight, Math.floor(barY - barPanelGap - topSafePadding)));
}

/**
 * The height of the message area inside the panel.
 * extras is the sum of the heights of the visible plan card, plan bar, undo bar and suggestions.
 */
function chatAreaHeight(panelHeight, headerHeight, extras) {
    return Math.max(chatAreaMinHeight, panelHeight - headerHeight - extras - chatPanelChrome);
}

/** Whether the panel has room for extras beside the smallest message area. */
function chatAreaFits(panelHeight, headerHeight, extras) {
    return panelHeight - headerHeight - extras - chatPanelChrome >= chatAreaMinHeight;
}

/** The place {x, y} of the compact bubble: the top right corner of the screen, never outside of it. */
function bubblePosition(screenWidth, bubbleSize, bubbleMargin) {
    return {
        x: Math.max(0, screenWidth - bubbleSize - bubbleMargin),
        y: Math.max(0, bubbleMargin)
    };
}

/** The strip below the bar: the hint itself, the line notifyLine when there is one, the voice confirmation. */
function shortcutHintHeight(notifyLine, confirmPending) {
    return hintHeight + (notifyLine ? notifyLineHeight : 0) + (confirmPending ? voiceConfirmHeight : 0);
}

/** A stored opacity as the window may use it: 0.65 to 1.0, and 1.0 for what is no number. */
function clampOpacity(value) {
    // Settings files give numbers back as text; an absent or empty entry is no zero.
    const number = typeof value === "string" && value.trim() !== "" ? Number(value) : value;
    if (typeof number !== "number" || isNaN(number)) {
        return maxOpacity;
    }
    return Math.max(minOpacity, Math.min(maxOpacity, number));
}
