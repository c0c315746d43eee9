// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Markdown of replies to the rich text of Qt's text items. This is the one place where words from outside meet
// markup: they are escaped before any tag is written, they never land in an attribute, and no link or image is
// ever made. Replies may be of any size, so everything here runs in linear time: no pattern looks further for
// its end than to where the next match could begin, and no replacement calls a function (the engine collects
// garbage at nearly every call, and looks at all that was found so far each time).

// Up to which number of percent a colour reaches.
const percentColors = [
    { upTo: 20, color: "#f87171" },
    { upTo: 50, color: "#fbbf24" },
    { upTo: Infinity, color: "#4ade80" }
];

// The text items of Qt Quick draw the fill of a whole table, its margins included, but no border of a single side,
// no rounded corner, no rule and no padding around a span. So blocks are tables within tables, a callout's fill is
// opaque and lies on the colour of its border, and no-break blanks widen a span of code.
const darkPalette = {
    body: Qt.rgba(1, 1, 1, 0.95),
    muted: "rgba(255,255,255,0.65)",
    codeFill: "rgba(255,255,255,0.10)",
    rule: "rgba(255,255,255,0.18)",
    accent: "#c084fc",
    calloutFill: "#2a2035"
};
const lightPalette = {
    body: Qt.rgba(0, 0, 0, 0.88),
    muted: "rgba(0,0,0,0.55)",
    codeFill: "rgba(0,0,0,0.06)",
    rule: "rgba(0,0,0,0.15)",
    accent: "#7c3aed",
    calloutFill: "#e9e3f2"
};

const monospace = "font-family:monospace;font-size:12px;";
const lineHeight = "line-height:145%";

const headingSizes = [17, 15, 14];

const blanksPerListLevel = 2;
const maxListLevel = 4;
const listLevelWidth = 16;

// Characters that steer a text document, which no reply has a use for.
const documentControls = /[\u0000\ufdd0\ufdd1\ufffc]/g;
// Stands for a finished span of code while the rest of its paragraph is worked on.
const codePlaceholder = "\u0000";

