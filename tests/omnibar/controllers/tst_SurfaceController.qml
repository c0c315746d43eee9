// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

TestCase {
    id: test
    name: "SurfaceController"

    property FakeBar bar
    property SurfaceController surface

    Component { id: bars; FakeBar { bridgeStatus: "idle" } }
    Component { id: controllers; SurfaceController {} }

    function init() {
        bar = createTemporaryObject(bars, test);
        surface = createTemporaryObject(controllers, test, { "bar": bar, "screens": [{ "width": 1280, "height": 800 },
                                                                                    { "width": 640, "height": 480 }] });
    }

    function test_firstValues() {
        compare([surface.compactMode, surface.chatExpanded, surface.userExpanded, surface.settingsPanelOpen,
                 surface.windowFade], [false, false, false, false, 1]);
    }

    function test_theFirstScreenCounts() {
        compare(surface.screenWidth, 1280);
        compare(surface.screenHeight, 800);
        surface.centerOnScreen();
        compare([bar.x, bar.y], [0, 0]);
    }

    function test_withoutAScreen() {
        surface.screens = [];
        compare(surface.screenWidth, 1920);
        compare(surface.screenHeight, 1080);
        surface.centerOnScreen();
        compare([bar.x, bar.y], [-1, -1]);
    }

    function test_hintStrip() {
        compare(surface.shortcutHintHeight, 20);
        bar.wiNotifyBarLine = "news";
        compare(surface.shortcutHintHeight, 36);
        bar.voiceConfirmPending = true;
        compare(surface.shortcutHintHeight, 78);
    }

    function test_heights() {
        compare(surface.chatHeightBudget, 800 - 56 - 20 - 10 - 24);
        compare(surface.chatMaxHeight, 544);
        surface.chatExpanded = true;
        compare(surface.chatMaxHeight, 690);
        surface.screens = [{ "width": 320, "height": 200 }];
        compare(surface.chatHeightBudget, 260);
        compare(surface.chatMaxHeight, 260);
    }

    function test_chatPanelAndIdleBar_data() {
        return [
            { tag: "at rest", rows: 0, settings: false, status: "idle", panel: false, idle: true },
            { tag: "rows", rows: 1, settings: false, status: "idle", panel: true, idle: false },
            { tag: "thinking", rows: 0, settings: false, status: "thinking", panel: true, idle: false },
            { tag: "settings", rows: 0, settings: true, status: "idle", panel: false, idle: false },
            { tag: "settings over rows", rows: 1, settings: true, status: "thinking", panel: false, idle: false }
        ];
    }

    function test_chatPanelAndIdleBar(data) {
        for (let i = 0; i < data.rows; ++i)
            bar.chatModel.append({ "role": "user" });
        surface.settingsPanelOpen = data.settings;
        bar.bridgeStatus = data.status;
        compare(surface.chatPanelShown, data.panel);
        compare(surface.barIdle, data.idle);
    }

    function test_escapeChain() {
        bar.workspaceSuggestionDialogOpen = true;
        surface.settingsPanelOpen = true;
        bar.voiceConfirmPending = true;
        bar.answers.isQueryProcessing = true;

        surface.handleEscapeKey();
        compare(bar.takeCalls(), ["closeWorkspaceSuggestionDialog()"]);
        compare(surface.settingsPanelOpen, true);

        bar.workspaceSuggestionDialogOpen = false;
        surface.handleEscapeKey();
        compare(surface.settingsPanelOpen, false);
        compare(bar.takeCalls(), []);

        surface.handleEscapeKey();
        compare(bar.takeCalls(), ["voiceConfirmCancel()"]);

        bar.voiceConfirmPending = false;
        surface.handleEscapeKey();
        compare(bar.takeCalls(), ["stopActiveQuery()"]);
        compare(surface.compactMode, false);

        bar.answers.isQueryProcessing = false;
        surface.handleEscapeKey();
        compare(surface.compactMode, true);
    }

    function test_escapeInTheBubble() {
        surface.shrinkToCompactBubble();
        bar.takeCalls();
        surface.handleEscapeKey();
        compare(surface.compactMode, true);
        compare(bar.takeCalls(), []);
        bar.answers.isQueryProcessing = true;
        surface.handleEscapeKey();
        compare(bar.takeCalls(), ["stopActiveQuery()"]);
    }

    function test_toTheBubbleAndBack() {
        surface.userExpanded = true;
        surface.chatExpanded = true;
        surface.shrinkToCompactBubble();
        compare(surface.userExpanded, false);
        compare([bar.x, bar.y], [1280 - 56 - 20, 20]);
        compare(bar.takeCalls(), ["focusBubble()"]);

        surface.expandFromBubble();
        compare(surface.compactMode, false);
        compare(surface.userExpanded, true);
        compare(surface.chatExpanded, true);
        tryVerify(() => bar.calls.length === 2);
        compare(bar.takeCalls(), ["inputField.forceActiveFocus()", "requestActivate()"]);
        compare([bar.x, bar.y], [0, 0]);
    }

    function test_theBubbleStaysOnATinyScreen() {
        surface.screens = [{ "width": 40, "height": 40 }];
        surface.shrinkToCompactBubble();
        compare([bar.x, bar.y], [0, 20]);
    }

    function test_positionBubbleIsForTheBubble() {
        surface.positionBubble();
        compare([bar.x, bar.y], [-1, -1]);
        surface.compactMode = true;
        bar.x = 5;
        surface.positionBubble();
        compare(bar.x, 1204);
    }

    function test_collapseForAnAction() {
        surface.userExpanded = true;
        surface.collapseForAction();
        compare(surface.compactMode, false);
        surface.userExpanded = false;
        surface.collapseForAction();
        compare(surface.compactMode, true);
        compare(surface.userExpanded, false);
    }

    function test_minimise() {
        surface.compactMode = true;
        bar.takeCalls();
        surface.minimise();
        compare(surface.compactMode, false);
        compare(surface.userExpanded, false);
        compare(bar.takeCalls()[0], "showMinimized()");
    }

    function test_summon() {
        surface.compactMode = true;
        bar.takeCalls();
        surface.summon();
        compare(bar.takeCalls(), ["show()", "raise()", "requestActivate()"]);
        compare(surface.compactMode, false);
        compare(surface.userExpanded, true);
    }

    function test_settingsButton() {
        surface.toggleSettings();
        compare(surface.settingsPanelOpen, true);
        compare(bar.takeCalls(), ["refreshModels()"]);
        tryVerify(() => bar.calls.length === 2);
        compare(bar.takeCalls(), ["syncSettingsCombos()", "refreshRuntimePanels()"]);
        surface.toggleSettings();
        compare(surface.settingsPanelOpen, false);
        wait(0);
        compare(bar.takeCalls(), []);
    }

    function test_promptGetsTheFocusOfAHiddenControl_data() {
        return [
            { tag: "the sheet closes", change: () => { surface.settingsPanelOpen = !surface.settingsPanelOpen; } },
            { tag: "the first row comes", change: () => bar.chatModel.append({ "role": "user" }) },
            { tag: "suggestions go", change: () => { bar.suggestionsShown = true; } }
        ];
    }

    function test_promptGetsTheFocusOfAHiddenControl(data) {
        bar.activeFocusItem = { "visible": true };
        wait(0);
        data.change();
        wait(0);
        compare(bar.takeCalls(), []);

        init();
        bar.activeFocusItem = { "visible": false };
        wait(0);
        bar.takeCalls();
        data.change();
        tryVerify(() => bar.calls.length > 0);
        compare(bar.takeCalls(), ["inputField.forceActiveFocus()"]);
    }

    function test_promptGetsTheFocusIfNothingHasIt() {
        bar.activeFocusItem = null;
        tryVerify(() => bar.calls.length > 0);
        compare(bar.takeCalls(), ["inputField.forceActiveFocus()"]);
    }

    function test_theBubbleKeepsTheFocus() {
        surface.compactMode = true;
        bar.takeCalls();
        bar.activeFocusItem = null;
        wait(0);
        compare(bar.takeCalls(), []);
    }

    function test_focusIsKeptWhileAnotherWindowIsActive() {
        bar.active = false;
        bar.activeFocusItem = null;
        wait(0);
        compare(bar.takeCalls(), []);
        // It was hidden meanwhile.
        bar.active = true;
        tryVerify(() => bar.calls.length > 0);
        compare(bar.takeCalls(), ["inputField.forceActiveFocus()"]);
    }

    function test_becomingVisible() {
        surface.windowFade = 0;
        surface.appear();
        compare(surface.windowFade, 1);
        compare(bar.takeCalls(), ["inputField.forceActiveFocus()", "requestActivate()"]);
    }

    Component {
        id: effects

        QtObject {
            //! The arguments of each call.
            property var calls: []

            function blurBehind(window, enabled) { calls = calls.concat([Array.from(arguments)]); }
        }
    }

    function test_blur_data() {
        return [
            { tag: "translucent", translucent: true, calls: 1 },
            // Intentional: nothing turns it off again.
            { tag: "opaque", translucent: false, calls: 0 }
        ];
    }

    //! Of the whole window: no region is passed.
    function test_blur(data) {
        surface.windowEffects = createTemporaryObject(effects, test);
        bar.appearanceStore.translucentBackground = data.translucent;
        surface.applyWindowBlurBehind();
        compare(surface.windowEffects.calls.length, data.calls);
        for (const call of surface.windowEffects.calls) {
            compare(call.length, 2);
            verify(call[0] === bar);
            compare(call[1], true);
        }
    }

    //! The blurred region depends on the size.
    function test_blurFollowsThePlace() {
        surface.windowEffects = createTemporaryObject(effects, test);
        bar.appearanceStore.translucentBackground = true;
        surface.place();
        compare(surface.windowEffects.calls.length, 1);
        surface.compactMode = true;
        surface.place();
        compare(surface.windowEffects.calls.length, 2);
    }

    function test_failedBlurIsIgnored_data() {
        return [
            { tag: "as in this release of Plasma", effects: surface => surface.windowEffects },
            { tag: "missing", effects: () => undefined },
            { tag: "null", effects: () => null },
            { tag: "without the function", effects: () => ({}) },
            { tag: "throws", effects: () => ({ "blurBehind": () => { throw new Error("no compositor"); } }) }
        ];
    }

    function test_failedBlurIsIgnored(data) {
        surface.windowEffects = data.effects(surface);
        bar.appearanceStore.translucentBackground = true;
        surface.applyWindowBlurBehind();
        surface.place();
        compare([bar.x, bar.y], [0, 0]);
    }
}
