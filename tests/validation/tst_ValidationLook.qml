// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "qrc:/org/kde/loomra/contents/ui"
import "../omnibar/controllers"
import "../support/qml"

//! What the voice validation window draws.
LookCase {
    id: test
    name: "ValidationLook"

    property var window: null
    property var theme: null
    property var validation: null

    // The window finds it by this name, as it finds the native object in the program.
    property list<QtObject> natives: [
        FakeVoiceBridge { id: voiceBridge; isModelLoaded: true }
    ]

    property Component windows: Component {
        VoiceValidation {}
    }

    // Width of the window's content.
    readonly property int contentWidth: 578 - 2 * 16

    function initTestCase() {
        window = windows.createObject(null);
        subject = window;
        pointerRest = window.contentItem;
        theme = drawn.part(window, "darkTheme");
        validation = drawn.part(window, "validationController");
        tryCompare(window, "contentShown", true);
    }

    function cleanupTestCase() {
        window.destroy();
    }

    function init() {
        validation.chooseMode(false);
        movePointerAway();
    }

    function test_window() {
        voiceBridge.inputLevel = 0;
        look(window, {
            "": { "width": 580, "height": 720, "minimumWidth": 460, "minimumHeight": 560, "color": "#1a1a22" },
            "darkTheme": { "uiLight": false },
            "ValidationView": { "margin": 16, "minimumListHeight": 140, "thumbColor": theme.uiScrollThumb, "width": 578 },
            "head": { "x": 16, "y": 16, "width": contentWidth, "spacing": 12 },
            "titles": { "anchors.rightMargin": 12 },
            "titles/SettingsHeading": { "text": "Voice STT Validation", "color": theme.uiTextStrong, "font.pointSize": 13, "font.bold": true },
            "statePill": { "height": 26, "radius": 13, "width": part("stateWord").implicitWidth + 24 },
            "stateWord": { "color": "black", "font.pointSize": 9, "font.bold": true },
            "EngineBox": { "width": contentWidth, "spacing": 6 },
            "EngineBox/SettingsHeading": { "font.pointSize": 10 },
            "engineBox": { "width": contentWidth, "height": 32, "opacity": 1 },
            "LevelBar": { "width": contentWidth, "spacing": 6 },
            "levelTrack": { "width": contentWidth, "height": 8, "radius": 4, "color": theme.uiWellFillHi },
            "levelBar": { "width": 0, "height": 8, "radius": 4, "color": theme.positiveText },
            "ListeningButtons": { "width": contentWidth, "spacing": 8 },
            "listenBtn": { "fill": theme.uiAccentDim, "hoverFill": theme.uiAccentBorder, "height": 30 },
            "cancelBtn": { "fill": theme.uiWellFill },
            "notice": { "color": theme.warningText },
            "historyList": { "rowHeight": 46, "width": contentWidth },
            "historyList/SettingsCaption": { "x": 12, "y": 12, "width": contentWidth - 24, "color": theme.uiTextCaption },
            "scoresLine": { "x": 16, "width": contentWidth }
        });
        const lists = part("lists");
        compare(lists.y, part("head").y + part("head").height + 12);
        compare(part("scoresLine").y, lists.y + lists.height + 12);
        compare(part("historyList").height, lists.height);
        compare(lists.height, part("ValidationView").height - lists.y - 12 - part("scoresLine").height - 16);
    }

    function test_state_data() {
        return [
            { tag: "No model", values: { "isModelLoaded": false }, color: "#888" },
            { tag: "Ready", values: { "isModelLoaded": true }, color: "#43a047" },
            { tag: "Listening", values: { "isListening": true }, color: "#e53935" },
            { tag: "Transcribing", values: { "isTranscribing": true }, color: "#fb8c00" }
        ];
    }
    function test_state(data) {
        voiceBridge.isModelLoaded = true;
        Object.keys(data.values).forEach(name => { voiceBridge[name] = data.values[name]; });
        look(window, { "statePill": { "color": data.color }, "stateWord": { "text": data.tag } });
        voiceBridge.isListening = false;
        voiceBridge.isTranscribing = false;
        voiceBridge.isModelLoaded = true;
    }

    function test_error() {
        voiceBridge.lastError = "gone";
        voiceBridge.errorOccurred("gone");
        look(window, {
            "statePill": { "color": "#ef5350" },
            "errorBanner": {
                "visible": true, "width": contentWidth, "radius": 8, "color": theme.dangerFill, "border.width": 1,
                "border.color": theme.dangerText, "height": part("errorText").height + 16
            },
            "errorText": { "x": 10, "y": 8, "width": contentWidth - 20, "color": theme.dangerText }
        });
        voiceBridge.lastError = "";
        validation.lastError = "";
    }

    function test_rows() {
        validation.history.append({ "time": "10:00", "backend": "whisper", "text": "hello", "ms": 5 });
        part("resultRow");
        look(window, {
            "resultRow": { "height": 46, "width": contentWidth - 4 },
            "resultRow/Column": { "x": 10, "anchors.rightMargin": 10, "spacing": 2 },
            "rowHeading": { "color": theme.uiTextCaption, "font.pointSize": 8, "horizontalAlignment": Text.AlignLeft },
            "resultRow/PlainText[1]": { "color": theme.uiTextSoft, "font.pointSize": 9, "horizontalAlignment": Text.AlignLeft },
            "rowTranscript": {
                "color": theme.uiTextStrong, "font.pointSize": 10, "horizontalAlignment": Text.AlignLeft, "maximumLineCount": 1
            },
            "resultRow/FocusRing": { "anchors.margins": 0, "radius": 6, "border.color": theme.focusRing }
        });
        validation.history.clear();
    }

    function test_suite() {
        validation.suiteSentences = [{ "id": "s01", "category": "command", "text": "open the browser" }];
        validation.chooseMode(true);
        part("suiteControls");
        look(window, {
            "SuiteControls": { "width": contentWidth, "spacing": 8 },
            "sentenceText": {
                "width": contentWidth, "color": theme.uiTextStrong, "font.pointSize": 13, "wrapMode": Text.Wrap, "elide": Text.ElideNone
            },
            "SuiteControls/Flow": { "width": contentWidth, "spacing": 8 }
        });
    }

    function test_suiteResults_data() {
        return [
            { tag: "good", accuracy: 0.85, color: () => theme.positiveText },
            { tag: "bad", accuracy: 0.84, color: () => theme.warningText }
        ];
    }
    function test_suiteResults(data) {
        validation.chooseMode(true);
        validation.suiteResults.clear();
        validation.suiteResults.append({ "sentenceId": "s01", "category": "command", "reference": "hello", "hypothesis": "hello",
                                         "accuracy": data.accuracy, "backend": "whisper", "ms": 5 });
        look(part("SuiteResultList/resultRow"), { "": { "height": 66 }, "rowHeading": { "color": data.color() } });
        validation.suiteResults.clear();
    }
}
