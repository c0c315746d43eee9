// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.plasma.core 2.0 as PlasmaCore

import "../logic/Geometry.js" as Geometry

//! The state of the window: expanded or compact, its position, the Escape chain, showing and hiding. The window is
//! always on the first screen; there is no multi-screen support.
Controller {
    id: surface

    property bool compactMode: false
    //! The user asked for the tall chat panel.
    property bool chatExpanded: false
    //! The user expanded the window, which prevents the automatic collapse.
    property bool userExpanded: false
    property bool settingsPanelOpen: false
    //! Multiplied with the user's opacity, for fading in and out.
    property real windowFade: 1.0

    //! Blurs what is behind a window: blurBehind(window, enabled). Undefined in Plasma releases that don't offer it to
    //! QML. Tests replace it.
    property var windowEffects: PlasmaCore.WindowEffects

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
    //! Only the bar and its cards are shown, in the middle of the screen.
    readonly property bool barIdle: bar.chatModel.count === 0 && !settingsPanelOpen && !chatPanelShown

    //! What Escape does: the first row whose "holds" returns true.
    readonly property var escapeChain: [
        { "holds": () => bar.workspaceSuggestionDialogOpen, "act": () => bar.closeWorkspaceSuggestionDialog() },
        { "holds": () => settingsPanelOpen, "act": () => { settingsPanelOpen = false; } },
        { "holds": () => bar.voiceConfirmPending, "act": () => bar.voiceConfirmCancel() },
        { "holds": () => bar.isQueryProcessing(), "act": () => bar.stopActiveQuery() },
        { "holds": () => true, "act": () => shrinkToCompactBubble() }
    ]

    //! Keys of the input, see logic/KeyTable.js.
    readonly property var inputKeys: [
        { "key": Qt.Key_Escape, "act": () => handleEscapeKey() }
    ]

    function centerOnScreen() {
        if (!hasScreen)
            return;
        const mirrored = Qt.application.layoutDirection === Qt.RightToLeft;
        const place = compactMode ? Geometry.bubblePosition(screenWidth, bar.bubbleSize, bar.bubbleMargin, mirrored)
                                  : { "x": 0, "y": 0 };
        bar.x = place.x;
        bar.y = place.y;
    }

    function positionBubble() {
        if (compactMode)
            centerOnScreen();
    }

    //! Call after each change of the window's size: the window manager may have moved the window, and the blurred
    //! region depends on the size.
    function place() {
        if (compactMode)
            positionBubble();
        else
            centerOnScreen();
        applyWindowBlurBehind();
        placementCheck.restart();
    }

    //! Window managers keep a large window inside the screen and may report a stale position after it has shrunk. So
    //! the position is set again once the size has settled.
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

    //! Gives the desktop back when an action changes it, unless the user expanded the window.
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

    //! Asks the compositor for blur. Intentional: never turned off again while the window exists.
    function applyWindowBlurBehind() {
        if (!bar.appearanceStore.translucentBackground)
            return;
        try {
            windowEffects.blurBehind(bar, true);
        } catch (error) {
            // The panels are readable without blur.
        }
    }

    function focusInput() {
        bar.inputField.forceActiveFocus();
        bar.requestActivate();
    }

    //! Moves the focus to the prompt if the focused control was hidden or destroyed, such as a clicked suggestion. Not
    //! while another window is active: then no item has the focus, and the user returns to the one that had it.
    function reclaimFocus() {
        const item = bar.activeFocusItem;
        if (bar.active && !compactMode && (!item || !item.visible))
            bar.inputField.forceActiveFocus();
    }

    //! Called when the window becomes visible, at startup or after it was hidden.
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

        function onSlashSessionPopupVisibleChanged() {
            Qt.callLater(surface.reclaimFocus);
        }
        function onSuggestionsShownChanged() {
            Qt.callLater(surface.reclaimFocus);
        }
        function onVoiceConfirmPendingChanged() {
            Qt.callLater(surface.reclaimFocus);
        }
        function onPlanCardShownChanged() {
            Qt.callLater(surface.reclaimFocus);
        }
        function onUndoShownChanged() {
            Qt.callLater(surface.reclaimFocus);
        }
        function onActiveFocusItemChanged() {
            Qt.callLater(surface.reclaimFocus);
        }
        function onActiveChanged() {
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
