// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! What the window draws around the prompt bar, and how it moves.
OmniBarCase {
    name: "SurfaceLook"

    function cleanup() {
        bar.detachFiles();
    }

    function test_window() {
        look("rootContainer", {
            "": { "Behavior on scale": "350 OutCubic", "Behavior on opacity": "350 OutCubic" },
            "barCard": { "z": 11, "Behavior on y": "350 OutCubic", "Behavior on panelBottom": "350 OutCubic" }
        });
        look(bar, {
            "": {
                "color": "transparent", "flags": Qt.WindowStaysOnTopHint | Qt.FramelessWindowHint | Qt.Dialog,
                "toviMagenta": "#FB21FD", "toviBlue": "#2756FB", "toviAccent": Qt.rgba(0.60, 0.20, 0.98, 1.0),
                "toviAccentDim": Qt.rgba(0.60, 0.20, 0.98, 0.22), "toviAccentBorder": Qt.rgba(0.60, 0.20, 0.98, 0.35),
                "Behavior on width": "400 OutCubic", "Behavior on height": "400 OutCubic"
            },
            "windowEntrance/NumberAnimation[0]": {
                "target": bar, "property": "windowFade", "from": 0, "to": 1, "duration": 160, "easing.type": Easing.OutCubic
            },
            "windowEntrance/NumberAnimation[1]": {
                "property": "scale", "from": 0.96, "to": 1, "duration": 220, "easing.type": Easing.OutBack
            },
            "closing/NumberAnimation[0]": { "property": "windowFade", "to": 0, "duration": 120 },
            "closing/NumberAnimation[1]": { "property": "scale", "to": 0.96, "duration": 120 }
        });
    }

    function test_scrim() {
        look("scrim", { "": { "color": Qt.rgba(0.03, 0.01, 0.06, 0.72), "width": bar.width, "height": bar.height } });
        bar.appearanceStore.translucentBackground = false;
        look("scrim", { "": { "color": Qt.rgba(0, 0, 0, 0.85) } });
        bar.appearanceStore.translucentBackground = true;
        // The same in both themes.
        bar.appearanceStore.lightChrome = true;
        look("scrim", { "": { "color": Qt.rgba(0.03, 0.01, 0.06, 0.72) } });
    }

    function test_hints_data() {
        const black = Qt.rgba(0, 0, 0, 0.4);
        return [
            { tag: "minimise", prepare: () => {}, text: "<b>Esc</b> to minimize · Type <b>/</b> for commands", color: black },
            { tag: "stop", prepare: () => { bridge.isThinking = true; }, text: "<b>Esc</b> to stop", color: black },
            { tag: "voice", prepare: () => { bar.voiceConfirmPending = true; },
              text: "<b>Esc</b> to cancel voice · <b>Enter</b> to send", color: Qt.rgba(0.8, 0.5, 1.0, 0.5) }
        ];
    }
    function test_hints(data) {
        bar.appendUserMessage("hello");
        bar.wiNotifyBarLine = "news";
        data.prepare();
        look("HintStrip", {
            "": { "width": bar.width - 24, "spacing": 2 },
            "notifyLine": {
                "color": Qt.rgba(1, 1, 1, 0.52), "font.pixelSize": 10, "horizontalAlignment": Text.AlignHCenter,
                "maximumLineCount": 2, "wrapMode": Text.Wrap, "elide": Text.ElideRight
            },
            "keyHint": { "font.pixelSize": 10, "horizontalAlignment": Text.AlignHCenter, "text": data.text, "color": data.color }
        });
        compare(part("HintStrip").parent.anchors.bottomMargin, 2);
        bar.wiNotifyBarLine = "";
        bar.voiceConfirmPending = false;
        bridge.isThinking = false;
    }

    function test_idleCards() {
        look("idleCards", {
            "": { "spacing": 12, "width": 680, "opacity": 1, "Behavior on opacity": "200 Linear" },
            "card": { "width": 161, "height": 100, "scale": 1, "Behavior on scale": "120 Linear" },
            "card.background": {
                "radius": 14, "color": Qt.rgba(0.18, 0.08, 0.30, 0.60), "border.width": 1,
                "border.color": Qt.rgba(0.60, 0.20, 0.98, 0.35)
            },
            "card/Column": { "spacing": 10 },
            "card/FallbackIcon": { "size": 24, "color": Qt.rgba(1, 1, 1, 0.85) },
            "card/Column/PlainText": {
                "width": 145, "color": Qt.rgba(1, 1, 1, 0.9), "font.pixelSize": 13, "maximumLineCount": 3,
                "wrapMode": Text.Wrap, "horizontalAlignment": Text.AlignHCenter
            },
            "card/FocusRing": { "radius": 16, "border.color": "#e9d5ff" },
            "card[0]/FallbackIcon": { "name": "view-list-details" },
            "card[1]/FallbackIcon": { "name": "system-run" },
            "card[2]/FallbackIcon": { "name": "appointment-new" },
            "card[3]/FallbackIcon": { "name": "window-list" },
            "card[0]": { "label": "List KDE &\nSystem Actions" },
            "card[1]": { "label": "System\nStatus" },
            "card[2]": { "label": "Set\nReminder" },
            "card[3]": { "label": "Open\nWindows" }
        });
        compare(part("idleCards").parent.anchors.topMargin, 20);
        const card = part("card[1]");
        lookHovered(card, card, { "": { "scale": 1.03 }, ".background": { "color": Qt.rgba(0.25, 0.12, 0.40, 0.75) } });
        bar.inputField.text = "a";
        tryCompare(part("idleCards"), "opacity", 0);
    }

    function test_attachedFiles() {
        const path = testFiles.write("a.txt", "text");
        bar.slashAttachedFiles = [{ "name": "a.txt", "path": path, "content": "text" }];
        look("attachedFiles", {
            "": { "spacing": 6 },
            "fileChip": {
                "height": 20, "radius": 10, "color": "#3a1d4d", "border.width": 1, "border.color": Qt.rgba(1, 0.7, 0.5, 0.35),
                "width": 26 + part("fileChip/label").width + 22
            },
            "fileChip/FallbackIcon[0]": { "x": 8, "name": "mail-attachment", "size": 12, "color": Qt.rgba(1, 1, 1, 0.75) },
            "fileChip/label": {
                "x": 26, "color": Qt.rgba(1, 1, 1, 0.90), "font.pixelSize": 11, "elide": Text.ElideMiddle,
                "horizontalAlignment": Text.AlignLeft
            },
            "removeFileBtn": {
                "anchors.rightMargin": 2, "width": 16, "glyph": "\u2715", "glyphSize": 9, "iconColor": Qt.rgba(1, 1, 1, 0.85),
                "hoverFill": Qt.rgba(0.95, 0.2, 0.2, 0.45)
            }
        });
        const loader = part("attachedFiles").parent;
        compare([loader.z, loader.anchors.leftMargin, loader.y + loader.height], [10, 18, part("barCard").y - 1]);
        bar.slashAttachedFiles = [{ "name": "a".repeat(100), "path": path, "content": "text" }];
        look("fileChip", { "label": { "width": 180 } });
    }

    function test_filePicker() {
        bar.fileDialogOpen = true;
        look("fileDialog", { "": { "width": 760, "height": 480, "title": "Select a file to attach" } });
        part("fileDialog").close();
        tryCompare(bar, "fileDialogOpen", false);
    }

    function test_voiceConfirmation() {
        bar.voiceConfirmPending = true;
        bar.voiceConfirmCountdown = 3;
        tryVerify(() => part("voiceConfirmBar").height === 36);
        look("voiceConfirmBar", {
            "": {
                "width": 680, "radius": 10, "color": Qt.rgba(0.15, 0.10, 0.22, 0.92), "border.width": 1,
                "border.color": Qt.rgba(0.9, 0.5, 1.0, 0.25), "clip": true, "Behavior on height": "200 OutCubic"
            },
            "RowLayout": { "x": 12, "width": 656, "spacing": 12 },
            "countdownRing": {
                "width": 22, "height": 22, "radius": 8, "line": 2, "color": "#FB21FD", "track": Qt.rgba(1, 1, 1, 0.15),
                "from": -Math.PI / 2, "to": -Math.PI / 2 + 0.75 * 2 * Math.PI
            },
            "voiceConfirmLabel": { "color": Qt.rgba(0.85, 0.7, 1.0, 0.9), "font.pointSize": 9 },
            "VoiceConfirmButton": { "height": 24 },
            "VoiceConfirmButton.background": { "radius": 6 },
            "VoiceConfirmButton.contentItem": {
                "color": "white", "font.pointSize": 9, "minimumPointSize": 6, "fontSizeMode": Text.HorizontalFit,
                "horizontalAlignment": Text.AlignHCenter, "verticalAlignment": Text.AlignVCenter
            },
            "VoiceConfirmButton/FocusRing": { "radius": 8, "border.color": "#e9d5ff" },
            "voiceRephraseBtn": {
                "fill": Qt.rgba(0.35, 0.65, 1.0, 0.16), "hoverFill": Qt.rgba(0.35, 0.65, 1.0, 0.28), "bold": false, "opacity": 1,
                "implicitWidth": part("voiceRephraseBtn").contentItem.implicitWidth + 14
            },
            "voiceSendBtn": { "width": 48, "fill": "#FB21FD", "hoverFill": "#d916dd", "bold": true },
            "voiceSendBtn.background": { "color": "#FB21FD" },
            "voiceSendBtn.contentItem": { "font.bold": true },
            "voiceCancelBtn": { "width": 54, "fill": Qt.rgba(1, 1, 1, 0.08), "hoverFill": Qt.rgba(1, 1, 1, 0.16), "bold": false }
        });
        compare(part("voiceConfirmBar").parent.anchors.topMargin, 4);
        lookHovered(part("voiceSendBtn"), "voiceSendBtn", { ".background": { "color": "#d916dd" } });
        bar.voiceRephrasing = true;
        look("voiceRephraseBtn", { "": { "opacity": 0.55, "label": "..." } });
        bar.voiceRephrasing = false;
        bar.voiceConfirmCountdown = 0;
        look("voiceConfirmBar", { "countdownRing": { "visible": false }, "voiceConfirmLabel": { "text": "Edited" } });
        bar.voiceConfirmPending = false;
        look("voiceConfirmBar", { "": { "height": 0, "visible": false } });
    }

    function test_bubble() {
        bar.compactMode = true;
        bridge.isThinking = true;
        tryCompare(bar, "width", 56);
        tryCompare(part("compactBubble"), "scale", 1);
        lookInBoth("compactBubble", () => ({
            "": { "label": "Open Tovi", "width": 56, "height": 56, "Behavior on opacity": "350 OutCubic", "Behavior on scale": "350 OutBack" },
            ".background": { "radius": 28, "color": theme.uiPanelBase },
            ".background/Rectangle": {
                "radius": 28, "stops": [[0, theme.uiCompactGrad0], [1, theme.uiCompactGrad1]],
                "gradient.orientation": Gradient.Vertical, "border.width": 1.5
            },
            "FallbackIcon": { "name": "dialog-messages", "fallback": "chat", "size": 28, "color": theme.uiIconMuted },
            "thinkingGlow": { "radius": 28, "border.width": 2, "width": 56 },
            "unreadBadge": { "x": 44, "y": 4, "width": 8, "height": 8, "radius": 4, "color": "#FF3D3D", "visible": false }
        }));
        look("compactBubble", {
            ".background/Rectangle": { "border.color": part("compactBubble").visualFocus ? theme.focusRing : theme.uiPanelBorder }
        });
        look("rootContainer", { "": { "scale": 0, "opacity": 0 } });
        bridge.isThinking = false;
        bar.compactMode = false;
        tryCompare(part("compactBubble"), "opacity", 0);
        look("compactBubble", { "": { "scale": 0.8 } });
        tryCompare(bar, "width", bar.screenWidth);
        look("rootContainer", { "": { "scale": 1, "opacity": 1 } });
    }
}