// What a line that is more than a part of a paragraph begins with, and which form it then has; first match wins.
const anyForm = /^\s*[`\-*_#+\d>]/;
// What plain words hold none of.
const inlineForm = /[&<>%`*_\n]/;
const codeFence = /^\s*```/;
const forms = [
    { pattern: codeFence, read: readCodeBlock },
    { pattern: /^\s*(?:-{3,}|\*{3,}|_{3,})\s*$/, read: readRule },
    { pattern: /^\s*(#{1,3})\s+(\S[^]*)$/, read: readHeading },
    { pattern: /^(\s*)[-*+]\s([^]*)$/, read: readBullets },
    { pattern: /^(\s*)(\d+[.)])\s([^]*)$/, read: readNumbers },
    { pattern: /^\s*>\s?([^]*)$/, read: readCallout }
];

/**
 * Markdown as rich text. options.lightChrome chooses colours for a light ground, and percentages are coloured
 * unless options.enablePercentHighlight is false. Text without words gives "".
 */
function render(markdown, options) {
    const lines = markdown.replace(/\r\n?/g, "\n").replace(documentControls, "\ufffd").split("\n");
    const reader = {
        lines: lines,
        next: 0,
        palette: paletteFor(options && options.lightChrome),
        percentages: !options || options.enablePercentHighlight !== false
    };
    const blocks = [];
    while (reader.next < lines.length) {
        const line = lines[reader.next];
        if (isBlank(line)) {
            ++reader.next;
            continue;
        }
        const form = formOf(line);
        blocks.push(form ? form.read(reader, form.pattern) : readParagraph(reader));
    }
    return blocks.join("");
}

/** The colour of plain words, which the item that shows them gives to all that has no colour of its own. */
function bodyColor(lightChrome) {
    return paletteFor(lightChrome).body;
}

/** The colour for the first number with a percent sign in a text, "" when there is none. */
function percentColor(text) {
    let from = 0;
    for (let sign = text.indexOf("%"); sign >= 0; sign = text.indexOf("%", from)) {
        const start = numberStart(text, from, sign);
        if (start < sign) {
            return colorOfPercent(Number(text.substring(start, sign)));
        }
        from = sign + 1;
    }
    return "";
}

/** The text as rich text that reads exactly like it. */
function escapeHtml(text) {
    return text.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;");
}

function paletteFor(lightChrome) {
    return lightChrome ? lightPalette : darkPalette;
}

function colorOfPercent(number) {
    return percentColors.find(row => number <= row.upTo).color;
}

/** Where the digits begin that end at a place, end itself when there are none; not before from. */
function digitsStart(text, from, end) {
    let start = end;
    while (start > from && /\d/.test(text.charAt(start - 1))) {
        --start;
    }
    return start;
}

/** Where the number begins, with or without a fraction, that ends at a place; end itself when there is none. */
function numberStart(text, from, end) {
    const fraction = digitsStart(text, from, end);
    if (fraction === end || fraction === from || text.charAt(fraction - 1) !== ".") {
        return fraction;
    }
    const whole = digitsStart(text, from, fraction - 1);
    return whole < fraction - 1 ? whole : fraction;
}

function isBlank(line) {
    return line === "" || !/\S/.test(line);
}

/** The row of forms that a line begins, undefined for a line of a paragraph. */
function formOf(line) {
    return anyForm.test(line) ? forms.find(form => form.pattern.test(line)) : undefined;
}

// ---- Blocks. Each reader takes its lines, beginning with reader.next, and answers with their rich text.

/** A table of one cell, as wide as there is room, with a padding and a fill ("" for none) around a content. */
function within(padding, fill, content) {
    const background = fill && " style=\"background-color:" + fill + "\"";
    return "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"0\"" + background
        + "><tr><td style=\"padding:" + padding + "\">" + content + "</td></tr></table>";
}

function readCodeBlock(reader) {
    const code = [];
    ++reader.next;
    while (reader.next < reader.lines.length && !codeFence.test(reader.lines[reader.next])) {
        code.push(reader.lines[reader.next++]);
    }
    ++reader.next;
    return within("8px", "", within("10px 12px", reader.palette.codeFill,
                                    "<pre style=\"margin:0;" + monospace + "line-height:140%;white-space:pre-wrap\">"
                                    + escapeHtml(code.join("\n")) + "</pre>"));
}

function readRule(reader) {
    ++reader.next;
    return within("8px 0", "", within("0", reader.palette.rule, "<p style=\"margin:0;font-size:1px\">&nbsp;</p>"));
}

function readHeading(reader, pattern) {
    const match = pattern.exec(reader.lines[reader.next++]);
    return "<p style=\"margin:4px 0 6px 0;font-size:" + headingSizes[match[1].length - 1]
        + "px;font-weight:700;line-height:130%\">" + inline(match[2].trim(), reader) + "</p>";
}

function readBullets(reader, pattern) {
    return readList(reader, pattern, match => ({ indent: match[1], marker: "•", color: reader.palette.accent,
                                                 text: match[2] }));
}

function readNumbers(reader, pattern) {
    return readList(reader, pattern, match => ({ indent: match[1], marker: match[2], color: reader.palette.muted,
                                                 text: match[3] }));
}

/** A run of list items of one kind; itemOf makes {indent, marker, color, text} of a match. */
function readList(reader, pattern, itemOf) {
    const items = [];
    for (; reader.next < reader.lines.length; ++reader.next) {
        const line = reader.lines[reader.next];
        const form = formOf(line);
        if (!form || form.pattern !== pattern) {
            break;
        }
        items.push(itemOf(pattern.exec(line)));
    }
    return items.map((item, index) => listItem(item, index === items.length - 1, reader)).join("");
}

function listItem(item, isLast, reader) {
    // A tab counts as one level.
    const blanks = item.indent.replace(/\t/g, "  ").length;
    const level = Math.min(maxListLevel, Math.floor(blanks / blanksPerListLevel));
    const hang = Math.min(4, item.marker.length) * 8 + 6;
    return "<p style=\"margin:0 0 " + (isLast ? 8 : 2) + "px " + (level * listLevelWidth + hang) + "px;text-indent:-"
        + hang + "px;" + lineHeight + "\"><span style=\"color:" + item.color + "\">" + item.marker
        + "</span>&nbsp;&nbsp;" + inline(item.text.trim(), reader) + "</p>";
}

function readCallout(reader, pattern) {
    const words = [];
    for (; reader.next < reader.lines.length; ++reader.next) {
        const match = pattern.exec(reader.lines[reader.next]);
        if (!match) {
            break;
        }
        words.push(match[1].trim());
    }
    const body = "<p style=\"margin:0;" + lineHeight + "\">" + inline(words.join("\n"), reader) + "</p>";
    return within("4px 0 8px 0", "", within("0 0 0 3px", reader.palette.accent,
                                            within("6px 10px", reader.palette.calloutFill, body)));
}

function readParagraph(reader) {
    const words = [];
    while (reader.next < reader.lines.length && !isBlank(reader.lines[reader.next])
           && !formOf(reader.lines[reader.next])) {
        words.push(reader.lines[reader.next++].trim());
    }
    return "<p style=\"margin:0 0 8px 0;" + lineHeight + "\">" + inline(words.join("\n"), reader) + "</p>";
}

// ---- Inline forms

/** The inline forms of one block. Percentages are coloured in code too; otherwise code is left as it is. */
function inline(text, reader) {
    if (!inlineForm.test(text)) {
        return text;
    }
    const escaped = escapeHtml(text);
    const code = takeCode(reader.percentages ? highlightPercentages(escaped) : escaped);
    // A run of more than two stars closes with its last two, so that three make bold italics.
    const bold = code.rest.replace(/\*\*(?=\*?[^\s*])([^]+?)\*\*(?!\*)/g, "<b>$1</b>");
    const emphasised = italics(italics(bold, "*", true), "_", false);
    return putCode(emphasised, code.spans, reader.palette).replace(/\n/g, "<br/>");
}

/** Escaped text with its percentages in colour; bold markers around one go with it. */
function highlightPercentages(html) {
    const parts = [];
    let kept = 0;
    for (let sign = html.indexOf("%"); sign >= 0; sign = html.indexOf("%", sign + 1)) {
        const start = numberStart(html, kept, sign);
        if (start === sign) {
            continue;
        }
        const isBold = start - 2 >= kept && html.startsWith("**", start - 2) && html.startsWith("**", sign + 1);
        const number = html.substring(start, sign);
        parts.push(html.substring(kept, isBold ? start - 2 : start), "<span style=\"color:",
                   colorOfPercent(Number(number)), ";font-weight:700\">", number, "%</span>");
        kept = sign + 1 + (isBold ? 2 : 0);
    }
    parts.push(html.substring(kept));
    return parts.join("");
}

/** Takes what stands between back-ticks out of a text: {rest, spans}, a placeholder in rest for each of spans. */
function takeCode(html) {
    const parts = html.split("`");
    const rest = [parts[0]];
    const spans = [];
    for (let i = 1; i < parts.length; ++i) {
        if (parts[i] !== "" && i + 1 < parts.length) {
            spans.push(parts[i]);
            rest.push(codePlaceholder, parts[++i]);
        } else {
            rest.push("`", parts[i]);
        }
    }
    return { rest: rest.join(""), spans: spans };
}

