// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Converts the Markdown of replies to the rich text of Qt's text items. This is the only place where untrusted text
// becomes markup: it is escaped before any tag is added, never used in an attribute, and links and images are never
// created. Replies may have any size, so everything here runs in linear time: no pattern scans for its end beyond the
// start of the next match, and no replacement uses a function (the engine collects garbage at nearly every call, and
// visits all matches so far each time).

// The colours of percentages, each up to a maximum.
const percentColors = [
    { upTo: 20, color: "#f87171" },
    { upTo: 50, color: "#fbbf24" },
    { upTo: Infinity, color: "#4ade80" }
];

// Qt Quick's text items fill a whole table including its margins, but support neither borders of a single side nor
// rounded corners, rules or padding of spans. So blocks are nested tables, a callout's opaque fill covers all but the
// edge of a fill in the border's colour, and no-break spaces widen a code span.
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

const spacesPerListLevel = 2;
const maxListLevel = 4;
const listLevelWidth = 16;

// Control characters of QTextDocument.
const documentControls = /[\u0000\ufdd0\ufdd1\ufffc]/g;
const zeroWidthSpace = "\u200b";
// Replaces a code span while the rest of the paragraph is converted.
const codePlaceholder = "\u0000";

// Quick check for lines that may begin a block form.
const anyForm = /^\s*[`\-*_#+\d>]/;
// Text that matches has inline forms or needs escaping.
const inlineForm = /[&<>%`*_\n]/;
// Its first group matches letters that are written from right to left.
const firstLetter = /([\u0590-\u08ff\ufb1d-\ufdff\ufe70-\ufefc])|[A-Za-z\u00c0-\u058f\u0900-\u1fff\u2c00-\ud7ff]/;
const codeFence = /^\s*```/;
// The block forms. The first match counts.
const forms = [
    { pattern: codeFence, read: readCodeBlock },
    { pattern: /^\s*(?:-{3,}|\*{3,}|_{3,})\s*$/, read: readRule },
    { pattern: /^\s*(#{1,3})\s+(\S[^]*)$/, read: readHeading },
    { pattern: /^(\s*)[-*+]\s([^]*)$/, read: readBullets },
    { pattern: /^(\s*)(\d+[.)])\s([^]*)$/, read: readNumbers },
    { pattern: /^\s*>\s?([^]*)$/, read: readCallout }
];

/**
 * Converts Markdown to rich text. options.lightChrome selects colours for a light background. Percentages are coloured
 * unless options.enablePercentHighlight is false. Returns "" if there is only whitespace.
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

/**
 * Leaves the upper right corner of rendered text free, or the left one, for something of this width and height in
 * pixels. Only lines beside it are shorter.
 */
function withFreeCorner(html, width, height, onLeft) {
    if (html === "" || width <= 0 || height <= 0) {
        return html;
    }
    return "<table style=\"float:" + (onLeft ? "left" : "right") + "\" width=\"" + width
        + "\" border=\"0\" cellspacing=\"0\" cellpadding=\"0\"><tr><td height=\"" + height + "\"></td></tr></table>" + html;
}

/** The default colour of the text, to be set on the text item. */
function bodyColor(lightChrome) {
    return paletteFor(lightChrome).body;
}

/** The colour of the first percentage in a text, "" if there is none. */
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

/** Escapes a text for rich text. */
function escapeHtml(text) {
    return text.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;");
}

function paletteFor(lightChrome) {
    return lightChrome ? lightPalette : darkPalette;
}

function colorOfPercent(number) {
    return percentColors.find(row => number <= row.upTo).color;
}

/** The start of the digits before position end, end if there are none. Does not go back beyond from. */
function digitsStart(text, from, end) {
    let start = end;
    while (start > from && /\d/.test(text.charAt(start - 1))) {
        --start;
    }
    return start;
}

/** The start of the number before position end, with or without a fraction; end if there is none. */
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

/** The block form that a line begins, undefined for a line of a paragraph. */
function formOf(line) {
    return anyForm.test(line) ? forms.find(form => form.pattern.test(line)) : undefined;
}

// ---- Blocks. Each function consumes lines from reader.next on and returns their rich text.

/** A table with one cell and full width, with the cell's style and the table's fill ("" for none). */
function within(style, fill, content) {
    const background = fill && " style=\"background-color:" + fill + "\"";
    return "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"0\"" + background
        + "><tr><td style=\"" + style + "\">" + content + "</td></tr></table>";
}

/** Whether a text is written from right to left, which its first letter decides. */
function isRightToLeft(text) {
    const first = firstLetter.exec(text);
    return first !== null && first[1] !== undefined;
}

function readCodeBlock(reader) {
    const code = [];
    ++reader.next;
    while (reader.next < reader.lines.length && !codeFence.test(reader.lines[reader.next])) {
        code.push(reader.lines[reader.next++]);
    }
    ++reader.next;
    // Code is written from left to right even if it begins with a comment that isn't.
    const text = code.join("\n");
    const body = "<pre" + (isRightToLeft(text) ? " dir=\"ltr\"" : "") + " style=\"margin:0;" + monospace
        + "line-height:140%;white-space:pre-wrap\">" + escapeHtml(text) + "</pre>";
    return within("padding:8px", "", within("padding:10px 12px", reader.palette.codeFill, body));
}

function readRule(reader) {
    ++reader.next;
    // The fill of a cell covers its lines, without the padding. The only character has no width, because it would be
    // filled twice. A nested table would take nearly three times as long.
    return within("padding:8px 0;font-size:1px;background-color:" + reader.palette.rule, "", zeroWidthSpace);
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

/** Successive list items of one kind. itemOf converts a match to {indent, marker, color, text}. */
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
    const spaces = item.indent.replace(/\t/g, "  ").length;
    const level = Math.min(maxListLevel, Math.floor(spaces / spacesPerListLevel));
    const hang = Math.min(4, item.marker.length) * 8 + 6;
    const indent = level * listLevelWidth + hang;
    const [right, left] = isRightToLeft(item.text) ? [indent + "px", "0"] : ["0", indent + "px"];
    return "<p style=\"margin:0 " + right + " " + (isLast ? 8 : 2) + "px " + left + ";text-indent:-"
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
    const bar = isRightToLeft(words.join("\n")) ? "0 3px 0 0" : "0 0 0 3px";
    return within("padding:4px 0 8px 0", "", within("padding:" + bar, reader.palette.accent,
                                            within("padding:6px 10px", reader.palette.calloutFill, body)));
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

/** Converts the inline forms of one block. In code only percentages are converted. */
function inline(text, reader) {
    if (!inlineForm.test(text)) {
        return text;
    }
    const escaped = escapeHtml(text);
    const code = takeCode(reader.percentages ? highlightPercentages(escaped) : escaped);
    // The last two of several asterisks close bold text, so that three make bold italics.
    const bold = code.rest.replace(/\*\*(?=\*?[^\s*])([^]+?)\*\*(?!\*)/g, "<b>$1</b>");
    const emphasised = italics(italics(bold, "*", true), "_", false);
    return putCode(nested(emphasised), code.spans, reader.palette).replace(/\n/g, "<br/>");
}

/** Nests bold and italics that overlap, by ending the inner one with the outer one and beginning it again. */
function nested(html) {
    if (html.indexOf("<b>") < 0 || html.indexOf("<i>") < 0) {
        return html;
    }
    const parts = html.split(/(<\/?[bi]>)/);
    const open = [];
    for (let i = 1; i < parts.length; i += 2) {
        const tag = parts[i];
        const name = tag.charAt(tag.length - 2);
        if (tag.charAt(1) !== "/") {
            open.push(name);
            continue;
        }
        const inner = [];
        while (open.length > 0 && open[open.length - 1] !== name) {
            inner.push(open.pop());
        }
        open.pop();
        parts[i] = inner.map(other => "</" + other + ">").join("") + tag
            + inner.reverse().map(other => "<" + other + ">").join("");
        inner.forEach(other => open.push(other));
    }
    return parts.join("");
}

/** Colours the percentages of an escaped text. Removes bold markers directly around a percentage. */
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

/** Replaces the code spans of a text by placeholders. @return {rest, spans} */
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

/** Replaces the placeholders of takeCode by formatted code spans. */
function putCode(html, spans, palette) {
    const opening = "<span style=\"" + monospace + "background-color:" + palette.codeFill + "\">&nbsp;";
    const parts = html.split(codePlaceholder);
    const whole = [parts[0]];
    spans.forEach((span, index) => whole.push(opening, span, "&nbsp;</span>", parts[index + 1]));
    return whole.join("");
}

/**
 * Converts pairs of single markers to italics. A marker pairs only with the next one. If insideWords is false, markers
 * between letters are kept because they are part of a name, such as kde_launch_app.
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

/** Whether there is whitespace, the marker or nothing at a position. Emphasis can't begin or end next to these. */
function isGapAt(text, index, marker) {
    const character = text.charAt(index);
    return character === marker || isBlank(character);
}

/** Whether there is a letter, digit or underscore at a position. A letter is a character with two cases. */
function isWordAt(text, index) {
    const character = text.charAt(index);
    return /\w/.test(character) || character.toLowerCase() !== character.toUpperCase();
}
