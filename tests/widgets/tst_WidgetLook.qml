// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import org.kde.loomra 1.0

// The two widgets that the module doesn't list yet.
import "qrc:/org/kde/loomra/components" as Unlisted
import "../support/qml"

//! What the widgets for structured replies draw, in both themes.
Item {
    id: root

    width: 600
    height: 800

    Component { id: lists; BotListWidget {} }
    Component { id: tables; BotTableWidget {} }
    Component { id: optionWidgets; BotOptionsWidget {} }
    Component { id: sliders; BotSliderWidget {} }
    Component { id: codes; Unlisted.BotCodeBlock {} }
    Component { id: callouts; Unlisted.BotCalloutWidget {} }
    Component { id: bubbles; BotTextBubble { hasTool: true; toolStatus: "success"; content: "text" } }

    LookCase {
        name: "WidgetLook"

        readonly property int inner: 520 - 24

        function make(component, payload) {
            const widget = createTemporaryObject(component, root, payload ? { "width": 520, "payload": payload } : { "width": 520 });
            verify(widget);
            return widget;
        }
        //! The colours that the widgets share.
        function shared(light) {
            return {
                "text": light ? Qt.rgba(0, 0, 0, 0.88) : Qt.rgba(1, 1, 1, 0.95),
                "muted": light ? Qt.rgba(0, 0, 0, 0.55) : Qt.rgba(1, 1, 1, 0.65),
                "well": light ? Qt.rgba(0, 0, 0, 0.06) : Qt.rgba(1, 1, 1, 0.08),
                "hover": light ? Qt.rgba(0, 0, 0, 0.10) : Qt.rgba(1, 1, 1, 0.14),
                "line": light ? Qt.rgba(0, 0, 0, 0.10) : Qt.rgba(1, 1, 1, 0.12),
                "ring": light ? "#7c3aed" : "#c084fc"
            };
        }
        //! @param makeTable returns the table for a theme and its shared colours
        function lookInBoth(widget, makeTable) {
            for (const light of [true, false]) {
                widget.lightChrome = light;
                look(widget, makeTable(light, shared(light)));
            }
        }

        function test_base() {
            const widget = make(lists, { "title": "a" });
            lookInBoth(widget, (light, colors) => ({
                "": {
                    "margin": 12, "textColor": colors.text, "mutedColor": colors.muted, "wellColor": colors.well,
                    "hoverColor": colors.hover, "lineColor": colors.line, "ringColor": colors.ring
                },
                "column": { "x": 12, "y": 3, "width": inner }
            }));
            compare(widget.implicitHeight, Math.max(30, Math.ceil(drawn.part(widget, "column").implicitHeight) + 6));
            compare(make(sliders, {}).implicitHeight > 36, true);
            compare(make(bubbles).margin, 12);
        }

        function test_list() {
            lookInBoth(make(lists, { "title": "a", "items": Array(1000).fill("b") }), (light, colors) => ({
                "column": { "spacing": 6 },
                "title": { "width": inner, "color": colors.text, "font.pointSize": 13, "font.bold": true, "wrapMode": Text.Wrap },
                "entry": { "width": inner, "leftPadding": 16, "rightPadding": 0, "color": colors.text, "font.pointSize": 11.5 },
                "dot": {
                    "x": 2, "width": 6, "height": 6, "radius": 3, "indent": 2,
                    "color": light ? Qt.rgba(0.45, 0.22, 0.65, 0.85) : Qt.rgba(0.75, 0.55, 1.0, 0.90)
                },
                "footer": { "width": inner, "visible": true, "color": colors.muted, "font.pointSize": 11 }
            }));
        }

        //! The dot of a text from right to left is beside the free corner.
        function test_listFromRightToLeft() {
            const widget = make(lists, { "items": ["חלב", "חלב"] });
            widget.freeCorner = Qt.size(92, 32);
            look(widget, {
                "entry": { "leftPadding": 0, "rightPadding": 16 },
                "dot[0]": { "indent": 2 + 80, "x": inner - 82 - 6 },
                "dot[1]": { "indent": 2, "x": inner - 2 - 6 }
            });
        }

        function test_emptyList() {
            lookInBoth(make(lists, {}), (light, colors) => ({
                "nothing": { "width": inner, "visible": true, "text": "(empty)", "color": colors.muted, "font.pointSize": 11.5 }
            }));
        }

        function test_table() {
            const widget = make(tables, { "columns": ["a", "b"], "rows": Array(60).fill(["c", "d"]) });
            lookInBoth(widget, (light, colors) => ({
                "grid": { "width": inner },
                "columnFill[0]": { "visible": true, "color": light ? Qt.rgba(0, 0, 0, 0.02) : Qt.rgba(1, 1, 1, 0.03), "width": inner / 2 },
                "columnFill[1]": { "visible": false },
                "columnLine": { "width": 1, "color": colors.line },
                "columnLine[0]": { "visible": true, "x": inner / 2 - 1 },
                "columnLine[1]": { "visible": false },
                "header": { "width": inner, "color": light ? Qt.rgba(0, 0, 0, 0.06) : Qt.rgba(1, 1, 1, 0.08) },
                "TableCell": {
                    "width": inner / 2, "font.pointSize": 11, "leftPadding": 8, "rightPadding": 8, "topPadding": 5, "bottomPadding": 5,
                    "color": colors.text, "wrapMode": Text.Wrap
                },
                "headerCell": { "font.bold": true },
                "cell": { "font.bold": false },
                "rowLine": { "width": inner, "height": 1, "color": colors.line },
                "frame": { "color": "transparent", "border.width": 1, "border.color": colors.line },
                "footer": { "width": inner, "visible": true, "topPadding": 6, "color": colors.muted, "font.pointSize": 11 },
                "columnFooter": { "topPadding": 6, "color": colors.muted, "font.pointSize": 11 }
            }));
            compare(drawn.part(widget, "columnFill").y, drawn.part(widget, "header").height);
            const narrow = make(tables, { "columns": Array(20).fill("a"), "rows": [] });
            look(narrow, { "TableCell": { "leftPadding": inner / 20 / 6, "rightPadding": inner / 20 / 6 } });
        }

        function test_emptyTable() {
            lookInBoth(make(tables, {}), (light, colors) => ({
                "noColumns": { "visible": true, "text": "(table: no columns)", "color": colors.muted, "font.pointSize": 11 },
                "grid": { "visible": false }
            }));
        }

        //! Only what has no text beside the free corner begins below it.
        function test_beginsBelowTheFreeCorner_data() {
            return [
                { tag: "table", component: tables, payload: { "columns": ["a"], "rows": [] }, part: "grid", y: 20 },
                { tag: "empty table", component: tables, payload: {}, part: "noColumns", y: 0 },
                { tag: "choices", component: optionWidgets, payload: { "choices": ["a"] }, part: "Flow", y: 20 },
                { tag: "prompt", component: optionWidgets, payload: { "prompt": "b", "choices": ["a"] }, part: "prompt", y: 0 },
                { tag: "no choices", component: optionWidgets, payload: {}, part: "nothing", y: 0 }
            ];
        }
        function test_beginsBelowTheFreeCorner(data) {
            const widget = make(data.component, data.payload);
            widget.freeCorner = Qt.size(92, 32);
            waitForRendering(widget); // which places what is in a column
            const table = {};
            table[data.part] = { "y": data.y };
            look(widget, table);
        }

        function test_options() {
            const widget = make(optionWidgets, { "prompt": "Which?", "choices": Array(300).fill("a") });
            widget.select(0);
            lookInBoth(widget, (light, colors) => ({
                "column": { "spacing": 8 },
                "prompt": { "width": inner, "color": colors.text, "font.pointSize": 12 },
                "Flow": { "width": inner, "spacing": 8 },
                "ChipButton": { "leftPadding": 12, "rightPadding": 12, "topPadding": 7, "bottomPadding": 7, "colorDuration": 150 },
                "chipFill": { "radius": 8, "border.width": 1, "Behavior on color": "150 Linear" },
                "chipFill[0]": {
                    "color": Qt.rgba(0.25, 0.60, 1.0, light ? 0.22 : 0.35), "border.color": Qt.rgba(0.25, 0.60, 1.0, light ? 0.45 : 0.50)
                },
                "chipFill[1]": { "color": colors.well, "border.color": colors.line },
                "caption": {
                    "color": colors.text, "font.pointSize": 11, "maximumLineCount": 1, "horizontalAlignment": Text.AlignHCenter
                },
                "FocusRing": { "radius": 10, "border.color": colors.ring },
                "footer": { "visible": true, "color": colors.muted, "font.pointSize": 11 }
            }));
            const chip = drawn.part(widget, "ChipButton[1]");
            const caption = drawn.part(chip, "caption");
            compare([chip.implicitWidth, chip.implicitHeight], [caption.implicitWidth + 24, caption.implicitHeight + 14]);
            lookHovered(chip, chip, { "chipFill": { "color": shared(false).hover } });
        }

        function test_noChoices() {
            lookInBoth(make(optionWidgets, {}), (light, colors) => ({
                "nothing": { "visible": true, "color": colors.muted, "font.pointSize": 12 }
            }));
        }

        function test_slider() {
            const widget = make(sliders, { "label": "Light", "min": 0, "max": 100, "value": 40 });
            lookInBoth(widget, (light, colors) => ({
                "column": { "spacing": 8 },
                "label": { "width": inner, "color": colors.text, "font.pointSize": 12 },
                "slider": { "width": inner, "opacity": 1, "trackColor": colors.line, "fillColor": colors.ring, "ringColor": colors.ring },
                "slider.background": { "height": 4 },
                "slider.handle": { "width": 16, "height": 16 },
                "range": { "width": inner, "color": colors.muted, "font.pointSize": 10, "horizontalAlignment": Text.AlignRight },
                "confirmBtn": { "visible": true, "colorDuration": 150 },
                "submittedText": { "visible": false }
            }));
            widget.submit();
            lookInBoth(widget, (light, colors) => ({
                "slider": { "opacity": 0.6 },
                "confirmBtn": { "visible": false },
                "submittedText": { "visible": true, "width": inner, "color": colors.muted, "font.pointSize": 11, "font.italic": true }
            }));
        }

        function test_code() {
            const widget = make(codes, { "content": "code", "language": "c" });
            lookInBoth(widget, (light, colors) => ({
                "column": { "spacing": 6 },
                "language": {
                    "width": inner, "color": colors.muted, "font.pixelSize": 10, "horizontalAlignment": Text.AlignLeft, "text": "C"
                },
                "codeFill": { "width": inner, "radius": 8, "color": light ? Qt.rgba(0, 0, 0, 0.06) : Qt.rgba(1, 1, 1, 0.10) },
                "words": {
                    "width": inner, "topPadding": 10, "bottomPadding": 10, "leftPadding": 12, "rightPadding": 12,
                    "horizontalAlignment": Text.AlignLeft, "font.family": "monospace", "font.pixelSize": 12, "lineHeight": 1.35,
                    "wrapMode": Text.Wrap, "elide": Text.ElideNone,
                    "color": light ? Qt.rgba(0.15, 0.2, 0.35, 0.95) : Qt.rgba(0.85, 0.9, 1.0, 0.95)
                }
            }));
            compare(drawn.part(widget, "codeFill").height, drawn.part(widget, "words").implicitHeight);
        }

        function test_callout_data() {
            return [
                { tag: "warning", accent: () => Qt.rgba(0xfb / 255, 0xbf / 255, 0x24 / 255, 1),
                  fill: light => Qt.rgba(0.98, 0.75, 0, light ? 0.12 : 0.14) },
                { tag: "tip", accent: () => Qt.rgba(0x4a / 255, 0xde / 255, 0x80 / 255, 1),
                  fill: light => Qt.rgba(0.2, 0.7, 0.4, light ? 0.10 : 0.12) },
                { tag: "info", accent: light => light ? Qt.rgba(0x7c / 255, 0x3a / 255, 0xed / 255, 1) : Qt.rgba(0xc0 / 255, 0x84 / 255, 0xfc / 255, 1),
                  fill: light => light ? Qt.rgba(0.55, 0.28, 0.92, 0.10) : Qt.rgba(0.60, 0.20, 0.98, 0.14) }
            ];
        }
        function test_callout(data) {
            const widget = make(callouts, { "content": "note", "variant": data.tag });
            lookInBoth(widget, (light, colors) => {
                const accent = data.accent(light);
                return {
                    "calloutFill": {
                        "width": inner, "radius": 8, "color": data.fill(light), "border.width": 1,
                        "border.color": Qt.rgba(accent.r, accent.g, accent.b, 0.35)
                    },
                    "accentBar": { "x": 0, "y": 6, "anchors.bottomMargin": 6, "width": 3, "radius": 1.5, "color": accent },
                    "words": {
                        "width": inner, "topPadding": 6, "bottomPadding": 9, "leftPadding": 12, "rightPadding": 12,
                        "color": colors.text, "font.pixelSize": 13, "lineHeight": 1.4, "elide": Text.ElideNone, "wrapMode": Text.Wrap
                    }
                };
            });
            compare(drawn.part(widget, "calloutFill").height, drawn.part(widget, "words").implicitHeight);
        }

        function test_textBubble_data() {
            return [
                { tag: "success", color: "#4ade80" },
                { tag: "SUCCESS", color: "#4ade80" },
                { tag: "error", color: "#f87171" },
                { tag: "failed", color: "#f87171" },
                { tag: "other", color: "#fbbf24" }
            ];
        }
        function test_textBubble(data) {
            const bubble = make(bubbles);
            bubble.toolStatus = data.tag;
            lookInBoth(bubble, (light, colors) => ({
                "": { "markdownLimit": 50000 },
                "words": {
                    "x": 34, "anchors.rightMargin": 12, "anchors.verticalCenterOffset": 3, "font.pixelSize": 14, "color": colors.text,
                    "wrapMode": Text.Wrap, "textFormat": Text.RichText
                },
                "toolDot": { "x": 12, "anchors.verticalCenterOffset": 14 * 0.7 },
                "toolDot/Rectangle[0]": { "width": 10, "height": 10, "radius": 5, "color": data.color },
                "toolDot/Rectangle[1]": { "width": 17, "height": 17, "radius": 8.5, "color": data.color, "opacity": 0.22, "z": -1 }
            }));
            bubble.hasTool = false;
            look(bubble, { "words": { "x": 12, "anchors.leftMargin": 12 } });
        }

        function test_longTextBubble() {
            const bubble = make(bubbles);
            bubble.content = "word ".repeat(10001);
            look(bubble, { "words": { "textFormat": Text.PlainText, "wrapMode": Text.Wrap } });
            bubble.content = "w".repeat(50001);
            look(bubble, { "words": { "textFormat": Text.PlainText, "wrapMode": Text.WrapAnywhere } });
        }
    }
}
