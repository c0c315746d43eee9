// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! What the chat panel draws: frame, header, rows, indicator, suggestions, plans.
OmniBarCase {
    name: "ChatLook"

    function cleanup() {
        bridge.status = "idle";
        bridge.activePhase = "";
        bridge.planStepIndex = -1;
        bridge.planStepTotal = 0;
    }

    //! The first row with this role.
    function row(role) {
        const list = part("messageList");
        let index = 0;
        while (bar.chatModel.get(index).role !== role)
            ++index;
        tryVerify(() => list.itemAtIndex(index) !== null);
        return list.itemAtIndex(index);
    }

    function test_panel() {
        bar.appendUserMessage("hello");
        lookInBoth("chatPanel", light => ({
            "": {
                "width": 720, "opacity": 1, "scale": 1, "transformOrigin": Item.Bottom, "entranceDuration": 250,
                "Behavior on opacity": "250 OutCubic", "Behavior on scale": "250 OutCubic", "Behavior on height": "250 OutCubic"
            },
            "GradientPanel": { "radius": 14, "width": 720, "flipDuration": 350 },
            "frame": {
                "radius": 14, "width": 720, "gradient.orientation": Gradient.Horizontal,
                "stops": light ? [[0, "#b17fe6"], [0.5, "#e07da0"], [1, "#f0a060"]]
                               : [[0, "#6e35b1"], [0.5, "#d14b75"], [1, "#e8782a"]]
            },
            "frame/GradientStop": { "Behavior on color": "350 Linear" },
            "fill": {
                "radius": 13, "x": 1, "y": 1, "width": 718, "gradient.orientation": Gradient.Vertical,
                "stops": light ? [[0, "#f8f5fc"], [1, "#f0edf6"]] : [[0, "#1a1124"], [1, "#0d0812"]]
            },
            "fill/GradientStop": { "Behavior on color": "350 Linear" },
            "panelShadow": {
                "radius": 14, "color": "black", "shadowColor": Qt.rgba(0, 0, 0, light ? 0.18 : 0.45),
                "shadowRadius": light ? 16 : 24
            },
            "header": { "x": 12, "y": 12, "width": 696, "height": 64 },
            "chatScrollPane": { "x": 9, "y": 86, "width": 708, "anchors.bottomMargin": 12, "thumbColor": theme.uiScrollThumb },
            "column": { "x": 3, "width": 696, "spacing": 10 },
            "ChatArea": { "radius": 10, "color": theme.uiMsgAreaBg, "border.width": 1, "border.color": theme.uiMsgAreaBorder },
            "messageList": { "x": 10, "y": 10, "width": 676, "spacing": 10, "clip": true, "cacheBuffer": 200 },
            "messageScrollBar": { "width": 6, "thumbColor": theme.uiScrollThumb, "trackColor": theme.uiScrollTrack },
            "messageRow": { "width": 666 },
            "disclaimer": {
                "width": 696, "color": theme.uiTextCaption, "font.pixelSize": 11, "horizontalAlignment": Text.AlignHCenter,
                "text": "Tovi can make mistakes. Verify important information."
            }
        }));
        tryVerify(() => part("barCard").y - part("chatPanel").mapToItem(part("rootContainer"), 0, part("chatPanel").height).y === 10);
        // The panel before it appears.
        bar.clearConversation();
        tryCompare(part("chatPanel"), "opacity", 0);
        look("chatPanel", { "": { "scale": 0.97 } });
    }

    function test_header() {
        bar.appendUserMessage("hello");
        lookInBoth("ChatHeader", light => ({
            "Row[0]": { "spacing": 8 },
            "Row[1]": { "spacing": 12 },
            "tile": {
                "width": 24, "height": 24, "radius": 6, "gradient.orientation": Gradient.Horizontal,
                "stops": light ? [[0, "#b17fe6"], [1, "#f0a060"]] : [[0, "#6e35b1"], [1, "#e8782a"]]
            },
            "tile/FallbackIcon": { "name": "starred-symbolic", "fallback": "draw-star", "size": 14, "color": "white" },
            "Row[0]/PlainText[0]": { "text": "Tovi", "font.pixelSize": 16, "font.weight": Font.DemiBold, "color": theme.uiTextStrong },
            "Row[0]/PlainText[1]": { "text": "for", "font.pixelSize": 14, "font.weight": Font.Normal, "color": theme.uiTextSoft },
            "Row[0]/PlainText[2]": { "text": "KeldaOS", "font.pixelSize": 16, "font.weight": Font.DemiBold,
                                     "color": theme.uiTextStrong },
            "HeaderButton": {
                "width": 28, "height": 28, "radius": 6, "fill": "transparent", "ring": theme.focusRing, "iconSize": 16,
                "iconColor": theme.uiTextMed, "glyphSize": 14, "hoverFill": light ? Qt.rgba(0, 0, 0, 0.08) : Qt.rgba(1, 1, 1, 0.10)
            },
            "expandBtn": { "iconName": "view-fullscreen", "iconFallback": "window-maximize", "label": "Taller conversation" },
            "minimiseBtn": { "glyph": "\u2013", "label": "Minimize" },
            "closeBtn": { "glyph": "\u2715", "label": "Close Tovi" },
            "separator": { "height": 1, "y": 63, "width": 696, "color": theme.uiSettingsDivider }
        }));
        bar.chatExpanded = true;
        look("expandBtn", { "": { "iconName": "view-restore", "iconFallback": "window-restore", "label": "Smaller conversation" } });
        bar.chatExpanded = false;
    }

    function test_rows() {
        bar.appendUserMessage("hello");
        bar.appendSystemMessage("news");
        bar.appendAgentMessage("hello");
        for (const role of ["user", "system", "assistant"])
            lookAtRow(role);
    }

    function lookAtRow(role) {
        const isUser = role === "user";
        const item = row(role);
        lookInBoth(item, () => ({
            "": { "height": item.children[0].height + 4 + part("messageBubble").height },
            "label": {
                "spacing": 5, "anchors.leftMargin": 38, "anchors.rightMargin": 4
            },
            "label/PlainText": { "color": theme.uiTextCaption },
            "label/PlainText[0]": { "font.pixelSize": 12, "font.weight": Font.DemiBold },
            "label/PlainText[1]": { "font.pixelSize": 12, "text": "·" },
            "label/PlainText[2]": { "font.pixelSize": 11 },
            "avatar": {
                "visible": !isUser, "x": 0, "width": 26, "height": 26, "radius": 13, "color": theme.uiAccentDim,
                "border.width": 1, "border.color": theme.uiAsstBubbleBorder
            },
            "avatar/FallbackIcon": {
                "name": role === "assistant" ? "starred-symbolic" : "dialog-information",
                "fallback": role === "assistant" ? "draw-star" : "", "size": 14, "color": theme.uiIconMuted
            },
            "messageBubble": {
                "width": Math.round(666 * 0.78), "radius": 14, "opacity": 1, "scale": 1,
                "color": theme.bubbles[role].fill, "border.width": 1, "border.color": theme.bubbles[role].border
            },
            "entrance/NumberAnimation": { "duration": 280, "easing.type": Easing.OutCubic, "to": 1 },
            "entrance/NumberAnimation[0]": { "property": "opacity", "from": 0 },
            "entrance/NumberAnimation[1]": { "property": "scale", "from": 0.97 }
        }));
        const label = drawn.part(item, "label");
        const bubble = drawn.part(item, "messageBubble");
        if (isUser) {
            compare(label.x + label.width, 662);
            compare(bubble.x + bubble.width, 666);
        } else {
            compare(label.x, 38);
            compare(bubble.x, 34);
        }
        compare(bubble.y, label.height + 4);
        compare(bubble.height, drawn.part(item, "messageContent").item.implicitHeight + 18);
        compare(drawn.part(item, "avatar").y, bubble.y);
    }

    function test_currentRow() {
        bar.appendAgentMessage("hello");
        const item = row("assistant");
        item.forceActiveFocus(Qt.TabFocusReason);
        look(item, { "messageBubble": { "border.width": 2, "border.color": theme.focusRing } });
        bar.inputField.forceActiveFocus();
    }

    function test_actions() {
        bar.appendAgentMessage("hello");
        const item = row("assistant");
        lookInBoth(item, () => ({
            "MessageActions": { "spacing": 2, "width": 76 },
            "actions": { "y": 8, "anchors.rightMargin": 10 },
            "MessageActions/RoundButton": {},
            "copyBtn": {
                "width": 24, "height": 24, "radius": 4, "iconName": "edit-copy", "iconFallback": "", "iconSize": 14,
                "iconColor": theme.uiIconMuted, "fill": "transparent", "hoverFill": theme.uiWellFillHi, "ring": theme.focusRing
            },
            "copiedTimer": { "interval": 1500 },
            "ThumbButton": {
                "width": 24, "height": 24, "radius": 4, "iconColor": theme.uiIconMuted, "fill": "transparent",
                "hoverFill": theme.uiWellFillHi, "ring": theme.focusRing
            },
            "ThumbButton/canvas": { "width": 14, "height": 14, "filled": false, "stroke": theme.uiIconMuted },
            "thumbUpBtn/canvas": { "rotation": 0 },
            "thumbDownBtn/canvas": { "rotation": 180 }
        }));
        bar.voteMessage(0, "up");
        look(item, {
            "thumbUpBtn": {
                "iconColor": "#4ade80", "fill": Qt.rgba(0.29, 0.85, 0.50, 0.18), "hoverFill": Qt.rgba(0.29, 0.85, 0.50, 0.18)
            },
            "thumbUpBtn/canvas": { "filled": true, "stroke": "#4ade80" },
            "thumbDownBtn/canvas": { "filled": false }
        });
        bar.voteMessage(0, "down");
        look(item, {
            "thumbDownBtn": {
                "iconColor": "#ef4444", "fill": Qt.rgba(0.90, 0.22, 0.21, 0.18), "hoverFill": Qt.rgba(0.90, 0.22, 0.21, 0.18)
            },
            "thumbDownBtn/canvas": { "filled": true, "stroke": "#ef4444" },
            "thumbUpBtn/canvas": { "filled": false }
        });
        drawn.part(item, "copyBtn").clicked();
        look(item, { "copyBtn": { "iconName": "checkmark", "iconFallback": "dialog-ok", "iconColor": "#4ade80" } });
    }

    //! The thumbs are outlines, which are filled when the user has voted.
    function test_thumbs() {
        bar.appendAgentMessage("hello");
        row("assistant");
        const canvas = part("thumbUpBtn/canvas");
        // How much lighter than the corner some places are, and all together, where 1 is the lightest one.
        const ink = () => {
            const picture = grabImage(bar.contentItem);
            const place = canvas.mapToItem(null, 0, 0);
            const red = (x, y) => picture.red(Math.round(place.x) + x, Math.round(place.y) + y);
            const amounts = [];
            for (let i = 0; i < 14 * 14; ++i)
                amounts.push(red(i % 14, Math.floor(i / 14)) - red(0, 0));
            const most = Math.max(1, ...amounts);
            const at = (x, y) => amounts[y * 14 + x] / most;
            return { "hand": at(9, 9), "finger": at(7, 4), "cuff": at(2, 9), "sum": amounts.reduce((a, b) => a + b) / most };
        };
        // The sum depends on the width of the line and on the shape.
        const isDrawn = (filled, sum) => {
            const found = ink();
            return found.hand === filled && (found.finger === 1) === (filled === 1) && (found.cuff === 1) === (filled === 1)
                && Math.abs(found.sum - sum) < 1.5;
        };
        tryVerify(() => isDrawn(0, 61.7));
        bar.voteMessage(0, "up");
        tryVerify(() => isDrawn(1, 110.7));
    }

    function test_thinking_data() {
        return [
            { tag: "executing", phase: "executing", color: "#4ade80", badge: true },
            { tag: "creating", phase: "creating", color: "#f59e0b", badge: false },
            { tag: "other", phase: "thinking", color: "#8b5cf6", badge: false }
        ];
    }
    function test_thinking(data) {
        bar.appendUserMessage("hello");
        bridge.status = "thinking";
        bridge.activePhase = data.phase;
        bridge.planStepIndex = 1;
        bridge.planStepTotal = 3;
        part("thinkingIndicator/stopBtn");
        const indicator = part("thinkingIndicator");
        lookInBoth(indicator, () => ({
            "": { "height": 40, "width": 676, "clip": true, "Behavior on height": "180 OutCubic" },
            "body": { "height": 40 },
            "pulse": { "x": 8, "width": 16, "height": 16 },
            "halo": { "width": 16, "height": 16, "radius": 8, "color": data.color, "opacity": 0.22 },
            "phaseDot": { "width": 9, "height": 9, "radius": 4.5, "color": data.color },
            "phaseDot/NumberAnimation": { "duration": 650, "easing.type": Easing.InOutSine },
            "phaseDot/NumberAnimation[0]": { "from": 0.55, "to": 1 },
            "phaseDot/NumberAnimation[1]": { "from": 1, "to": 0.55 },
            "phaseDot/SequentialAnimation": { "loops": infinite, "running": true },
            "Row[0]": { "x": 32, "spacing": 8 },
            "phaseLabel": { "color": theme.uiTextMed, "font.pointSize": 10, "font.weight": Font.Medium, "maximumLineCount": 1 },
            "stepBadge": {
                "visible": data.badge, "height": 18, "radius": 9, "color": theme.uiWellFillHi,
                "width": drawn.part(indicator, "badge").implicitWidth + 12
            },
            "badge": { "text": "2/3", "color": theme.uiTextMed, "font.pixelSize": 11 },
            "waitDots": { "spacing": 4 },
            "waitDot": { "width": 5, "height": 5, "radius": 2.5, "color": theme.uiTextSoft },
            "waitDot/NumberAnimation": { "duration": 380, "property": "opacity" },
            "waitDot[0]/NumberAnimation[0]": { "from": 0.2, "to": 1 },
            "waitDot[0]/NumberAnimation[1]": { "from": 1, "to": 0.2 },
            "waitDot/SequentialAnimation[1]": { "loops": infinite },
            "waitDot[0]/PauseAnimation": { "duration": 0 },
            "waitDot[1]/PauseAnimation": { "duration": 140 },
            "waitDot[2]/PauseAnimation": { "duration": 280 },
            "stopBtn": { "anchors.rightMargin": 16, "height": 26, "width": drawn.part(indicator, "stopBtn").contentItem.implicitWidth + 24 },
            "stopBtn.background": { "radius": 8, "color": Qt.rgba(0.9, 0.22, 0.21, 0.14) },
            "stopBtn.contentItem": {
                "color": "#e53935", "font.pixelSize": 12, "font.weight": Font.DemiBold, "horizontalAlignment": Text.AlignHCenter,
                "verticalAlignment": Text.AlignVCenter
            },
            "stopBtn/FocusRing": { "radius": 10, "border.color": theme.focusRing }
        }));
        lookHovered(drawn.part(indicator, "stopBtn"), indicator, { "stopBtn.background": { "color": Qt.rgba(0.9, 0.22, 0.21, 0.30) } });
        bar.stickyPhaseLabel = "word ".repeat(100);
        look(indicator, { "phaseLabel": { "width": 676 - 220 } });
        bar.stickyPhaseLabel = "";
    }

    function test_suggestions() {
        bar.appendUserMessage("hello");
        bar.appendAgentMessage("hello");
        bar.refreshResponseSuggestions([{ "prompt": "a", "title": "Title", "subtitle": "Subtitle", "iconName": "window-list",
                                          "iconColor": "#3b82f6", "iconBg": "0.2,0.4,0.8" }]);
        tryCompare(part("suggestionCards"), "visible", true);
        lookInBoth("suggestionCards", () => ({
            "": { "spacing": 8 },
            "heading": {
                "color": theme.uiTextCaption, "font.pixelSize": 12, "font.weight": Font.DemiBold, "text": "Suggested next steps"
            },
            "cards": { "spacing": 10, "width": 696 },
            "SuggestionCard": { "height": 80, "width": (696 - 3 * 10) / 4 },
            "SuggestionCard.background": {
                "radius": 10, "color": theme.uiWellFill, "border.width": 1, "border.color": theme.uiWellBorder
            },
            "iconTile": { "x": 8, "y": 10, "width": 32, "height": 32, "radius": 8 },
            "iconTile[0]": { "color": Qt.rgba(0.2, 0.4, 0.8, 0.2) },
            "iconTile/FallbackIcon": { "size": 18, "fallback": "dialog-messages" },
            "iconTile[0]/FallbackIcon": { "name": "window-list", "color": "#3b82f6" },
            "SuggestionCard/Column": { "x": 48, "y": 10, "anchors.rightMargin": 8, "spacing": 2 },
            "SuggestionCard/Column/PlainText": {},
            "SuggestionCard[0]/Column/PlainText[0]": {
                "text": "Title", "color": theme.uiTextStrong, "font.pixelSize": 12, "font.weight": Font.DemiBold, "maximumLineCount": 1
            },
            "SuggestionCard[0]/Column/PlainText[1]": {
                "text": "Subtitle", "color": theme.uiTextSoft, "font.pixelSize": 11, "wrapMode": Text.Wrap, "maximumLineCount": 2
            },
            "SuggestionCard[0]/FallbackIcon[1]": {
                "name": "arrow-right", "size": 12, "color": theme.uiTextFaint, "anchors.margins": 6
            },
            "SuggestionCard/FocusRing": { "radius": 12, "border.color": theme.focusRing }
        }));
        const card = part("SuggestionCard");
        lookHovered(card, card, { ".background": { "color": theme.uiWellFillHi } });
    }

    readonly property var plan: ({
        "allowed": true, "requiresApproval": true, "summary": "Open two windows", "riskLevel": "low",
        "plan": [{ "capabilityId": "kde.open", "params": { "a": 1 } }, { "capabilityId": "kde.close" }]
    })

    function test_planCard() {
        bar.appendUserMessage("hello");
        bar.pendingPlan = plan;
        lookInBoth("PlanCard", () => ({
            "": { "radius": 12, "color": theme.uiPlanCardBg, "border.width": 1, "border.color": theme.uiPlanCardBorder,
                  "margin": 12, "spacing": 8 },
            "content": { "x": 12, "y": 12, "width": 672, "spacing": 8 },
            "title": { "color": theme.uiTextStrong, "font.pointSize": 11, "font.bold": true },
            "planSummary": { "anchors.leftMargin": 8, "color": theme.uiTextMed, "font.pointSize": 10, "maximumLineCount": 1 },
            "planRisk": { "width": 672, "color": theme.uiTextSoft, "font.pointSize": 9 },
            "planSteps": { "x": -4, "width": 680, "spacing": 8, "clip": false },
            "planStep": { "width": 680, "height": part("PlanCard").lineHeight },
            "planStepText": {
                "x": 4, "width": 672, "color": theme.uiTextMed, "font.family": "monospace", "font.pointSize": 9,
                "verticalAlignment": Text.AlignVCenter, "horizontalAlignment": Text.AlignLeft
            },
            "planStep/FocusRing": { "anchors.margins": 0, "radius": 4, "border.color": theme.focusRing },
            "stepScrollBar": { "thumbColor": theme.uiScrollThumb },
            "buttons": { "spacing": 8 },
            "PlanButton": { "height": 28 },
            "PlanButton.background": { "radius": 6 },
            "PlanButton.contentItem": {
                "font.pixelSize": 12, "font.weight": Font.DemiBold, "horizontalAlignment": Text.AlignHCenter,
                "verticalAlignment": Text.AlignVCenter
            },
            "PlanButton/FocusRing": { "radius": 8, "border.color": theme.focusRing },
            "planRunBtn": {
                "width": 80, "fill": Qt.rgba(0.60, 0.20, 0.98, 0.3), "hoverFill": Qt.rgba(0.60, 0.20, 0.98, 0.5),
                "outline": theme.runOutline
            },
            "planRunBtn.background": { "color": Qt.rgba(0.60, 0.20, 0.98, 0.3) },
            "planRunBtn.contentItem": { "color": "white" },
            "planCancelBtn": { "width": 70, "fill": theme.uiWellFill, "hoverFill": theme.uiWellFillHi, "outline": "transparent" },
            "planCancelBtn.contentItem": { "color": theme.uiTextStrong }
        }));
        lookHovered(part("planRunBtn"), "planRunBtn", { ".background": { "color": Qt.rgba(0.60, 0.20, 0.98, 0.5) } });
        bar.pendingPlan = null;
    }

    function test_planProgress() {
        bar.appendUserMessage("hello");
        bridge.planStepIndex = 0;
        bridge.planStepTotal = 4;
        bar.planExecutingVisible = true;
        bar.planExecuting = true;
        lookInBoth("PlanProgressBar", () => ({
            "": {
                "width": 696, "height": 48, "radius": 8, "color": theme.uiSuccessBarBg, "border.width": 1,
                "border.color": theme.uiSuccessBarBorder, "Behavior on color": "300 Linear", "Behavior on border.color": "300 Linear",
                "minimumValue": 0, "maximumValue": 1
            },
            "planProgressText": {
                "x": 16, "anchors.rightMargin": 16, "color": theme.uiTextStrong, "font.pointSize": 10, "elide": Text.ElideMiddle
            },
            "planProgressTrack": {
                "x": 16, "y": 37, "width": 664, "height": 3, "radius": 1.5, "color": Qt.rgba(1, 1, 1, 0.15), "visible": true
            },
            "planProgressFill": {
                "width": 166, "height": 3, "radius": 1.5, "color": theme.progressFill, "Behavior on width": "250 OutCubic"
            }
        }));
        bar.planExecuting = false;
        look("PlanProgressBar", {
            "": { "color": Qt.rgba(0.2, 0.8, 0.4, 0.18), "border.color": Qt.rgba(0.2, 0.8, 0.4, 0.35) },
            "planProgressFill": { "width": 664 }
        });
        bar.planExecutingVisible = false;
    }

    function test_undo() {
        bar.appendUserMessage("hello");
        bar.lastActionId = "a1";
        tryCompare(part("undoBar"), "visible", true);
        lookInBoth("undoBar", () => ({
            "": { "width": 696, "height": 36, "radius": 8, "color": theme.uiUndoBarBg, "border.width": 1,
                  "border.color": theme.uiUndoBarBorder },
            "message": { "x": 12, "anchors.rightMargin": 8, "color": theme.uiTextMed, "font.pointSize": 10, "maximumLineCount": 1 },
            "undoBtn": { "anchors.rightMargin": 8, "height": 26, "width": Math.max(64, part("undoBtn").contentItem.implicitWidth + 8) },
            "undoDismissBtn": {
                "anchors.rightMargin": 8, "width": 22, "glyph": "\u2715", "glyphSize": 11, "iconColor": theme.uiTextSoft,
                "hoverFill": theme.uiWellFillHi, "ring": theme.focusRing
            },
            "undoStrip": { "x": 8, "y": 34, "height": 2, "radius": 1, "color": Qt.rgba(0.9, 0.5, 0.2, 0.7),
                           "Behavior on drawnPart": "900 Linear" }
        }));
        look("undoStrip", { "": { "width": 680 * part("undoStrip").drawnPart } });
        bar.dismissUndo();
    }
}
