// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "qrc:/org/kde/loomra/contents/ui"
import "../../support/qml"
import "../controllers"

//! The base of tests that compare what the OmniBar draws with tables. All tests of a file share one window. The native
//! objects are fakes.
LookCase {
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

    function initTestCase() {
        bar = windows.createObject(null);
        subject = bar;
        pointerRest = bar.contentItem;
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
        movePointerAway();
        // Software rendering would spend most of its time on them.
        for (let i = 0; drawn.part(bar, "panelShadow[" + i + "]"); ++i)
            drawn.part(bar, "panelShadow[" + i + "]").layer.enabled = false;
    }

    //! Opens the sheet with the tab at this index, and waits for its page.
    function openTab(index, page) {
        bar.settingsPanelOpen = true;
        part("settingsTabs").currentIndex = index;
        part(page);
        tryCompare(part("settingsPanel"), "settled", true);
        return part(page);
    }

    //! As look(), with the light and with the dark colours. @param makeTable returns the table for the current colours
    function lookInBoth(item, makeTable) {
        for (const light of [true, false]) {
            bar.appearanceStore.lightChrome = light;
            look(item, makeTable(light));
        }
    }
}
