// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import org.kde.loomra 1.0

import "qrc:/org/kde/loomra/components/MarkdownRenderer.js" as MarkdownRenderer

Item {
    id: root

    width: 600
    height: 800

    //! A bubble inside a row, as in the conversation.
    Component {
        id: rows

        Rectangle {
            property alias bubble: bubble

            width: 520
            height: bubble.implicitHeight + 18
            color: bubble.lightChrome ? "white" : "black"

            BotTextBubble {
                id: bubble
                anchors.fill: parent
            }
        }
    }

    TestCase {
        id: test
        name: "BotTextBubble"
        when: windowShown

        function make(properties) {
            const row = createTemporaryObject(rows, root);
            verify(row);
            Object.keys(properties || {}).forEach(name => { row.bubble[name] = properties[name]; });
            return row;
        }
        function words(row) {
            return findChild(row, "words");
        }
        function dot(row) {
            return findChild(row, "toolDot").item;
        }
        //! Whether two colours are equal, except for rounding errors of blending.
        function isNear(a, b) {
            return Math.max(Math.abs(a.r - b.r), Math.abs(a.g - b.g), Math.abs(a.b - b.b)) < 1.5 / 255;
        }
        //! The number of pixels of this colour.
        function countOfColor(item, color) {
            const picture = grabImage(item);
            const wanted = Qt.lighter(color, 1); // converts a string to a colour
            let count = 0;
            for (let y = 0; y < item.height; ++y) {
                for (let x = 0; x < item.width; ++x) {
                    if (isNear(picture.pixel(x, y), wanted)) {
                        ++count;
                    }
                }
            }
            return count;
        }
        //! The bounding rectangle of everything that is drawn on the background.
        function inkOf(item) {
            const picture = grabImage(item);
            const ground = picture.pixel(0, 0);
            const ink = { left: item.width, top: item.height, right: 0, bottom: 0 };
            for (let y = 0; y < item.height; ++y) {
                for (let x = 0; x < item.width; ++x) {
                    if (!Qt.colorEqual(picture.pixel(x, y), ground)) {
                        ink.left = Math.min(ink.left, x);
                        ink.top = Math.min(ink.top, y);
                        ink.right = Math.max(ink.right, x);
                        ink.bottom = Math.max(ink.bottom, y);
                    }
                }
            }
            return ink;
        }

        function test_firstValues() {
            const bubble = make().bubble;
            compare([bubble.content, bubble.hasTool, bubble.toolStatus, bubble.enablePercentHighlight,
                     bubble.lightChrome, bubble.freeCorner], ["", false, "", true, false, Qt.size(0, 0)]);
        }

        function test_rendersAgainWhenContentChanges() {
            const row = make({ content: "**one**" });
            compare(words(row).text, MarkdownRenderer.render("**one**", { lightChrome: false }));
            const height = row.bubble.implicitHeight;
            row.bubble.content = "one\n\ntwo\n\nthree";
            compare(words(row).text, MarkdownRenderer.render("one\n\ntwo\n\nthree", { lightChrome: false }));
            verify(row.bubble.implicitHeight > 2 * height);
        }

        function test_rendersAgainWhenTheChromeChanges() {
            const row = make({ content: "- one" });
            compare(String(words(row).color), String(Qt.rgba(1, 1, 1, 0.95)));
            row.bubble.lightChrome = true;
            compare(words(row).text, MarkdownRenderer.render("- one", { lightChrome: true }));
            compare(String(words(row).color), String(Qt.rgba(0, 0, 0, 0.88)));
            row.bubble.lightChrome = false;
            compare(words(row).text, MarkdownRenderer.render("- one", { lightChrome: false }));
        }

        function test_percentages() {
            const row = make({ content: "50%", enablePercentHighlight: false });
            compare(countOfColor(row, "#fbbf24"), 0);
            row.bubble.enablePercentHighlight = true;
            verify(countOfColor(row, "#fbbf24") > 0);
        }

        function test_percentColorsAreDrawn_data() {
            return [{ tag: "20%", color: "#f87171" }, { tag: "20.5%", color: "#fbbf24" }, { tag: "50%", color: "#fbbf24" },
                    { tag: "51%", color: "#4ade80" }];
        }
        function test_percentColorsAreDrawn(row) {
            verify(countOfColor(make({ content: row.tag }), row.color) > 0);
        }

        //! Whether anything is drawn in a part of an item.
        function hasInk(item, left, top, width, height) {
            const picture = grabImage(item);
            const ground = picture.pixel(0, 0);
            for (let y = top; y < top + height; ++y) {
                for (let x = left; x < left + width; ++x) {
                    if (!Qt.colorEqual(picture.pixel(x, y), ground))
                        return true;
                }
            }
            return false;
        }

        function test_freeCorner_data() {
            const words = "lorem ".repeat(100);
            return [
                { tag: "paragraph", content: words },
                { tag: "heading", content: "# " + words },
                { tag: "list", content: "- " + words },
                { tag: "code", content: "```\n" + words + "\n```" },
                { tag: "callout", content: "> " + words },
                { tag: "too long for Markdown", content: "lorem ".repeat(10000) }
            ];
        }
        function test_freeCorner(data) {
            const row = make({ content: data.content });
            // The top of the row is enough.
            row.height = 150;
            row.clip = true;
            row.bubble.anchors.fill = undefined;
            row.bubble.y = 9;
            row.bubble.width = row.width;
            row.bubble.height = Qt.binding(() => row.bubble.implicitHeight);
            verify(hasInk(row, row.width - 92, 8, 92, 24), "text in the corner");
            row.bubble.freeCorner = Qt.size(92, 32);
            verify(!hasInk(row, row.width - 92, 0, 92, 30), "no text in the corner");
            verify(hasInk(row, row.width - 92, 32, 92, 80), "text below the corner");
        }

        function test_freeCornerOfAShortText() {
            const row = make({ content: "Done." });
            const height = row.bubble.implicitHeight;
            row.bubble.freeCorner = Qt.size(92, 32);
            compare(row.bubble.implicitHeight, height);
            row.bubble.content = "";
            compare(words(row).text, "");
        }

        function test_blocksAreDrawn_data() {
            return [
                { tag: "fill of code", text: "```\na\n```", light: false, color: Qt.rgba(0.1, 0.1, 0.1, 1) },
                { tag: "fill of code, light", text: "```\na\n```", light: true,
                  color: Qt.rgba(0.94, 0.94, 0.94, 1) },
                { tag: "border of a callout", text: "> a", light: false, color: "#c084fc" },
                { tag: "border of a callout, light", text: "> a", light: true, color: "#7c3aed" },
                { tag: "fill of a callout", text: "> a", light: false, color: "#2a2035" },
                { tag: "rule", text: "---", light: false, color: Qt.rgba(0.18, 0.18, 0.18, 1) }
            ];
        }
        function test_blocksAreDrawn(row) {
            const count = countOfColor(make({ content: row.text, lightChrome: row.light }), row.color);
            verify(count > 50, "pixels: " + count);
        }

        function test_toolDot_data() {
            return [
                { tag: "success", color: "#4ade80" }, { tag: "SUCCESS", color: "#4ade80" },
                { tag: "error", color: "#f87171" }, { tag: "Failed", color: "#f87171" },
                { tag: "pending", color: "#fbbf24" }, { tag: "", color: "#fbbf24" }, { tag: "constructor", color: "#fbbf24" },
                { tag: "successfully", color: "#fbbf24" }
            ];
        }
        function test_toolDot(row) {
            const item = make({ content: "words", hasTool: true, toolStatus: row.tag });
            compare(dot(item).width, 10);
            compare(dot(item).height, 10);
            verify(Qt.colorEqual(dot(item).color, row.color));
            verify(countOfColor(item, row.color) > 40);
            const place = dot(item).mapToItem(item, 0, 0);
            verify(place.x >= 12 && place.x + 10 < words(item).x, "not left of the words");
        }

        function test_toolDotComesAndGoes() {
            const row = make({ content: "words" });
            compare(dot(row), null);
            compare(words(row).x, 12);
            row.bubble.hasTool = true;
            verify(dot(row));
            verify(words(row).x > 12);
            row.bubble.hasTool = false;
            compare(dot(row), null);
            compare(words(row).x, 12);
        }

        function test_implicitHeight_data() {
            return [
                { tag: "a line", text: "One short line", least: 20, most: 32 },
                { tag: "nothing", text: "", least: 10, most: 32 },
                { tag: "wrapped", text: "word ".repeat(200), least: 200, most: 2000 },
                { tag: "one long word", text: "w".repeat(500), least: 100, most: 1000 },
                { tag: "a block", text: "```\na\nb\nc\n```", least: 60, most: 140 }
            ];
        }
        function test_implicitHeight(row) {
            const item = make({ content: row.text });
            compare(item.bubble.implicitHeight, Math.ceil(words(item).implicitHeight));
            verify(item.bubble.implicitHeight >= row.least && item.bubble.implicitHeight <= row.most,
                   "height: " + item.bubble.implicitHeight);
            verify(words(item).contentWidth <= words(item).width);
            compare(words(item).width, 520 - 24);
        }

        function test_implicitHeightFollowsTheWidth() {
            const row = make({ content: "word ".repeat(100) });
            const height = row.bubble.implicitHeight;
            row.width = 260;
            verify(row.bubble.implicitHeight > 1.7 * height);
        }

        function test_marginsOnAllSides_data() {
            return [{ tag: "words", text: "Äg ".repeat(200) }, { tag: "code", text: "```\na\n```" },
                    { tag: "callout", text: "> a" }, { tag: "list", text: "- Äg\n- Äg" }, { tag: "heading", text: "# Äg" }];
        }
        function test_marginsOnAllSides(row) {
            const item = make({ content: row.text });
            const ink = inkOf(item);
            // A glyph may extend beyond the margin by a pixel.
            verify(ink.left >= 11 && ink.right <= 520 - 12, JSON.stringify(ink));
            verify(ink.top >= 10 && ink.top <= 26, JSON.stringify(ink));
            verify(item.height - ink.bottom >= 7 && item.height - ink.bottom <= 26, JSON.stringify(ink) + item.height);
        }

        function test_hostileTextFetchesNothing_data() {
            return ["<img src='URL/x.png'>", "<img src=\"URL/x.png\"/>", "![x](URL/x.png)", "<a href='URL/'>x</a>",
                    "`<img src='URL/x.png'>`", "```\n<img src='URL/x.png'>\n```", "> <img src='URL/x.png'>",
                    "# <img src='URL/x.png'>", "- <img src='URL/x.png'>", "<table background='URL/x.png'><tr><td>x</table>",
                    "<link rel='stylesheet' href='URL/x.css'>", "<img src='URL/x.png'>" + " x".repeat(30000)]
                .map(text => ({ tag: text.substring(0, 40) + text.length, text: text }));
        }
        function test_hostileTextFetchesNothing(row) {
            const before = loopbackListener.connections;
            const item = make({ content: row.text.replace("URL", loopbackListener.address) });
            grabImage(item); // waits for rendering
            const image = createTemporaryObject(images, root);
            // Loaded by the same network thread, so an earlier request would have arrived before this one.
            qmlWarnings.expect("QML Image: Error transferring");
            image.source = loopbackListener.address + "/meant.png";
            tryCompare(image, "status", Image.Error);
            compare(loopbackListener.connections, before + 1);
        }
        Component { id: images; Image {} }

        function test_noLinks() {
            const row = make({ content: "[x](https://kde.org) <a href='https://kde.org'>y</a> https://kde.org" });
            for (let x = 0; x < words(row).contentWidth; x += 4) {
                compare(words(row).linkAt(x, 10), "");
            }
        }

        //! A megabyte is still shown, and quickly.
        function test_veryLongTexts_data() {
            return ["> a\n", "- a\n", "a\n\n", "5% ", "<img src=x>"].map(text => ({ tag: JSON.stringify(text), text: text }));
        }
        function test_veryLongTexts(row) {
            const text = row.text.repeat(Math.ceil(1048576 / row.text.length));
            const item = make({ content: text });
            verify(item.bubble.implicitHeight > 1000);
            compare(words(item).textFormat, Text.PlainText);
            compare(words(item).text, text);
        }

        function test_longTextsAreStillMarkdown() {
            const row = make({ content: "**b** ".repeat(8000) });
            compare(words(row).textFormat, Text.RichText);
        }

        function test_accessibleAsItsPlainContent() {
            const row = make({ content: "**one** <b>" });
            compare(row.bubble.Accessible.role, Accessible.StaticText);
            compare(row.bubble.Accessible.name, "**one** <b>");
            compare(words(row).Accessible.ignored, true);
        }
    }
}
