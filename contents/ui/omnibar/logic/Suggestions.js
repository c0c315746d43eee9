// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/Translatable.js" as Translatable

// The cards below a reply: {title, subtitle, prompt, iconName, iconColor, iconBg}. Follow-ups are untrusted, so the
// type of every field is checked and an icon must be the name of a theme icon, not a path or URL.

const mark = Translatable.mark;

var maxCards = 4;
var defaultIconName = "dialog-messages";
var defaultIconColor = "#a855f7";
var defaultIconBg = "0.4,0.2,0.8";

const maxCaptionLength = 200;
const themeIconName = /^[A-Za-z0-9][A-Za-z0-9_.+-]{0,63}$/;
const unitNumber = /^(?:0?\.\d{1,16}|[01](?:\.\d{0,16})?)$/;

const windowWords = /\b(?:window|windows|focus|tile)\b/i;
const statusWords = /\b(?:status|health|cpu|memory|disk|metrics|performance)\b/i;
const reminderWords = /\b(?:remind|reminder|schedule)\b/i;
const settingsWords = /\b(?:setting|settings|theme|wallpaper|volume|brightness|display)\b/i;
const always = /^/;

const blue = { iconColor: "#3b82f6", iconBg: "0.2,0.4,0.8" };
const purple = { iconColor: "#a855f7", iconBg: "0.4,0.2,0.8" };
const yellow = { iconColor: "#eab308", iconBg: "0.8,0.5,0.1" };
const pink = { iconColor: "#ec4899", iconBg: "0.8,0.2,0.4" };

// Prompts are sent to the assistant, so they are not translated.
const contextual = [
    { words: windowWords, score: 10, title: mark("List windows"), subtitle: mark("Show what is open now."),
      prompt: "List my open windows", iconName: "window-list", colors: blue },
    { words: windowWords, score: 9, title: mark("Focus window"), subtitle: mark("Switch to a recent app."),
      prompt: "Focus the most recently used window", iconName: "focus", colors: purple },
    { words: statusWords, score: 10, title: mark("Refresh status"), subtitle: mark("Updated system snapshot."),
      prompt: "Show my current system status", iconName: "system-run", colors: yellow },
    { words: statusWords, score: 9, title: mark("Top processes"), subtitle: mark("CPU and memory usage."),
      prompt: "Show top processes by CPU and memory", iconName: "utilities-system-monitor", colors: pink },
    { words: reminderWords, score: 10, title: mark("Another reminder"), subtitle: mark("Schedule a follow-up."),
      prompt: "Help me set another reminder", iconName: "appointment-new", colors: yellow },
    { words: settingsWords, score: 10, title: mark("Open settings"), subtitle: mark("Related module."),
      prompt: "Open related system settings", iconName: "preferences-system", colors: blue },
    { words: always, score: 3, title: mark("Tell me more"), subtitle: mark("Go deeper on the last answer."),
      prompt: "Tell me more about that", iconName: "dialog-information", colors: purple },
    { words: always, score: 2, title: mark("Run again"), subtitle: mark("Repeat the last task."),
      prompt: "Run that again", iconName: "system-run", colors: yellow },
    { words: always, score: 2, title: mark("What else?"), subtitle: mark("See related KDE actions."),
      prompt: "What else can you help me with?", iconName: "view-list-details", colors: pink },
    { words: always, score: 1, title: mark("Simplify"), subtitle: mark("Shorter summary."),
      prompt: "Summarize that in one short paragraph", iconName: "text-summarize", colors: blue }
];

/** The first value that is a string with more than whitespace, "" if there is none. */
function firstText(values) {
    const found = values.find(value => typeof value === "string" && value.trim() !== "");
    return found === undefined ? "" : found;
}

/** Cuts a text to more than a card can show, without splitting a surrogate pair. */
function caption(text) {
    const cut = text.substring(0, maxCaptionLength);
    return /[\ud800-\udbff]$/.test(cut) ? cut.slice(0, -1) : cut;
}

/** Parses three numbers in 0 to 1, separated by commas. @return {r, g, b} or null */
function parseRgb(text) {
    if (typeof text !== "string" || text.length > 64) {
        return null;
    }
    const parts = text.split(",").map(part => part.trim());
    if (parts.length !== 3 || !parts.every(part => unitNumber.test(part) && Number(part) <= 1)) {
        return null;
    }
    return { r: Number(parts[0]), g: Number(parts[1]), b: Number(parts[2]) };
}

/** Whether a value is a string that Qt accepts as colour. */
function isColor(value) {
    return typeof value === "string" && value.length <= 64 && Qt.lighter(value) !== null;
}

/**
 * Makes a card of a follow-up, null if that has no prompt. Invalid icon names and colours are replaced by the
 * defaults.
 */
function normalizeFollowUp(entry) {
    if (typeof entry !== "object" || entry === null) {
        return null;
    }
    const prompt = firstText([entry.prompt, entry.label]);
    if (prompt === "") {
        return null;
    }
    const iconName = firstText([entry.iconName, entry.icon]);
    return {
        title: caption(firstText([entry.title, entry.label, prompt])),
        subtitle: caption(firstText([entry.subtitle, entry.description])),
        prompt: prompt,
        iconName: themeIconName.test(iconName) ? iconName : defaultIconName,
        iconColor: isColor(entry.iconColor) ? entry.iconColor : defaultIconColor,
        iconBg: parseRgb(entry.iconBg) ? entry.iconBg : defaultIconBg
    };
}

/** The cards of the first four valid follow-ups, none if the argument is not an array. */
function followUpCards(array) {
    const cards = [];
    for (let i = 0; Array.isArray(array) && i < array.length && cards.length < maxCards; ++i) {
        const card = normalizeFollowUp(array[i]);
        if (card) {
            cards.push(card);
        }
    }
    return cards;
}

/** Makes a card of a row of the table above, translated by tr. */
function contextualCard(row, tr) {
    return {
        title: Translatable.translated(row.title, tr),
        subtitle: Translatable.translated(row.subtitle, tr),
        prompt: row.prompt,
        iconName: row.iconName,
        iconColor: row.colors.iconColor,
        iconBg: row.colors.iconBg
    };
}

/** Whether two cards have the same prompt, ignoring case. */
function asksTheSame(a, b) {
    return a.prompt.length === b.prompt.length && a.prompt.toLowerCase() === b.prompt.toLowerCase();
}

/** The cards without those that have the same prompt as an earlier one. */
function withoutRepeats(cards) {
    return cards.filter((card, index) => !cards.slice(0, index).some(earlier => asksTheSame(earlier, card)));
}

/** Up to four cards that match the last query and its reply, best first. */
function contextualSuggestions(query, reply, tr) {
    // The patterns ignore case, because lower-casing a hostile reply can take minutes.
    const words = String(query || "") + " " + String(reply || "");
    const pool = contextual
        .map((row, order) => ({ row: row, order: order }))
        .filter(entry => entry.row.words.test(words))
        // The engine's sort is not stable, so equal scores are sorted by their order in the table.
        .sort((a, b) => b.row.score - a.row.score || a.order - b.order)
        .map(entry => contextualCard(entry.row, tr));
    return withoutRepeats(pool).slice(0, maxCards);
}

/** The cards below a reply, up to four: all follow-ups, filled up with contextual ones. */
function cards(followUps, query, reply, tr) {
    return followUpCards(followUps).concat(contextualSuggestions(query, reply, tr)).slice(0, maxCards);
}