/** Puts the spans that takeCode took back into their places. */
function putCode(html, spans, palette) {
    const opening = "<span style=\"" + monospace + "background-color:" + palette.codeFill + "\">&nbsp;";
    const parts = html.split(codePlaceholder);
    const whole = [parts[0]];
    spans.forEach((span, index) => whole.push(opening, span, "&nbsp;</span>", parts[index + 1]));
    return whole.join("");
}

/**
 * Pairs of single markers as italics. A marker pairs with the next one or with none. Where insideWords is false
 * a marker between two letters belongs to a name, such as kde_launch_app.
 */
function italics(html, marker, insideWords) {
    const parts = [];
    let kept = 0;
    let open = html.indexOf(marker);
    while (open >= 0) {
        const close = html.indexOf(marker, open + 1);
        if (close < 0) {
            break;
        }
        if (!isGapAt(html, open + 1, marker) && !isGapAt(html, close - 1, marker)
            && (insideWords || (!isWordAt(html, open - 1) && !isWordAt(html, close + 1)))) {
            parts.push(html.substring(kept, open), "<i>", html.substring(open + 1, close), "</i>");
            kept = close + 1;
            open = html.indexOf(marker, kept);
        } else {
            open = close;
        }
    }
    parts.push(html.substring(kept));
    return parts.join("");
}

/** Whether a blank, the marker itself or nothing is at a place: no emphasis begins or ends beside these. */
function isGapAt(text, index, marker) {
    const character = text.charAt(index);
    return character === marker || isBlank(character);
}

/** Whether a letter, digit or underscore is at a place; a letter is what has two cases. */
function isWordAt(text, index) {
    const character = text.charAt(index);
    return /\w/.test(character) || character.toLowerCase() !== character.toUpperCase();
}
