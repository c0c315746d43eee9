// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Untrusted text inside rows of Markdown, such as the name of a file in bold. The renderer knows no escapes, so
// characters with a meaning are kept from it: a no-break space of zero width beside a marker makes it an ordinary
// character, and a similar letter replaces the backtick.

const maxLength = 200;
const joiner = "\ufeff";
const start = "\u2060"; // of zero width too, but no space: bold text can begin with it
const quote = "\u02cb"; // modifier letter grave accent

// Control characters, line separators, and invisible characters, some of which reverse the text after them. Not the
// joiner inside emoji.
const unprintable = /[\u0000-\u001f\u007f-\u009f\u061c\u200b\u200e\u200f\u2028-\u202e\u2060-\u2069\ufeff\ufffc]/g;
const rightToLeft = /[\u0590-\u08ff\ufb1d-\ufdff\ufe70-\ufefc]|[\ud802\ud803\ud83a\ud83b]/;

// A value within a text that is written in the other direction, see Translatable.filled(). It can't affect the text
// around it.
const isolated = /\u2068([^\u2066-\u2069]*)\u2069/;
const isolatedOrUnprintable = new RegExp(isolated.source + "|" + unprintable.source, "g");

/** A text as a single line without invisible characters, except around isolated values, of any length. For plain text. */
function printable(text) {
    return text.replace(isolatedOrUnprintable, (found, value) => value === undefined ? "\ufffd"
        : "\u2068" + value.replace(unprintable, "\ufffd") + "\u2069");
}

/**
 * A text as a single line without invisible characters, cut if it is extremely long. For plain text.
 * @param length in characters, by default that of a name
 */
function oneLine(text, length = maxLength) {
    if (text.length <= length) {
        return printable(text);
    }
    // Not within a surrogate pair.
    const end = /[\ud800-\udbff]/.test(text.charAt(length - 1)) ? length - 1 : length;
    const cut = text.substring(0, end) + "…";
    // Without its end, an isolated value would include the text after it.
    return printable(cut.lastIndexOf("\u2068") > cut.lastIndexOf("\u2069") ? cut + "\u2069" : cut);
}

/** Markdown that shows a name as oneLine() does, at most with a similar character for a backtick. */
function asMarkdown(text) {
    const name = oneLine(text)
        .replace(/`/g, quote)
        .replace(/[*_]/g, joiner + "$&" + joiner)
        .replace(/%/g, joiner + "%");
    // Isolated, or the words around a right-to-left name would change their order.
    if (rightToLeft.test(name)) {
        return "\u2068" + name + "\u2069";
    }
    return /^\s/.test(name) ? start + name : name;
}
