// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui"
import "../controllers"

//! The base of tests that compare what the OmniBar draws with tables. All tests of a file share one window, in which
//! nothing moves by the end of begin(). The native objects are fakes.
TestCase {
    id: testCase

    readonly property FakeBridge bridge: agentBridge
    readonly property FakeSdk sdk: loomraSDK
    readonly property FakeVoiceBridge voice: voiceBridge
    property var bar: null
    //! The colour tokens, for tables.
    property var theme: null
    //! What the property "loops" of an endless animation returns. Only its setter takes Animation.Infinite.
    readonly property int infinite: -1

    // The window finds them by these names, as it finds the native objects in the program.
    property list<QtObject> natives: [
        FakeBridge { id: agentBridge },
        FakeSdk { id: loomraSDK },
        FakeVoiceBridge { id: voiceBridge; ttsAvailable: true }
    ]

    property Component windows: Component {
        OmniBar {}
    }

    when: windowShown

    function initTestCase() {
        bar = windows.createObject(null);
        theme = drawn.part(bar, "omniTheme");
        tryCompare(bar, "firstFrameShown", true);
    }

    function cleanupTestCase() {
        bar.destroy();
    }

    function init() {
        bar.appearanceStore.lightChrome = false;
        bar.compactMode = false;
        bar.settingsPanelOpen = false;
        bar.clearConversation();
        bar.inputField.text = "";
        // Nothing is hovered.
        mouseMove(bar.contentItem, 1, 1);
    }

    //! The part with this name, which may be created late.
    function part(name) {
        tryVerify(() => drawn.part(bar, name) !== null, 5000, name);
        return drawn.part(bar, name);
    }

    //! Opens the sheet with the tab at this index, and waits for its page.
    function openTab(index, page) {
        bar.settingsPanelOpen = true;
        part("settingsTabs").currentIndex = index;
        part(page);
        tryCompare(part("settingsPanel"), "settled", true);
        return part(page);
    }

    //! Compares an item, or the part of the window with this name, with a table. See DrawnValues. Waits for the end of
    //! animations.
    function look(item, table, hovered) {
        const root = typeof item === "string" ? part(item) : item;
        const differences = () => drawn.differences(root, table).join("\n");
        for (let i = 0; i < 100 && differences() !== ""; ++i) {
            wait(20);
            if (hovered)
                hover(hovered);
        }
        compare(differences(), "");
    }

    //! The same with the pointer on an item. The window may lose it, for example when something moves.
    function lookHovered(hovered, item, table) {
        hover(hovered);
        look(item, table, hovered);
    }

    //! The same with the light and with the dark colours. @param makeTable returns the table for the current colours
    function lookInBoth(item, makeTable) {
        for (const light of [true, false]) {
            bar.appearanceStore.lightChrome = light;
            look(item, makeTable(light));
        }
    }

    function hover(item) {
        // From beside the place, because a pointer that is there already sends no event.
        mouseMove(item, item.width / 2, item.height / 2 - 1);
        mouseMove(item, item.width / 2, item.height / 2);
    }
}
