// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.plasma.core 2.0 as PlasmaCore

import "../logic/Geometry.js" as Geometry

//! Where the window is and what it shows: expanded or compact, its place on the screen, the Escape chain, and the way
//! in and out. Always the first screen: there is no multi-screen logic.
Controller {
    id: surface

    property bool compactMode: false
    //! The user asked for the tall chat panel.
    property bool chatExpanded: false
    //! The user expanded the window by hand, which blocks the automatic collapse.
    property bool userExpanded: false
    property bool settingsPanelOpen: false
    //! Multiplied with the stored opacity, so that the entrance and the end can fade whatever the user chose.
    property real windowFade: 1.0

    property var screens: Qt.application.screens
    readonly property bool hasScreen: screens.length > 0
    readonly property real screenWidth: hasScreen ? screens[0].width : 1920
    readonly property real screenHeight: hasScreen ? screens[0].height : 1080

    readonly property int shortcutHintHeight: Geometry.shortcutHintHeight(bar.wiNotifyBarLine, bar.voiceConfirmPending)
    readonly property int chatHeightBudget: Geometry.chatHeightBudget(screenHeight, bar.barHeight, shortcutHintHeight,
                                                                      bar.chatPanelBottomMargin,
                                                                      bar.chatTopSafePadding, bar.chatMinHeight)
    readonly property int chatMaxHeight: Geometry.chatMaxHeight(chatExpanded, screenHeight, chatHeightBudget)

    readonly property bool chatPanelShown: !settingsPanelOpen
                                           && (bar.chatModel.count > 0 || bar.bridgeStatus === "thinking")
    //! Nothing but the bar and its cards, in the middle of the screen.
    readonly property bool barIdle: bar.chatModel.count === 0 && !settingsPanelOpen && !chatPanelShown

    //! First match wins. Each row: whether it holds, and what Escape then does.
    readonly property var escapeChain: [
        { "holds": () => bar.workspaceSuggestionDialogOpen, "act": () => bar.closeWorkspaceSuggestionDialog() },
        { "holds": () => settingsPanelOpen, "act": () => { settingsPanelOpen = false; } },
        { "holds": () => bar.voiceConfirmPending, "act": () => bar.voiceConfirmCancel() },
        { "holds": () => bar.isQueryProcessing(), "act": () => bar.stopActiveQuery() },
        { "holds": () => true, "act": () => shrinkToCompactBubble() }
    ]

    function centerOnScreen() {
        if (!hasScreen)
            return;
        const place = compactMode ? Geometry.bubblePosition(screenWidth, bar.bubbleSize, bar.bubbleMargin)
                                  : { "x": 0, "y": 0 };
        bar.x = place.x;
        bar.y = place.y;
    }

    function positionBubble() {
        if (compactMode)
            centerOnScreen();
    }

    //! After every change of the window's size: the window manager may have moved it, and blur goes by the region.
    function place() {
        if (compactMode)
            positionBubble();
        else
            centerOnScreen();
        applyWindowBlurBehind();
        placementCheck.restart();
    }

    //! Window managers keep a large window from leaving the screen, and say so only after the window has shrunk: once
    //! the size has settled the place is asked for again.
    property Timer placementCheck: Timer {
        objectName: "placementCheck"
        interval: 100
        onTriggered: surface.centerOnScreen()
    }

    function shrinkToCompactBubble() {
        userExpanded = false;
        compactMode = true;
    }

    function expandFromBubble() {
        userExpanded = true;
        compactMode = false;
    }

    //! After an action on the desktop, to give the desktop back. What the user expanded by hand stays.
    function collapseForAction() {
        if (userExpanded)
            return;
        compactMode = true;
    }

    function minimise() {
        compactMode = false;
        userExpanded = false;
        bar.showMinimized();
    }

    function summon() {
        bar.show();
        bar.raise();
        bar.requestActivate();
        compactMode = false;
    }

    function toggleSettings() {
        settingsPanelOpen = !settingsPanelOpen;
        if (!settingsPanelOpen)
            return;
        Qt.callLater(bar.syncSettingsCombos);
        bar.refreshModels();
        Qt.callLater(bar.refreshRuntimePanels);
    }

    function handleEscapeKey() {
        escapeChain.find(step => step.holds()).act();
    }

    //! Asks the compositor for blur. No call ever turns it off: what was granted stays until the window closes.
    function applyWindowBlurBehind() {
        if (!bar.appearanceStore.translucentBackground)
            return;
        try {
            PlasmaCore.WindowEffects.blurBehind(bar, true);
        } catch (error) {
            // Blur is an ornament, and older Plasma releases don't offer it to QML: the panels are readable without.
        }
    }

    function focusInput() {
        bar.inputField.forceActiveFocus();
        bar.requestActivate();
    }

    //! A control that goes with what it did, such as a suggestion or the sheet's switch, leaves the focus to the prompt.
    function reclaimFocus() {
        const item = bar.activeFocusItem;
        if (!compactMode && (!item || !item.visible))
            bar.inputField.forceActiveFocus();
    }

    //! When the window becomes visible, at start or after it was hidden.
    function appear() {
        windowFade = 1.0;
        focusInput();
    }

    function settleExpanded() {
        centerOnScreen();
        focusInput();
    }

    onSettingsPanelOpenChanged: Qt.callLater(reclaimFocus)
    onBarIdleChanged: Qt.callLater(reclaimFocus)

    Connections {
        target: surface.bar

        function onSuggestionsShownChanged() {
            Qt.callLater(surface.reclaimFocus);
        }
        function onActiveFocusItemChanged() {
            Qt.callLater(surface.reclaimFocus);
        }
    }

    onCompactModeChanged: {
        if (compactMode) {
            positionBubble();
            bar.focusBubble();
        } else {
            userExpanded = true;
            Qt.callLater(settleExpanded);
        }
    }
}
