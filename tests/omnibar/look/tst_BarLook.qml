// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! What the prompt bar and everything around it draw.
OmniBarCase {
    name: "BarLook"

    function test_bar() {
        look("barCard", {
            "": { "width": 720, "height": 56 },
            "fill": {
                "radius": 18, "width": 720, "height": 56,
                "gradient.orientation": Gradient.Horizontal,
                "stops": [[0, "#6B2F1A"], [0.35, "#5C2040"], [0.65, "#4A1A5E"], [1, "#3D1B6E"]]
            },
            "glow": {
                "radius": 18, "width": 720, "height": 56,
                "gradient.orientation": Gradient.Vertical,
                "stops": [[0, Qt.rgba(1, 0.85, 0.6, 0.12)], [0.5, Qt.rgba(1, 0.6, 0.8, 0.05)], [1, "transparent"]]
            },
            "Noise": { "opacity": 0.025, "width": 718, "height": 54 },
            "highlight": { "x": 18, "y": 0, "width": 684, "height": 1, "color": Qt.rgba(1, 0.85, 0.65, 0.18) },
            "outline": {
                "radius": 18, "width": 720, "height": 56, "color": "transparent",
                "border.width": 1, "border.color": Qt.rgba(1, 0.7, 0.5, 0.15)
            },
            "panelShadow": { "radius": 18, "shadowColor": Qt.rgba(0, 0, 0, 0.40), "shadowRadius": 24 },
            "leading": { "x": 10, "spacing": 10 },
            "separator": { "width": 1, "height": 28, "color": Qt.rgba(1, 1, 1, 0.15) },
            "inputField": {
                "height": 36, "anchors.leftMargin": 10, "anchors.rightMargin": 10, "background": null,
                "color": Qt.rgba(1, 1, 1, 0.95), "placeholderTextColor": Qt.rgba(1, 1, 1, 0.50), "font.pixelSize": 15,
                "verticalAlignment": TextInput.AlignVCenter
            },
            "inputField/PlainText": {
                "color": Qt.rgba(1, 1, 1, 0.50), "font.pixelSize": 15, "verticalAlignment": Text.AlignVCenter
            },
            "trailing": { "anchors.rightMargin": 10 },
            "BarButtons": { "spacing": 10 }
        });
    }

    //! The cursor of an empty input is beside the placeholder.
    function test_mirroredInput() {
        const input = part("inputField");
        input.LayoutMirroring.enabled = true;
        look(input, { "": { "effectiveHorizontalAlignment": TextInput.AlignRight } });
        input.text = "a";
        look(input, { "": { "effectiveHorizontalAlignment": TextInput.AlignLeft } });
        input.LayoutMirroring.enabled = false;
    }

    function test_shadow() {
        const effect = part("panelShadow").layer.effect.createObject(part("panelShadow"));
        look(effect, {
            "": {
                "horizontalOffset": 0, "verticalOffset": 4, "radius": 24, "samples": 49, "color": Qt.rgba(0, 0, 0, 0.40),
                "transparentBorder": true
            }
        });
        effect.destroy();
    }

    function test_brand() {
        look("Brand", {
            "": { "height": 36, "spacing": 7 },
            "disc": {
                "width": 30, "height": 30, "radius": 15,
                "gradient.orientation": Gradient.Horizontal,
                "stops": [[0, "#e8782a"], [1, "#c246d0"]]
            },
            "FallbackIcon": { "name": "starred-symbolic", "fallback": "draw-star", "size": 16, "color": "white" },
            "connectionDot": {
                "x": 23, "y": 23, "width": 8, "height": 8, "radius": 4, "border.width": 1.5, "border.color": "#3D1B6E"
            },
            "PlainText[0]": { "text": "Tovi", "color": Qt.rgba(1, 1, 1, 0.95), "font.pointSize": 12, "font.bold": true,
                              "font.italic": false },
            "PlainText[1]": { "text": "for", "color": Qt.rgba(1, 1, 1, 0.55), "font.pointSize": 11, "font.bold": false,
                              "font.italic": true },
            "PlainText[2]": { "text": "KeldaOS", "color": Qt.rgba(1, 1, 1, 0.92), "font.pointSize": 12,
                              "font.bold": true, "font.italic": false }
        });
    }

    function test_connectionDot_data() {
        return [
            { tag: "connected", color: "#4ade80", tip: "Connected" },
            { tag: "idle", color: "#4ade80", tip: "Connected" },
            { tag: "thinking", color: "#FFD700", tip: "Thinking…" },
            { tag: "connecting", color: "#FFD700", tip: "Connecting..." },
            { tag: "error", color: "#ef4444", tip: "Connection error" },
            { tag: "disconnected", color: "#ef4444", tip: "Disconnected", blinks: true },
            { tag: "toString", color: "#ef4444", tip: "Disconnected" }
        ];
    }
    function test_connectionDot(data) {
        bridge.status = data.tag;
        look("connectionDot", {
            "": { "color": data.color },
            "HoverTip": { "text": data.tip },
            "Pulse": { "running": data.blinks === true, "low": 0.3, "duration": 800 }
        });
        bridge.status = "idle";
    }

    function test_buttons() {
        bar.inputField.text = "a";
        look("BarButtons", {
            "settingsBtn": {
                "width": 36, "height": 36, "radius": 18, "fill": Qt.rgba(1, 1, 1, 0.06), "hoverFill": Qt.rgba(1, 1, 1, 0.15),
                "hoverDuration": 120, "iconName": "settings-configure", "iconSize": 18, "iconColor": "white", "borderColor.a": 0
            },
            "sendBtn": {
                "width": 36, "height": 36, "radius": 18, "iconName": "go-up", "iconFallback": "arrow-up", "iconSize": 18,
                "iconColor": "white", "scale": 1, "Behavior on scale": "120 Linear"
            },
            "barCloseBtn": {
                "label": "Close Tovi", "width": 32, "height": 32, "radius": 16, "fill": Qt.rgba(1, 1, 1, 0.06),
                "hoverFill": Qt.rgba(0.95, 0.2, 0.2, 0.35), "iconColor": Qt.rgba(1, 1, 1, 0.8), "glyph": "\u2715", "glyphSize": 13
            }
        });
        look("sendBtn", { ".background": { "stops": [[0, "#e8782a"], [1, "#c44e20"]], "gradient.orientation": Gradient.Vertical } });
        lookHovered(part("sendBtn"), "sendBtn", { ".background": { "stops": [[0, "#f09030"], [1, "#d05a28"]] } });
    }

    function test_microphone_data() {
        const idle = { "fill": Qt.rgba(1, 1, 1, 0.06), "hoverFill": Qt.rgba(1, 1, 1, 0.15), "borderColor.a": 0,
                       "iconName": "audio-input-microphone" };
        const active = { "fill": Qt.rgba(0.92, 0.15, 0.15, 0.85), "hoverFill": Qt.rgba(0.92, 0.15, 0.15, 0.85),
                         "borderColor": Qt.rgba(1, 0.3, 0.3, 0.6) };
        return [
            { tag: "idle", values: idle, pulses: false, turns: false },
            { tag: "isListening", values: Object.assign({}, active, { "iconName": "audio-input-microphone" }), pulses: true,
              turns: false },
            { tag: "isTranscribing", values: Object.assign({}, active, { "iconName": "view-refresh" }), pulses: false,
              turns: true }
        ];
    }
    function test_microphone(data) {
        voice.isListening = data.tag === "isListening";
        voice.isTranscribing = data.tag === "isTranscribing";
        look("micBtn", {
            "": Object.assign({ "width": 36, "height": 36, "radius": 18, "hoverDuration": 150, "iconSize": 18,
                                "iconColor": "white" }, data.values),
            "Pulse": { "running": data.pulses, "low": 0.55, "duration": 600 },
            "RotationAnimation": { "running": data.turns, "from": 0, "to": 360, "duration": 1000, "easing.type": Easing.Linear }
        });
        if (data.pulses) {
            voice.inputLevel = 0.02;
            look("levelRing", {
                "": { "width": 36, "height": 36, "radius": 16.5, "line": 2.5, "color": "#FB21FD", "track.a": 0,
                      "from": -Math.PI / 2, "to": -Math.PI / 2 + 0.4 * 2 * Math.PI, "level": 0.4 }
            });
            voice.inputLevel = 0.1;
            look("levelRing", { "": { "level": 1 } });
        }
        voice.isListening = false;
        voice.isTranscribing = false;
        voice.inputLevel = 0;
    }

    function test_speaker_data() {
        return [
            { tag: "off", enabled: false, speaking: false, fill: Qt.rgba(1, 1, 1, 0.08), hover: Qt.rgba(1, 1, 1, 0.12),
              border: "transparent", icon: "audio-volume-muted" },
            { tag: "on", enabled: true, speaking: false, fill: Qt.rgba(0.15, 0.55, 0.92, 0.35), hover: Qt.rgba(1, 1, 1, 0.12),
              border: Qt.rgba(0.2, 0.6, 1.0, 0.5), icon: "audio-volume-high" },
            { tag: "speaking", enabled: true, speaking: true, fill: Qt.rgba(0.15, 0.55, 0.92, 0.85),
              hover: Qt.rgba(0.15, 0.55, 0.92, 0.85), border: Qt.rgba(0.2, 0.6, 1.0, 0.5), icon: "audio-volume-high" }
        ];
    }
    function test_speaker(data) {
        voice.ttsEnabled = data.enabled;
        voice.isSpeaking = data.speaking;
        look("speakerBtn", {
            "": { "width": 36, "height": 36, "radius": 18, "fill": data.fill, "hoverFill": data.hover,
                  "borderColor": data.border, "iconName": data.icon, "iconSize": 18, "iconMask": true, "iconColor": "white" },
            "Pulse": { "running": data.speaking, "low": 0.6, "duration": 500 }
        });
        voice.ttsEnabled = false;
        voice.isSpeaking = false;
    }

    function test_usageRing() {
        bar.sessionUsageInput = 5000;
        look("usageRing", {
            "": { "width": 28, "height": 28 },
            "Arc": {
                "x": 1, "y": 1, "width": 26, "height": 26, "radius": (26 - 2.5) / 2, "line": 2.5, "color": "#FB21FD",
                "track": Qt.rgba(1, 1, 1, 0.2), "from": Math.PI / 2, "to": Math.PI / 2 - 0.1 * 2 * Math.PI
            },
            "FocusRing": { "radius": 16, "border.color": "#e9d5ff" }
        });
        bar.sessionUsageInput = 0;
    }

    function test_thinkingGlow() {
        bridge.isThinking = true;
        look("barCard", {
            "thinkingGlow": { "radius": 20, "width": 724, "height": 60, "color": "transparent", "border.width": 2 },
            "thinkingGlow/ColorAnimation": { "duration": 900, "easing.type": Easing.InOutSine, "property": "color" },
            "thinkingGlow/ColorAnimation[0]": { "from": "#FB21FD", "to": "#2756FB" },
            "thinkingGlow/ColorAnimation[1]": { "from": "#2756FB", "to": "#FB21FD" },
            "thinkingGlow/NumberAnimation": { "duration": 900, "easing.type": Easing.InOutSine, "property": "opacity" },
            "thinkingGlow/NumberAnimation[0]": { "from": 0.55, "to": 1 },
            "thinkingGlow/NumberAnimation[1]": { "from": 1, "to": 0.55 },
            "thinkingGlow/SequentialAnimation": { "running": true, "loops": infinite }
        });
        compare(part("thinkingGlow").parent.x, -2);
        compare(part("thinkingGlow").parent.y, -2);
        bridge.isThinking = false;
    }
}
