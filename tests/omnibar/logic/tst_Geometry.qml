// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/Geometry.js" as Geometry

TestCase {
    name: "Geometry"

    function test_chatHeightBudget_data() {
        return [
            { tag: "full hd", screen: 1080, hint: 20, budget: 1080 - 56 - 20 - 10 - 24 },
            { tag: "with a hint line and a voice confirmation", screen: 1080, hint: 78, budget: 1080 - 56 - 78 - 10 - 24 },
            { tag: "rounds", screen: 1080.5, hint: 20, budget: 971 },
            { tag: "short screen", screen: 300, hint: 20, budget: 260 },
            { tag: "just enough", screen: 370, hint: 20, budget: 260 },
            { tag: "one more", screen: 371, hint: 20, budget: 261 }
        ];
    }
    function test_chatHeightBudget(row) {
        compare(Geometry.chatHeightBudget(row.screen, 56, row.hint, 10, 24, 260), row.budget);
    }

    function test_chatMaxHeight_data() {
        return [
            { tag: "expanded, large screen", expanded: true, screen: 2160, budget: 2050, height: 1200 },
            { tag: "expanded, small screen", expanded: true, screen: 800, budget: 690, height: 690 },
            { tag: "limit", expanded: false, screen: 2160, budget: 2050, height: 780 },
            { tag: "share of the screen", expanded: false, screen: 1000, budget: 890, height: 680 },
            { tag: "rounded share", expanded: false, screen: 801, budget: 691, height: 545 },
            { tag: "budget", expanded: false, screen: 300, budget: 190, height: 190 }
        ];
    }
    function test_chatMaxHeight(row) {
        compare(Geometry.chatMaxHeight(row.expanded, row.screen, row.budget), row.height);
    }

    function test_barY_data() {
        return [
            { tag: "idle", idle: true, window: 1080, hint: 20, y: 482 },
            { tag: "idle, rounded", idle: true, window: 1081, hint: 20, y: 483 },
            { tag: "in use", idle: false, window: 1080, hint: 20, y: 1004 },
            { tag: "in use with hints", idle: false, window: 800, hint: 78, y: 666 },
            { tag: "in use, rounded", idle: false, window: 800.4, hint: 20, y: 724 }
        ];
    }
    function test_barY(row) {
        compare(Geometry.barY(row.idle, row.window, row.hint), row.y);
    }

    function test_chatPanelHeight_data() {
        return [
            { tag: "room for all", max: 780, barY: 1004, height: 780 },
            { tag: "up to the top padding", max: 780, barY: 724, height: 690 },
            { tag: "rounded down", max: 780, barY: 724.9, height: 690 },
            { tag: "never too low, even past the top padding", max: 260, barY: 200, height: 260 }
        ];
    }
    function test_chatPanelHeight(row) {
        compare(Geometry.chatPanelHeight(260, row.max, row.barY, 24), row.height);
    }

    function test_chatAreaHeight_data() {
        return [
            { tag: "nothing else", panel: 780, extras: 0, height: 646 },
            { tag: "beside cards", panel: 780, extras: 146, height: 500 },
            { tag: "never too low", panel: 260, extras: 100, height: 140 }
        ];
    }
    function test_chatAreaHeight(row) {
        compare(Geometry.chatAreaHeight(row.panel, 64, row.extras), row.height);
    }

    function test_chatExtrasHeight_data() {
        return [
            { tag: "none", heights: [], height: 0 },
            { tag: "one", heights: [103], height: 103 },
            { tag: "two", heights: [103, 48], height: 161 },
            { tag: "all", heights: [150, 48, 36, 103], height: 367 }
        ];
    }
    function test_chatExtrasHeight(row) {
        compare(Geometry.chatExtrasHeight(row.heights), row.height);
    }

    function test_bubblePosition_data() {
        return [
            { tag: "top right", screen: 1920, margin: 20, mirrored: false, x: 1844, y: 20 },
            { tag: "screen too narrow", screen: 50, margin: 20, mirrored: false, x: 0, y: 20 },
            { tag: "negative margin", screen: 1920, margin: -5, mirrored: false, x: 1869, y: 0 },
            { tag: "top left", screen: 1920, margin: 20, mirrored: true, x: 20, y: 20 },
            { tag: "negative margin, mirrored", screen: 1920, margin: -5, mirrored: true, x: 0, y: 0 }
        ];
    }
    function test_bubblePosition(row) {
        const place = Geometry.bubblePosition(row.screen, 56, row.margin, row.mirrored);
        compare(place.x, row.x);
        compare(place.y, row.y);
    }

    function test_shortcutHintHeight_data() {
        return [
            { tag: "hint", line: "", confirm: false, height: 20 },
            { tag: "line", line: "news", confirm: false, height: 36 },
            { tag: "confirmation", line: "", confirm: true, height: 62 },
            { tag: "both", line: "news", confirm: true, height: 78 }
        ];
    }
    function test_shortcutHintHeight(row) {
        compare(Geometry.shortcutHintHeight(row.line, row.confirm), row.height);
    }

    function test_menuHeight_data() {
        return [
            { tag: "content", content: 100, maximum: 320, barY: 600, height: 116 },
            { tag: "maximum", content: 1000, maximum: 320, barY: 600, height: 320 },
            { tag: "low screen", content: 1000, maximum: 320, barY: 100, height: 84 },
            { tag: "no room", content: 100, maximum: 320, barY: 10, height: 0 }
        ];
    }
    function test_menuHeight(row) {
        compare(Geometry.menuHeight(row.content, row.maximum, row.barY), row.height);
    }

    function test_clampOpacity_data() {
        return [
            { tag: "too little", value: 0.2, opacity: 0.65 },
            { tag: "lower limit", value: 0.65, opacity: 0.65 },
            { tag: "between", value: 0.8, opacity: 0.8 },
            { tag: "upper limit", value: 1, opacity: 1 },
            { tag: "too much", value: 1.5, opacity: 1 },
            { tag: "text from a settings file", value: "0.7", opacity: 0.7 },
            { tag: "NaN", value: NaN, opacity: 1 },
            { tag: "infinite", value: Infinity, opacity: 1 },
            { tag: "negative infinity", value: -Infinity, opacity: 0.65 },
            { tag: "words", value: "dark", opacity: 1 },
            { tag: "empty", value: "", opacity: 1 },
            { tag: "whitespace", value: " ", opacity: 1 },
            { tag: "null", value: null, opacity: 1 },
            { tag: "undefined", value: undefined, opacity: 1 },
            { tag: "object", value: {}, opacity: 1 }
        ];
    }
    function test_clampOpacity(row) {
        fuzzyCompare(Geometry.clampOpacity(row.value), row.opacity, 1e-9);
    }

    function test_planCardMaxHeight_data() {
        return [
            { tag: "alone on 1280x720", panel: 490, others: [], height: 216 },
            { tag: "with cards", panel: 490, others: [102], height: 104 },
            { tag: "with everything", panel: 490, others: [48, 36, 102], height: 0 },
            { tag: "too low", panel: 260, others: [], height: 0 },
            { tag: "half of a high panel", panel: 781, others: [], height: 390 }
        ];
    }
    function test_planCardMaxHeight(row) {
        compare(Geometry.planCardMaxHeight(row.panel, 64, row.others), row.height);
    }
}
