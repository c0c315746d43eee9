// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! What the tabs "Voice" and "System" of the settings sheet draw.
OmniBarCase {
    name: "SettingsPagesLook"

    // Of the sheet without its margins.
    readonly property int pageWidth: 680

    //! The sheet stays open.
    function init() {
        bar.appearanceStore.lightChrome = false;
        movePointerAway();
    }

    function test_voiceTab() {
        voice.voiceLogEnabled = true;
        voice.voiceLog = ["00:00:01 ERROR gone", "00:00:02 CORRECTED word", "00:00:03 TRANSCRIPT word", "00:00:04 other"];
        openTab(4, "voiceTab");
        part("voiceLogLine");
        lookInBoth("voiceTab", () => ({
            "": { "spacing": 10 },
            "noLiveStt": { "visible": true, "color": "#8a6a4a", "font.pointSize": 9 },
            "ChoiceRow": { "width": pageWidth, "opacity": 1 },
            "ChoiceRow/box": { "width": 300 },
            "ChoiceRow[0]/PlainText[0]": { "text": "Method", "anchors.rightMargin": 12, "color": theme.uiTextMed, "font.pointSize": 10 },
            "SliderRow": { "width": pageWidth, "height": 30, "opacity": 1 },
            "SliderRow[0]/PlainText[0]": {
                "text": "Silence timeout", "anchors.rightMargin": 12, "color": theme.uiTextMed, "font.pointSize": 10
            },
            "SliderRow/slider": {
                "anchors.rightMargin": 12, "width": 200, "trackColor": theme.uiWellFillHi, "fillColor": theme.uiAccentBorder,
                "ringColor": theme.focusRing
            },
            "figure": { "width": 64, "horizontalAlignment": Text.AlignRight, "color": theme.uiTextSoft, "font.pointSize": 10 },
            "delaySection": { "width": pageWidth, "spacing": 10 },
            "silenceSlider": { "from": 200, "to": 3000, "stepSize": 50, "value": 700 },
            "delaySlider": { "from": 0, "to": 15, "stepSize": 1, "value": 4 },
            "VoiceLog": { "width": pageWidth, "spacing": 8 },
            "voiceLogList": {
                "color": Qt.rgba(0.05, 0.04, 0.08, 0.92), "thumbColor": Qt.rgba(1, 1, 1, 0.3), "rowHeight": 16, "rowSpacing": 0,
                "framePadding": 6, "minimumHeight": 0, "maximumHeight": 200, "height": 4 * 16 + 12
            },
            "voiceLogRow": { "height": 16 },
            "voiceLogLine": { "x": 6, "anchors.rightMargin": 6, "font.family": "monospace", "font.pointSize": 7.5 },
            "voiceLogRow/FocusRing": { "anchors.margins": 0, "radius": 4, "border.color": "#c084fc" },
            "noVoiceEvents": {
                "visible": false, "anchors.margins": 10, "color": Qt.rgba(1, 1, 1, 0.75), "font.pointSize": 9, "wrapMode": Text.Wrap,
                "horizontalAlignment": Text.AlignHCenter, "verticalAlignment": Text.AlignVCenter
            }
        }));
        const colors = {};
        Array.from(drawn.part(bar, "voiceLogList/list").contentItem.children).forEach(row => {
            if (row.objectName === "voiceLogRow")
                colors[row.line.split(" ")[1]] = String(drawn.part(row, "voiceLogLine").color);
        });
        compare(colors, { "ERROR": "#ef4444", "CORRECTED": "#ffd700", "TRANSCRIPT": "#4ade80",
                          "other": String(Qt.rgba(1, 1, 1, 0.75)) });
        // Headings of sections have room above.
        const headings = Array.from(part("voiceTab").children).filter(child => child.isSection);
        compare(headings.map(heading => [heading.topPadding, heading.font.pointSize]), headings.map(() => [6, 10]));
        compare(headings.length, 4);

        voice.voiceLog = [];
        look("voiceLogList", { "": { "height": 60 }, "noVoiceEvents": { "visible": true } });
        voice.voiceLog = Array.from({ "length": 50 }, (_, i) => "00:00:04 line " + i);
        look("voiceLogList", { "": { "height": 200 } });
        voice.voiceLogEnabled = false;
        voice.voiceLog = [];
    }

    function test_voiceTestPanel() {
        openTab(4, "voiceTab");
        const panel = part("VoiceTestPanel");
        panel.pendingHypothesis = "";
        panel.pendingMs = 5;
        lookInBoth(panel, () => ({
            "": { "width": pageWidth, "spacing": 8 },
            "SettingsHeading": { "topPadding": 6, "font.pointSize": 10 },
            "TestSentence": { "width": pageWidth, "spacing": 8 },
            "sentenceCard": {
                "width": pageWidth, "radius": 8, "color": theme.uiWellFill, "border.width": 1, "border.color": theme.uiWellBorder,
                "height": part("sentenceCard/texts").height + 20
            },
            "texts": { "x": 12, "y": 10, "width": pageWidth - 24, "spacing": 4 },
            "sentenceText": { "color": theme.uiTextStrong, "font.pointSize": 12, "wrapMode": Text.Wrap, "elide": Text.ElideNone },
            "pendingText": { "color": theme.uiTextCaption },
            "voiceTestState": { "color": theme.uiTextCaption },
            "TestSentence/Flow": { "width": pageWidth, "spacing": 8 },
            "voiceTestMicBtn": {
                "fill": theme.positiveFill, "hoverFill": theme.positiveHover, "borderColor": "transparent", "textColor": "white"
            },
            "TestProgress": { "width": pageWidth, "spacing": 4 },
            "submittedCount": { "anchors.rightMargin": 8, "color": theme.uiTextMed, "font.pointSize": 9 },
            "remainingCount": { "color": theme.uiTextSoft, "font.pointSize": 9 },
            "submittedBar": { "width": pageWidth, "height": 6, "radius": 3, "color": theme.uiWellFillHi, "minimumValue": 0 },
            "submittedShare": { "height": 6, "radius": 3, "color": theme.progressFill, "width": 0 },
            "accuracyLogPath": { "color": theme.uiTextCaption, "font.pointSize": 9, "elide": Text.ElideMiddle }
        }));
        panel.pendingHypothesis = panel.sentence.text;
        panel.problem = "gone";
        look(panel, { "pendingText": { "color": theme.accentText }, "voiceTestState": { "color": theme.dangerText } });
        panel.problem = "";
        panel.submit();
        panel.pendingHypothesis = "nothing of this kind";
        panel.submit();
        tryVerify(() => drawn.part(panel, "testResultRow[1]") !== null);
        lookInBoth(panel, () => ({
            "TestResults": { "rowHeight": 28, "rowSpacing": 0, "maximumHeight": 284 },
            "testResultRow": { "height": 28 },
            "testResultRow/idText": { "x": 10, "width": 36, "font.family": "monospace", "font.pointSize": 9,
                                      "horizontalAlignment": Text.AlignLeft },
            "testResultText": { "x": 54, "anchors.rightMargin": 10, "font.pointSize": 9 },
            "testResultRow/latency": { "anchors.rightMargin": 10, "color": theme.uiTextSoft, "font.pointSize": 9 },
            "testResultPercentage": {
                "anchors.rightMargin": 10, "width": 40, "font.pointSize": 9, "font.bold": true, "horizontalAlignment": Text.AlignRight
            },
            "testResultRow/FocusRing": { "anchors.margins": 0, "radius": 6, "border.color": theme.focusRing }
        }));
        for (const item of [part("testResultRow[0]"), part("testResultRow[1]")]) {
            const tone = item.raccuracy >= 0.85 ? theme.positiveText : theme.warningText;
            look(item, { "idText": { "color": tone }, "testResultText": { "color": tone }, "testResultPercentage": { "color": tone } });
        }
        voice.isListening = true;
        look("voiceTestMicBtn", {
            "": { "fill": Qt.rgba(0.92, 0.15, 0.15, 0.85), "hoverFill": Qt.rgba(0.92, 0.15, 0.15, 0.85) }
        });
        voice.isListening = false;
        panel.clearResults();
    }

    function test_systemTab() {
        bar.dashFeedbackLikes = 1;
        bar.powerProfileAvailable = ["balanced", "performance"];
        bar.powerProfileActive = "balanced";
        bar.dashLogEntries = [];
        openTab(5, "systemTab");
        bar.dashErrorTotal = 0;
        bar.dashWarnTotal = 0;
        bar.dashCpuPercent = 7;
        bar.dashUptimeMs = 62 * 60 * 1000;
        bar.dashSessionHeapMb = 3;
        bar.dashSessionHeapTotalMb = 4;
        bar.dashReqCount = 5;
        bar.dashActionCount = 6;
        bar.dashBridgeRssMb = 8;
        bar.dashBridgeExternalMb = 9;
        lookInBoth("systemTab", () => ({
            "": { "spacing": 10 },
            "SettingsHeading": { "font.pointSize": 10 },
            "HealthBanner": { "width": pageWidth, "height": 38, "radius": 8, "color": Qt.rgba(0.26, 0.63, 0.28, 0.1) },
            "healthDot": { "x": 12, "width": 10, "height": 10, "radius": 5, "color": "#4ade80" },
            "healthText": {
                "x": 32, "anchors.rightMargin": 10, "color": theme.uiTextStrong, "font.pointSize": 10, "font.bold": true
            },
            "lights": { "anchors.rightMargin": 4, "spacing": 14 },
            "bridgeLight": { "spacing": 6 },
            "bridgeLight/StatusDot": { "width": 7, "radius": 3.5, "color": "#4ade80" },
            "bridgeLight/PlainText": { "color": theme.uiTextMed, "font.pointSize": 9 },
            "runtimeLight/StatusDot": { "color": theme.uiTextFaint },
            "MemoryGrid": {
                "width": pageWidth, "radius": 8, "color": theme.uiWellFill, "border.width": 1, "border.color": theme.uiWellBorder,
                "height": 4 * 20 + 3 * 6 + 20
            },
            "MemoryGrid/rows": { "x": 10, "y": 10, "width": pageWidth - 20, "spacing": 6 },
            "cpuFigures": { "width": pageWidth - 20, "height": 20 },
            "cpuFigures/PlainText[0]": { "text": "CPU", "color": theme.uiTextSoft, "font.pointSize": 9, "width": 220 },
            "value": { "x": 220, "font.pointSize": 10, "color": theme.uiTextStrong },
            "detail": { "x": 440, "width": 220, "color": theme.uiTextSoft, "font.pointSize": 9 },
            "cpuFigures/value": { "text": "7%" },
            "cpuFigures/detail": { "text": "Uptime 1h 2m" },
            "heapFigures/value": { "text": "3 / 4 MB" },
            "heapFigures/detail": { "text": "Requests 5" },
            "rssFigures/value": { "text": "8 MB" },
            "rssFigures/detail": { "text": "Actions 6" },
            "appFigures/value": { "text": "8 MB" },
            "appFigures/detail": { "text": "External 9 MB" },
            "FeedbackRow": { "spacing": 18 },
            "LogCounts": { "width": pageWidth },
            "LogCounts/row": { "spacing": 18 },
            "errorCount": { "color": theme.uiTextMed, "font.pointSize": 10 },
            "warningCount": { "color": theme.uiTextMed, "font.pointSize": 10 },
            "lastError": {
                "anchors.leftMargin": 18, "horizontalAlignment": Text.AlignRight, "color": theme.uiTextCaption, "font.pointSize": 9
            },
            "serviceDot": { "width": 8, "height": 8, "radius": 4 },
            "serviceLabel": { "x": 16, "color": theme.uiTextMed, "font.pointSize": 10 },
            "serviceLine": {
                "anchors.leftMargin": 18, "horizontalAlignment": Text.AlignRight, "color": theme.uiTextCaption, "font.pointSize": 9
            },
            "PowerProfiles": { "width": pageWidth, "spacing": 8 },
            "PowerProfiles/PlainText[0]": {
                "text": "Power:", "height": 30, "verticalAlignment": Text.AlignVCenter, "color": theme.uiTextSoft, "font.pointSize": 9
            },
            "powerChip[0]": { "fill": theme.uiAccentDim, "hoverFill": theme.uiAccentDim, "borderColor": theme.uiAccentBorder },
            "powerChip[1]": { "fill": theme.uiWellFill, "hoverFill": theme.uiWellFillHi, "borderColor": theme.uiWellBorder }
        }));
        compare(part("refreshRuntimeBtn").parent.spacing, 8);
        compare(Array.from(part("FeedbackRow").children).map(count => [String(count.color), count.font.pointSize]),
                Array(3).fill([String(theme.uiTextMed), 10]));
    }

    function test_health_data() {
        return [
            { tag: "errors", errors: 1, warnings: 1, status: "idle", fill: Qt.rgba(0.9, 0.22, 0.21, 0.18), dot: "#ef4444" },
            { tag: "warnings", errors: 0, warnings: 1, status: "idle", fill: Qt.rgba(0.98, 0.55, 0, 0.15), dot: "#FFD700" },
            { tag: "healthy", errors: 0, warnings: 0, status: "idle", fill: Qt.rgba(0.26, 0.63, 0.28, 0.1), dot: "#4ade80" },
            { tag: "no bridge", errors: 0, warnings: 0, status: "disconnected", fill: Qt.rgba(0.9, 0.22, 0.21, 0.18), dot: "#ef4444" },
            { tag: "bad bridge", errors: 0, warnings: 0, status: "error", fill: Qt.rgba(0.9, 0.22, 0.21, 0.18), dot: "#ef4444" }
        ];
    }
    function test_health(data) {
        openTab(5, "systemTab");
        bar.dashErrorTotal = bar.appLogErrors = data.errors;
        bar.dashWarnTotal = bar.appLogWarnings = data.warnings;
        bridge.status = data.status;
        look("systemTab", {
            "HealthBanner": { "color": data.fill },
            "healthDot": { "color": data.dot },
            "errorCount": { "color": data.errors > 0 ? theme.dangerText : theme.uiTextMed },
            "warningCount": { "color": data.warnings > 0 ? theme.warningText : theme.uiTextMed }
        });
        bridge.status = "idle";
        bar.dashErrorTotal = bar.appLogErrors = 0;
        bar.dashWarnTotal = bar.appLogWarnings = 0;
    }

    function test_load_data() {
        return [
            { tag: "50", color: null },
            { tag: "51", color: "#FFD700" },
            { tag: "80", color: "#FFD700" },
            { tag: "81", color: "#ef4444" }
        ];
    }
    function test_load(data) {
        openTab(5, "systemTab");
        bar.dashCpuPercent = Number(data.tag);
        lookInBoth("cpuFigures", light => ({
            "value": { "color": data.color || theme.uiTextStrong },
            // The colours are too pale for the light theme.
            "ground": {
                "visible": light && data.color !== null, "color": "#241a31", "radius": 4, "anchors.leftMargin": -6,
                "anchors.rightMargin": -6
            }
        }));
        bar.dashCpuPercent = 0;
    }

    function test_log() {
        openTab(5, "systemTab");
        sdk.systemDashboardReceived({ "errors": { "entries": [] } });
        bar.dashLogRows.clear();
        bar.dashLogRows.append({ "llevel": "error", "lmessage": "gone", "lts": 0 });
        bar.dashLogRows.append({ "llevel": "warn", "lmessage": "late", "lts": 0 });
        tryVerify(() => drawn.part(bar, "logRow[1]") !== null);
        lookInBoth("LogList", () => ({
            "": { "rowHeight": 22, "rowSpacing": 0, "maximumHeight": 180, "height": 48 },
            "logRow": { "height": 22, "width": pageWidth - 4 },
            "logLine": {
                "x": 10, "anchors.rightMargin": 10, "font.pointSize": 9, "horizontalAlignment": Text.AlignLeft, "maximumLineCount": 1
            },
            "logRow/FocusRing": { "anchors.margins": 0, "radius": 6, "border.color": theme.focusRing }
        }));
        for (const item of [part("logRow[0]"), part("logRow[1]")])
            look(item, { "logLine": { "color": item.llevel === "error" ? theme.dangerText : theme.warningText } });
    }

    function test_service_data() {
        return [
            { tag: "active", color: "#4ade80" },
            { tag: "failed", ready: false, color: "#ef4444" },
            { tag: "activating", ready: false, color: "#FFD700" }
        ];
    }
    function test_service(data) {
        openTab(5, "systemTab");
        bar.serviceActive = data.tag;
        sdk.ready = data.ready !== false;
        look("serviceDot", { "": { "color": data.color } });
        sdk.ready = true;
        bar.serviceActive = "unknown";
    }
}
