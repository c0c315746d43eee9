// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! What the settings sheet draws, and its tabs "Look", "Models", "Assistant" and "Sessions".
OmniBarCase {
    name: "SettingsLook"

    // Of the sheet without its margins.
    readonly property int pageWidth: 680

    function test_sheet() {
        openTab(0, "lookTab");
        lookInBoth("settingsPanel", () => ({
            "": {
                "width": 704, "margin": 12, "contentLimit": Math.round(bar.screenHeight * 0.78), "entranceDuration": 250,
                "Behavior on opacity": "250 OutCubic", "Behavior on scale": "250 OutCubic"
            },
            "GradientPanel": { "radius": 14 },
            "settingsScrollPane": { "x": 12, "y": 12, "anchors.rightMargin": 2, "thumbColor": theme.uiScrollThumb },
            "content": { "width": pageWidth, "spacing": 12 },
            "heading": { "text": "Settings", "color": theme.uiTextStrong, "font.pointSize": 12, "font.bold": true },
            "SettingsTabs": { "width": pageWidth, "spacing": 12, "minimumPageHeight": 220 },
            "settingsTabs": { "height": 40, "padding": 4, "spacing": 4, "width": pageWidth },
            "settingsTabs.contentItem": { "orientation": ListView.Horizontal, "spacing": 4 },
            "settingsTabs.background": { "radius": 10, "color": theme.uiWellFill, "border.width": 1, "border.color": theme.uiWellBorder },
            "tab": { "height": 32 },
            "tab.background": { "radius": 6, "border.color": theme.uiAccentBorder },
            "tab.contentItem": {
                "font.pointSize": 9, "horizontalAlignment": Text.AlignHCenter, "verticalAlignment": Text.AlignVCenter
            },
            "tab[0].background": { "color": theme.uiWellFillHi, "border.width": 1 },
            "tab[0].contentItem": { "color": theme.uiTextStrong, "text": "Look" },
            "tab[1].background": { "color": "transparent", "border.width": 0 },
            "tab[1].contentItem": { "color": theme.uiTextSoft, "text": "Models" },
            "tab/FocusRing": { "radius": 8, "border.color": theme.focusRing }
        }));
        const sheet = part("settingsPanel");
        compare(sheet.height, Math.min(part("settingsPanel/content").implicitHeight, sheet.contentLimit) + 24);
        compare(sheet.parent.z, 10);
        compare(sheet.parent.y + sheet.height, part("barCard").targetY - 10);
        const tab = part("tab[1]");
        compare(tab.implicitWidth, tab.contentItem.implicitWidth + 28);
        lookHovered(tab, tab, { ".background": { "color": theme.uiWellFill } });
    }

    function test_lookTab() {
        openTab(0, "lookTab");
        lookInBoth("lookTab", light => ({
            "": { "spacing": 12 },
            "SettingsHeading": { "color": theme.uiTextStrong, "font.pointSize": 11, "font.bold": true, "width": pageWidth },
            "ThemeSegments": { "spacing": 4 },
            "darkSegment": { "width": 84, "height": 30 },
            "darkSegment.background": {
                "radius": 6, "border.width": 1, "color": light ? theme.uiWellFill : theme.uiSegDarkOn,
                "border.color": light ? theme.uiWellBorder : theme.uiAccentBorder
            },
            "darkSegment.contentItem": {
                "font.pointSize": 9, "horizontalAlignment": Text.AlignHCenter, "verticalAlignment": Text.AlignVCenter,
                "color": light ? theme.uiTextSoft : theme.uiSegTextOnDark
            },
            "darkSegment/FocusRing": { "radius": 8, "border.color": theme.focusRing },
            "lightSegment.background": {
                "color": light ? theme.uiSegLightOn : theme.uiWellFill, "border.color": light ? theme.uiAccentBorder : theme.uiWellBorder
            },
            "lightSegment.contentItem": { "color": light ? theme.uiSegTextOnLight : theme.uiTextSoft },
            "opacitySlider": {
                "anchors.rightMargin": 12, "from": 0.65, "to": 1, "stepSize": 0.05, "trackColor": theme.uiWellFillHi,
                "fillColor": theme.uiAccentBorder, "ringColor": theme.focusRing
            },
            "opacityValue": {
                "width": 44, "horizontalAlignment": Text.AlignRight, "color": theme.uiTextSoft, "font.pointSize": 10, "text": "100%"
            },
            "transparencySwitch": {
                "width": pageWidth, "opacity": 1, "textColor": theme.uiTextMed, "onColor": theme.uiAccentBorder,
                "offColor": theme.uiWellFillHi, "borderColor": theme.uiWellBorder, "ringColor": theme.focusRing
            },
            "SettingsCaption": {
                "width": pageWidth, "color": theme.uiTextCaption, "font.pointSize": 9, "wrapMode": Text.Wrap, "elide": Text.ElideNone
            }
        }));
        // The rows with a label on the left.
        for (const index of [1, 2]) {
            const row = part("lookTab").children[index];
            look(row, {
                "": { "width": pageWidth, "height": 30 },
                "PlainText[0]": { "color": theme.uiTextMed, "font.pointSize": 10 }
            });
        }
        lookHovered(part("lightSegment"), "lightSegment", { ".background": { "color": theme.uiWellFillHi } });
        part("transparencySwitch").enabled = false;
        look("transparencySwitch", { "": { "opacity": 0.5 } });
        part("transparencySwitch").enabled = true;
    }

    function test_modelsTab() {
        sdk.modelsListed([{ "id": "a-free", "fullId": "p/a-free" }, { "id": "b", "fullId": "p/b" }]);
        bar.selectSettingsModel({ "id": "a-free", "fullId": "p/a-free" });
        bar.freeCheckResults = [
            { "model": "p/a-free", "displayName": "", "ok": true, "responseMs": 5, "response": "", "error": "" },
            { "model": "p/c-free", "displayName": "", "ok": false, "responseMs": 0, "response": "", "error": "gone" }
        ];
        bar.freeCheckRecommended = { "ok": true, "model": "p/a-free" };
        openTab(1, "modelsTab");
        lookInBoth("modelsTab", light => ({
            "": { "spacing": 10 },
            "modelCount": { "font.pointSize": 11, "text": "2 models · 1 free" },
            "defaultModel": { "anchors.rightMargin": 12, "color": theme.uiTextMed, "font.pointSize": 10 },
            "refreshModelsBtn": {
                "height": 30, "leftPadding": 8, "rightPadding": 8, "opacity": 1, "fill": theme.uiWellFill,
                "hoverFill": theme.uiWellFillHi, "borderColor": theme.uiWellBorder, "textColor": theme.uiTextStrong,
                "width": part("refreshModelsBtn").contentItem.implicitWidth + 28
            },
            "refreshModelsBtn.background": {
                "radius": 6, "color": theme.uiWellFill, "border.width": 1, "border.color": theme.uiWellBorder
            },
            "refreshModelsBtn.contentItem": {
                "color": theme.uiTextStrong, "font.pointSize": 9, "horizontalAlignment": Text.AlignHCenter,
                "verticalAlignment": Text.AlignVCenter
            },
            "refreshModelsBtn/FocusRing": { "radius": 8, "border.color": theme.focusRing },
            "FreeCheck": { "width": pageWidth, "spacing": 8 },
            "FreeCheck/SettingsHeading": { "font.pointSize": 10 },
            "FreeCheck/Flow": { "width": pageWidth, "spacing": 8 },
            "checkFreeBtn": {
                "fill": theme.positiveFill, "hoverFill": theme.positiveHover, "borderColor": "transparent", "textColor": "white"
            },
            "freeCheckResults": {
                "rowHeight": 32, "rowSpacing": 0, "maximumHeight": 200, "height": 68, "radius": 8, "color": theme.uiWellFill,
                "border.width": 1, "border.color": theme.uiWellBorder, "framePadding": 2, "thumbColor": theme.uiScrollThumb
            },
            "freeCheckRow": { "height": 32, "width": pageWidth - 4 },
            "freeCheckDot": { "x": 10, "width": 8, "height": 8, "radius": 4 },
            "freeCheckDot[0]": { "color": "#4ade80" },
            "freeCheckDot[1]": { "color": "#ef4444" },
            "freeCheckModel": {
                "x": 28, "anchors.rightMargin": 10, "color": theme.uiTextMed, "font.family": "monospace", "font.pointSize": 9
            },
            "freeCheckOutcome": { "anchors.rightMargin": 10, "font.pointSize": 9 },
            "freeCheckOutcome[0]": { "color": theme.uiTextMed },
            "freeCheckOutcome[1]": { "color": theme.uiTextSoft },
            "freeCheckRow/FocusRing": { "anchors.margins": 0, "radius": 6, "border.color": theme.focusRing },
            "ModelList": { "width": pageWidth, "spacing": 8 },
            "modelSearchField": {
                "width": pageWidth, "leftPadding": 10, "rightPadding": 10, "color": theme.uiInputText, "fillColor": theme.uiWellFill,
                "borderColor": theme.uiWellBorder, "ringColor": theme.focusRing, "placeholderTextColor": theme.uiPlaceholder
            },
            "clearModelSearchBtn": {
                "anchors.rightMargin": 4, "width": 24, "glyph": "\u2715", "glyphSize": 11, "iconColor": theme.uiIconMuted,
                "hoverFill": theme.uiWellFillHi, "ring": theme.focusRing
            },
            "modelList": { "rowHeight": 34, "rowSpacing": 2, "minimumHeight": 72, "maximumHeight": 280, "height": 76, "framePadding": 2 },
            "modelList/list": { "x": 2, "y": 2, "clip": true, "spacing": 2, "cacheBuffer": 36 },
            "modelRow": { "height": 34, "width": pageWidth - 4 },
            "modelRow.background": { "radius": 6 },
            "modelRow[0].background": { "color": Qt.rgba(0.60, 0.20, 0.98, light ? 0.22 : 0.38) },
            "modelRow[1].background": { "color": "transparent" },
            "modelRow/idText": {
                "x": 10, "anchors.rightMargin": 10, "color": theme.uiTextStrong, "font.family": "monospace", "font.pointSize": 9,
                "horizontalAlignment": Text.AlignLeft
            },
            "modelRow/badges": { "anchors.rightMargin": 10, "spacing": 6 },
            "modelRow/FocusRing": { "anchors.margins": 0, "radius": 6, "border.color": theme.focusRing },
            "freeBadge": { "textColor": theme.positiveText },
            "defaultBadge": { "textColor": theme.accentText },
            "freeBadge[0]": {
                "visible": true, "height": 18, "radius": 9, "width": part("freeBadge/word").implicitWidth + 12,
                "color": light ? Qt.rgba(0x15 / 255, 0x80 / 255, 0x3d / 255, 0.16) : Qt.rgba(0x4a / 255, 0xde / 255, 0x80 / 255, 0.16)
            },
            "freeBadge[0]/word": { "color": theme.positiveText, "font.pointSize": 8 },
            "freeBadge[1]": { "visible": false },
            "defaultBadge[0]": { "visible": true },
            "defaultBadge[1]": { "visible": false },
            "noModels": {
                "visible": false, "anchors.margins": 10, "color": theme.uiTextCaption, "font.pointSize": 9, "wrapMode": Text.Wrap,
                "horizontalAlignment": Text.AlignHCenter, "verticalAlignment": Text.AlignVCenter
            },
            "modelsStatus": { "maximumLineCount": 4, "elide": Text.ElideRight, "longest": 600 }
        }));
        lookHovered(part("refreshModelsBtn"), "refreshModelsBtn", { ".background": { "color": theme.uiWellFillHi } });
        const row = part("modelRow[1]");
        lookHovered(row, row, { ".background": { "color": theme.uiWellFillHi } });
        bar.filterModels("p");
        look("modelSearchField", { "": { "rightPadding": 38, "leftPadding": 10 } });
        bar.filterModels("nothing");
        look("modelList", { "": { "height": 72 } });
        bar.filterModels("");
        bar.freeCheckRunning = true;
        look("checkFreeBtn", { "": { "opacity": 0.5 } });
        bar.freeCheckRunning = false;
    }

    function test_longModelList() {
        sdk.modelsListed(Array.from({ "length": 20 }, (_, i) => ({ "id": "m" + i, "fullId": "p/m" + i })));
        openTab(1, "modelsTab");
        look("modelList", {
            "": { "height": 280, "scrolls": true, "rowWidth": pageWidth - 4 - 6 - 4 },
            "scrollBar": { "visible": true, "thumbColor": theme.uiScrollThumb }
        });
        sdk.modelsListed([{ "id": "b", "fullId": "p/b" }]);
    }

    function test_sessionsTab() {
        sdk.currentSessionId = "s1";
        openTab(3, "sessionsTab");
        sdk.sessionsListed([{ "id": "s1", "name": "One" }, { "id": "s2", "name": "Two" }]);
        tryVerify(() => drawn.part(bar, "SessionList/SessionRow[1]") !== null);
        lookInBoth("sessionsTab", () => ({
            "": { "spacing": 10 },
            "activeSession": { "anchors.rightMargin": 12, "color": theme.uiTextMed, "font.pointSize": 10 },
            "deleteEverySessionBtn": {
                "fill": theme.dangerFill, "hoverFill": theme.dangerHover, "borderColor": "transparent", "textColor": theme.dangerText
            },
            "SessionList": { "rowHeight": 48, "rowSpacing": 2, "minimumHeight": 48, "maximumHeight": 320, "height": 104 },
            "SessionRow": { "width": pageWidth - 4, "height": 48 },
            "SessionRow/ground": { "radius": 6, "border.color": theme.uiAccentBorder },
            "SessionRow[0]/ground": { "color": theme.uiAccentDim, "border.width": 1 },
            "SessionRow[1]/ground": { "color": "transparent", "border.width": 0 },
            "SessionRow/Column": { "x": 10, "anchors.rightMargin": 10, "spacing": 2 },
            "SessionRow/Column/Row": { "spacing": 8 },
            "sessionName": { "color": theme.uiTextStrong, "font.pointSize": 10 },
            "activeBadge": { "textColor": theme.accentText },
            "sessionId": { "color": theme.uiTextCaption, "font.family": "monospace", "font.pointSize": 7 },
            "SessionRow/buttons": { "anchors.rightMargin": 8, "spacing": 6 },
            "removeSessionBtn": {
                "fill": theme.dangerFill, "hoverFill": theme.dangerHover, "borderColor": "transparent", "textColor": theme.dangerText
            },
            "noSessions": {
                "visible": false, "anchors.margins": 10, "color": theme.uiTextCaption, "font.pointSize": 9, "wrapMode": Text.Wrap,
                "horizontalAlignment": Text.AlignHCenter, "verticalAlignment": Text.AlignVCenter
            }
        }));
        const buttons = drawn.part(part("sessionsTab"), "newSessionBtn").parent;
        compare(buttons.spacing, 8);
        bar.startRenaming("s2", "Two");
        look("sessionsTab", { "SessionNameField": { "height": 26, "color": theme.uiInputText } });
        bar.stopRenaming();
        sdk.sessionsListed([]);
        look("SessionList", { "": { "height": 48 }, "noSessions": { "visible": true } });
        sdk.sessionsListed(Array.from({ "length": 20 }, (_, i) => ({ "id": "s" + i, "name": "N" })));
        look("SessionList", { "": { "height": 320 } });
        sdk.currentSessionId = "";
    }

    function test_assistantTab() {
        sdk.workspaceIntelAvailable = true;
        sdk.aiRuntimeAvailable = true;
        bar.showAdvancedAssistant = true;
        openTab(2, "assistantTab");
        part("gatingCombo");
        lookInBoth("assistantTab", () => ({
            "": { "spacing": 12 },
            "templateRow": {
                "width": pageWidth, "radius": 8, "color": theme.uiWellFill, "border.width": 1, "border.color": theme.uiWellBorder,
                "margin": 10, "height": part("templateRow/content").implicitHeight + 20
            },
            "templateRow/content": { "x": 10, "y": 10, "width": pageWidth - 20, "spacing": 4 },
            "templateDescription": { "anchors.rightMargin": 12, "maximumLineCount": 2 },
            "advancedOptions": { "width": pageWidth, "spacing": 16 },
            "PatternLearning": { "spacing": 8, "width": pageWidth },
            "AiRuntime": { "spacing": 8, "width": pageWidth },
            "gatingLabel": { "color": theme.uiTextMed, "font.pointSize": 10 },
            "gatingCombo": {
                "textColor": theme.uiTextStrong, "fillColor": theme.uiWellFill, "hoverColor": theme.uiWellFillHi,
                "borderColor": theme.uiWellBorder, "popupColor": theme.panelFillTop, "ringColor": theme.focusRing
            },
            "SuggestionReminders": { "spacing": 8, "width": pageWidth },
            "SuggestionReminders/Flow": { "spacing": 8, "width": pageWidth },
            "reminderSwitch": { "anchors.rightMargin": 16 },
            "reminderMinutes": {
                "anchors.rightMargin": 8, "from": 1, "to": 1440, "fallback": 5, "textColor": theme.uiTextStrong,
                "fillColor": theme.uiWellFill, "hoverColor": theme.uiWellFillHi, "borderColor": theme.uiWellBorder,
                "ringColor": theme.focusRing
            },
            "unit": { "text": "min", "color": theme.uiTextMed, "font.pointSize": 10 }
        }));
        compare(part("templateRow").parent.spacing, 8);
        bar.showAdvancedAssistant = false;
        sdk.workspaceIntelAvailable = false;
        sdk.aiRuntimeAvailable = false;
    }
}
