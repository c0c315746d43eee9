// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components/MarkdownRenderer.js" as MarkdownRenderer

TestCase {
    name: "MarkdownRenderer"

    readonly property string red: "#f87171"
    readonly property string amber: "#fbbf24"
    readonly property string green: "#4ade80"

    //! The text of rich text without its markup, with newlines for breaks and between blocks.
    function visibleText(html) {
        return html.replace(/<br\/>|<\/p>|<\/pre>/g, "\n").replace(/<[^>]*>/g, "").replace(/\n+$/, "")
            .replace(/&nbsp;/g, " ").replace(/&lt;/g, "<").replace(/&gt;/g, ">").replace(/&amp;/g, "&");
    }
    //! Renders a text that makes one paragraph, and returns what is inside of it.
    function paragraph(markdown, options) {
        const html = MarkdownRenderer.render(markdown, options);
        const match = /^<p style="margin:0 0 8px 0;line-height:145%">([^]*)<\/p>$/.exec(html);
        verify(match, "not one paragraph: " + html);
        return match[1];
    }
    function percent(number, color) {
        return "<span style=\"color:" + color + ";font-weight:700\">" + number + "%</span>";
    }
    function code(text, fill) {
        return "<span style=\"font-family:monospace;font-size:12px;background-color:" + (fill || "rgba(255,255,255,0.10)")
            + "\">&nbsp;" + text + "&nbsp;</span>";
    }
    function countOf(text, part) {
        return text.split(part).length - 1;
    }

    // ---- Escaping

    function test_escapes_data() {
        return [
            { tag: "& < > \" '", html: "&amp; &lt; &gt; \" '" },
            { tag: "<img src='http://127.0.0.1/x'>", html: "&lt;img src='http://127.0.0.1/x'&gt;" },
            { tag: "&lt;b&gt;", html: "&amp;lt;b&amp;gt;" },
            { tag: "![alt](http://127.0.0.1/x)", html: "![alt](http://127.0.0.1/x)" },
            { tag: "[link](http://127.0.0.1/x)", html: "[link](http://127.0.0.1/x)" }
        ];
    }
    function test_escapes(row) {
        compare(paragraph(row.tag), row.html);
    }

    //! In every form there are only the renderer's own tags, without any untrusted text inside.
    function test_noMarkupComesThrough_data() {
        return ["X", "# X", "- X", "1. X", "1) X", "> X", "```X\nX\n```", "`X`", "**X**", "*X*", "_X_", "**50%** X", "X\nX",
                "X`X", "X**", "# **`X`**"].map(form => ({ tag: form }));
    }
    function test_noMarkupComesThrough(row) {
        const attack = "<img src=\"http://127.0.0.1/evil\" onerror=evil><a href='evil'>\"evil";
        const html = MarkdownRenderer.render(row.tag.split("X").join(attack));
        (html.match(/<[^>]*>/g) || []).forEach(tag => {
            verify(/^<\/?(p|pre|table|tr|td|span|b|i|br)( (style|width|cellspacing|cellpadding)="[^"<>]*")*\/?>$/.test(tag), tag);
            verify(tag.indexOf("evil") < 0 && tag.indexOf("url") < 0 && tag.indexOf("http") < 0, tag);
        });
        verify(visibleText(html).indexOf("<img src=\"http://127.0.0.1/evil\" onerror=evil><a href='evil'>\"evil") >= 0, html);
    }

    function test_documentControlsAreReplaced() {
        compare(paragraph("a\u0000b\ufdd0c\ufdd1d\ufffce"), "a\ufffdb\ufffdc\ufffdd\ufffde");
        compare(paragraph("`x` \u0000"), code("x") + " \ufffd");
    }

    // ---- Blocks

    function test_nothing_data() {
        return [{ tag: "empty", text: "" }, { tag: "whitespace", text: " \t " }, { tag: "lines of whitespace", text: "\n\r\n\r \n" }];
    }
    function test_nothing(row) {
        compare(MarkdownRenderer.render(row.text), "");
    }

    function test_paragraphs() {
        compare(paragraph("one"), "one");
        compare(paragraph("one\ntwo"), "one<br/>two");
        compare(paragraph("one\r\ntwo\rthree"), "one<br/>two<br/>three");
        compare(paragraph("\n\n  one  \n\ttwo\n\n"), "one<br/>two");
        const html = MarkdownRenderer.render("one\n\n\ntwo");
        compare(countOf(html, "<p "), 2);
        compare(visibleText(html), "one\ntwo");
    }

    function test_paragraphEndsAtOtherForms_data() {
        return [{ tag: "```" }, { tag: "---" }, { tag: "# h" }, { tag: "- b" }, { tag: "1. n" }, { tag: "> c" }];
    }
    function test_paragraphEndsAtOtherForms(row) {
        compare(MarkdownRenderer.render("one\n" + row.tag + "\n"),
                MarkdownRenderer.render("one") + MarkdownRenderer.render(row.tag));
    }

    function test_codeBlocks_data() {
        return [
            { tag: "closed", text: "```\na < b\n```\nafter", code: "a &lt; b", after: "after" },
            { tag: "with a language", text: "```cpp\na\n```", code: "a", after: "" },
            { tag: "never closed", text: "```\na\n\n# b", code: "a\n\n# b", after: "" },
            { tag: "only its beginning", text: "```", code: "", after: "" },
            { tag: "whitespace is kept", text: "```\n  a\n\tb  \n```", code: "  a\n\tb  ", after: "" },
            { tag: "no inline forms", text: "```\n**a** `b` _c_ 50% *d*\n```", code: "**a** `b` _c_ 50% *d*", after: "" },
            { tag: "CR LF", text: "```\r\na\r\nb\r\n```\r\nafter", code: "a\nb", after: "after" }
        ];
    }
    function test_codeBlocks(row) {
        const html = MarkdownRenderer.render(row.text);
        const match = /^(.*)<pre style="([^"]*)">([^]*)<\/pre>([^]*)$/.exec(html);
        verify(match, html);
        compare(match[3], row.code);
        compare(match[2], "margin:0;font-family:monospace;font-size:12px;line-height:140%;white-space:pre-wrap");
        verify(match[1].indexOf("padding:8px") >= 0 && match[1].indexOf("padding:10px 12px") >= 0, match[1]);
        verify(match[1].indexOf("background-color:rgba(255,255,255,0.10)") >= 0, match[1]);
        compare(visibleText(match[4]), row.after);
    }

    function test_rules_data() {
        return [
            { tag: "---", isRule: true }, { tag: "***", isRule: true }, { tag: "___", isRule: true },
            { tag: "----------", isRule: true }, { tag: "--- ", isRule: true },
            { tag: "--", isRule: false }, { tag: "--x", isRule: false }, { tag: "-*_", isRule: false },
            { tag: "---x", isRule: false }, { tag: "--- x", isRule: false }
        ];
    }
    function test_rules(row) {
        compare(visibleText(MarkdownRenderer.render(row.tag)), row.isRule ? "\u200b" : row.tag);
    }

    function test_headings_data() {
        return [{ tag: "# a", size: 17 }, { tag: "## a", size: 15 }, { tag: "### a", size: 14 },
                { tag: "#   a  ", size: 17 }];
    }
    function test_headings(row) {
        const html = MarkdownRenderer.render(row.tag);
        verify(html.indexOf("font-size:" + row.size + "px;font-weight:700;line-height:130%\">a</p>") > 0, html);
    }

    function test_noHeadings_data() {
        return [{ tag: "#### a" }, { tag: "#a" }, { tag: "#" }, { tag: "# " }];
    }
    function test_noHeadings(row) {
        compare(paragraph(row.tag), row.tag.trim());
    }

    function test_bullets_data() {
        return [{ tag: "-" }, { tag: "*" }, { tag: "+" }];
    }
    function test_bullets(row) {
        const html = MarkdownRenderer.render(row.tag + " a\n" + row.tag + " b 50%\n");
        compare(countOf(html, "<span style=\"color:#c084fc\">•</span>"), 2);
        compare(visibleText(html), "•  a\n•  b 50%");
        verify(html.indexOf(percent("50", amber)) > 0);
    }

    function test_numbers() {
        const html = MarkdownRenderer.render("1. a\n2) b\n10. c");
        compare(visibleText(html), "1.  a\n2)  b\n10.  c");
        compare(countOf(html, "<span style=\"color:rgba(255,255,255,0.65)\">"), 3);
    }

    function test_noListItems_data() {
        return [{ tag: "-a" }, { tag: "1.a" }, { tag: "1 a" }, { tag: "a. b" }];
    }
    function test_noListItems(row) {
        compare(paragraph(row.tag), row.tag);
    }

    function test_runsEndWhenTheKindChanges() {
        const bullets = MarkdownRenderer.render("- a\n* b");
        const numbers = MarkdownRenderer.render("1. c");
        compare(MarkdownRenderer.render("- a\n* b\n1. c\n- a\n* b"), bullets + numbers + bullets);
        compare(countOf(bullets, "margin:0 0 8px "), 1);
        compare(countOf(bullets, "margin:0 0 2px "), 1);
    }

    function test_nestedItemsAreIndented_data() {
        return [{ tag: "- a", margin: 14 }, { tag: " - a", margin: 14 }, { tag: "  - a", margin: 30 },
                { tag: "\t- a", margin: 30 }, { tag: "    - a", margin: 46 }, { tag: " ".repeat(100) + "- a", margin: 78 },
                { tag: "1. a", margin: 22 }, { tag: "   10. a", margin: 46 }, { tag: "123456789. a", margin: 38 }];
    }
    function test_nestedItemsAreIndented(row) {
        const match = /margin:0 0 8px (\d+)px;/.exec(MarkdownRenderer.render(row.tag));
        compare(Number(match[1]), row.margin);
    }

    function test_callouts() {
        const html = MarkdownRenderer.render("> a **b**\n>c\n>\n> d\nafter");
        verify(html.indexOf("a <b>b</b><br/>c<br/><br/>d</p>") > 0, html);
        verify(html.indexOf("padding:0 0 0 3px") > 0 && html.indexOf("background-color:#c084fc") > 0, html);
        verify(html.endsWith(MarkdownRenderer.render("after")), html);
        compare(countOf(html, "padding:0 0 0 3px"), 1);
    }

    //! Decided by the first letter of each form.
    function test_rightToLeft_data() {
        return [
            { tag: "bullet", text: "- حليب", part: "margin:0 14px 8px 0;text-indent:-14px" },
            { tag: "number", text: "1. حليب", part: "margin:0 22px 8px 0;text-indent:-22px" },
            { tag: "nested", text: "  - *חלב*", part: "margin:0 30px 8px 0;" },
            { tag: "other letters first", text: "- milk حليب", part: "margin:0 0 8px 14px;" },
            { tag: "callout", text: "> 1. חלב", part: "padding:0 3px 0 0" },
            { tag: "code", text: "```\n# حليب\nmilk\n```", part: "<pre dir=\"ltr\" " },
            { tag: "other code", text: "```\nmilk # حليب\n```", part: "<pre style=" }
        ];
    }
    function test_rightToLeft(row) {
        const html = MarkdownRenderer.render(row.text);
        verify(html.indexOf(row.part) > 0, html);
    }

    function test_freeCorner_data() {
        return [{ tag: "right", onLeft: false }, { tag: "left", onLeft: true }];
    }
    function test_freeCorner(row) {
        verify(MarkdownRenderer.withFreeCorner("a", 80, 20, row.onLeft).startsWith("<table style=\"float:" + row.tag + "\""));
    }

    // ---- Inline forms

    function test_emphasis_data() {
        return [
            { tag: "**a**", html: "<b>a</b>" },
            { tag: "x **a b** y **c** z", html: "x <b>a b</b> y <b>c</b> z" },
            { tag: "*a*", html: "<i>a</i>" },
            { tag: "_a b_", html: "<i>a b</i>" },
            { tag: "***a***", html: "<b><i>a</i></b>" },
            { tag: "**a *b* c**", html: "<b>a <i>b</i> c</b>" },
            { tag: "*a **b** c*", html: "<i>a <b>b</b> c</i>" },
            { tag: "**a *b** c*", html: "<b>a <i>b</i></b><i> c</i>" },
            { tag: "*a **b* c**", html: "<i>a <b>b</b></i><b> c</b>" },
            { tag: "**a *b _c** d_ e*", html: "<b>a <i>b <i>c</i></i></b><i><i> d</i> e</i>" },
            { tag: "**_a_**", html: "<b><i>a</i></b>" },
            { tag: "**a\nb**", html: "<b>a<br/>b</b>" },
            { tag: "(_a_), \"*b*\".", html: "(<i>a</i>), \"<i>b</i>\"." },
            { tag: "un*frigging*believable", html: "un<i>frigging</i>believable" },
            { tag: "kde_launch_app and a_b_", html: "kde_launch_app and a_b_" },
            { tag: "ü_ber_ and _ber_ü", html: "ü_ber_ and _ber_ü" },
            { tag: "snake_case then _a_", html: "snake_case then <i>a</i>" },
            { tag: "2 * 3 * 4", html: "2 * 3 * 4" },
            { tag: "2 ** 3 ** 4", html: "2 ** 3 ** 4" },
            { tag: "*a", html: "*a" }, { tag: "a*", html: "a*" }, { tag: "**a", html: "**a" }, { tag: "_a", html: "_a" },
            { tag: "x ** y", html: "x ** y" }, { tag: "a __ b", html: "a __ b" }, { tag: "__init__", html: "__init__" },
            { tag: "$1 **$&**", html: "$1 <b>$&amp;</b>" }
        ];
    }
    function test_emphasis(row) {
        compare(paragraph(row.tag), row.html);
    }

    function test_codeSpans_data() {
        return [
            { tag: "`a`", html: code("a") },
            { tag: "x `a b` y `c`", html: "x " + code("a b") + " y " + code("c") },
            { tag: "`<b> & *x* **y** _z_`", html: code("&lt;b&gt; &amp; *x* **y** _z_") },
            { tag: "**`a`** *`b`*", html: "<b>" + code("a") + "</b> <i>" + code("b") + "</i>" },
            { tag: "`a\nb`", html: code("a<br/>b") },
            { tag: "a ` b", html: "a ` b" },
            { tag: "a `` b", html: "a `` b" },
            { tag: "``a`", html: "`" + code("a") },
            { tag: "`a` ` `b`", html: code("a") + " " + code(" ") + "b`" },
            { tag: "`50%`", html: code(percent("50", amber)) }
        ];
    }
    function test_codeSpans(row) {
        compare(paragraph(row.tag), row.html);
    }

    function test_percentages_data() {
        return [
            { tag: "0%", html: percent("0", red) }, { tag: "20%", html: percent("20", red) },
            { tag: "20.0%", html: percent("20.0", red) }, { tag: "20.5%", html: percent("20.5", amber) },
            { tag: "50%", html: percent("50", amber) }, { tag: "50.01%", html: percent("50.01", green) },
            { tag: "51%", html: percent("51", green) }, { tag: "100%", html: percent("100", green) },
            { tag: "1000000%", html: percent("1000000", green) },
            { tag: "a 5% b 60% c", html: "a " + percent("5", red) + " b " + percent("60", green) + " c" },
            { tag: "**50%**", html: percent("50", amber) },
            { tag: "**Load 50%**", html: "<b>Load " + percent("50", amber) + "</b>" },
            { tag: "**50% used**", html: "<b>" + percent("50", amber) + " used</b>" },
            { tag: "*50%*", html: "<i>" + percent("50", amber) + "</i>" },
            { tag: "v50%x", html: "v" + percent("50", amber) + "x" },
            { tag: ".5%", html: "." + percent("5", red) },
            { tag: "1.2.60%", html: "1." + percent("2.60", red) },
            { tag: "5%%", html: percent("5", red) + "%" },
            { tag: "50", html: "50" }, { tag: "%", html: "%" }, { tag: "50 %", html: "50 %" }, { tag: "x%", html: "x%" }
        ];
    }
    function test_percentages(row) {
        compare(paragraph(row.tag), row.html);
    }

    function test_percentagesWithoutColors() {
        compare(paragraph("50% **51%** `5%`", { enablePercentHighlight: false }), "50% <b>51%</b> " + code("5%"));
        compare(paragraph("50%", { enablePercentHighlight: true }), percent("50", amber));
        compare(paragraph("50%", {}), percent("50", amber));
    }

    function test_percentColor_data() {
        return [
            { tag: "20%", color: red }, { tag: "20.5%", color: amber }, { tag: "50%", color: amber },
            { tag: "51%", color: green }, { tag: "load 5% of 90%", color: red }, { tag: "3 of 60%", color: green },
            { tag: "% and 60%", color: green }, { tag: "50", color: "" }, { tag: "50 %", color: "" }, { tag: "%", color: "" },
            { tag: "", color: "" }
        ];
    }
    function test_percentColor(row) {
        compare(MarkdownRenderer.percentColor(row.tag), row.color);
    }

    // ---- Colours

    function test_bodyColor() {
        verify(Qt.colorEqual(MarkdownRenderer.bodyColor(false), Qt.rgba(1, 1, 1, 0.95)));
        verify(Qt.colorEqual(MarkdownRenderer.bodyColor(true), Qt.rgba(0, 0, 0, 0.88)));
    }

    function test_lightChrome() {
        const light = { lightChrome: true };
        compare(paragraph("`a`", light), code("a", "rgba(0,0,0,0.06)"));
        verify(MarkdownRenderer.render("1. a", light).indexOf("color:rgba(0,0,0,0.55)") > 0);
        verify(MarkdownRenderer.render("- a", light).indexOf("color:#7c3aed") > 0);
        verify(MarkdownRenderer.render("> a", light).indexOf("background-color:#7c3aed") > 0);
        verify(MarkdownRenderer.render("```\na", light).indexOf("background-color:rgba(0,0,0,0.06)") > 0);
    }

    //! All styles of each form, in both themes.
    function test_styles_data() {
        const texts = { "paragraph": "a", "rule": "---", "heading 1": "# a", "heading 2": "## a", "heading 3": "### a",
                        "bullet": "- a", "number": "12. a", "callout": "> a", "code": "```\na\n```", "inline code": "`a`",
                        "bold percentage": "**5%**" };
        const line = "line-height:145%";
        const rows = light => {
            const colors = light ? { fill: "rgba(0,0,0,0.06)", rule: "rgba(0,0,0,0.15)", accent: "#7c3aed", muted: "rgba(0,0,0,0.55)",
                                     callout: "#e9e3f2" }
                                 : { fill: "rgba(255,255,255,0.10)", rule: "rgba(255,255,255,0.18)", accent: "#c084fc",
                                     muted: "rgba(255,255,255,0.65)", callout: "#2a2035" };
            const heading = size => ["margin:4px 0 6px 0;font-size:" + size + "px;font-weight:700;line-height:130%"];
            const styles = {
                "paragraph": ["margin:0 0 8px 0;" + line],
                "rule": ["padding:8px 0;font-size:1px;background-color:" + colors.rule],
                "heading 1": heading(17), "heading 2": heading(15), "heading 3": heading(14),
                "bullet": ["margin:0 0 8px 14px;text-indent:-14px;" + line, "color:" + colors.accent],
                "number": ["margin:0 0 8px 30px;text-indent:-30px;" + line, "color:" + colors.muted],
                "callout": ["padding:4px 0 8px 0", "background-color:" + colors.accent, "padding:0 0 0 3px",
                            "background-color:" + colors.callout, "padding:6px 10px", "margin:0;" + line],
                "code": ["padding:8px", "background-color:" + colors.fill, "padding:10px 12px",
                         "margin:0;font-family:monospace;font-size:12px;line-height:140%;white-space:pre-wrap"],
                "inline code": ["margin:0 0 8px 0;" + line, "font-family:monospace;font-size:12px;background-color:" + colors.fill],
                "bold percentage": ["margin:0 0 8px 0;" + line, "color:#f87171;font-weight:700"]
            };
            return Object.keys(texts).map(form => ({ tag: form + (light ? ", light" : ""), text: texts[form], light: light,
                                                     styles: styles[form] }));
        };
        return rows(false).concat(rows(true));
    }
    function test_styles(row) {
        const html = MarkdownRenderer.render(row.text, { lightChrome: row.light, enablePercentHighlight: true });
        const styles = Array.from(html.match(/style="[^"]*"/g)).map(style => style.slice(7, -1));
        compare(styles, row.styles);
    }

    // ---- Size

    // With quadratic complexity these would take minutes: a megabyte of plain markers, and less text that makes markup.
    function test_hostileSize_data() {
        const quick = ["*", "`", "> ", "**", "_", "<", "&", "1", "%", " ", "-", "#", "a"];
        const blocks = ["```\n", ">\n", "> a\n", "- a\n", "1. a\n", "# a\n", "---\n", "a\n", "a\n\n", "\n"];
        const inlines = ["**a ", "**a", "*a ", "_a ", "`a ", "``a", "5% ", "**5%", "1.1", "1.", "9.%", "a_", " *", "**a *b** c* ", "\u0130"];
        return quick.map(text => ({ tag: JSON.stringify(text), text: text, size: 1048576 }))
            .concat(blocks.concat(inlines).map(text => ({ tag: JSON.stringify(text), text: text, size: 262144 })));
    }
    function test_hostileSize(row) {
        const text = row.text.repeat(Math.ceil(row.size / row.text.length));
        // The output is proportional to the input. Superlinear work would exceed the timeout of the test.
        verify(MarkdownRenderer.render(text).length < 100 * text.length);
        compare(typeof MarkdownRenderer.percentColor(text), "string");
    }
}
