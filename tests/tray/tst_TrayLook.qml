// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "qrc:/org/kde/loomra/contents/ui"
import "../omnibar/controllers"
import "../support/qml"

//! What the tray view draws.
LookCase {
    id: test
    name: "TrayLook"

    property var tray: null

    // The window finds it by this name, as it finds the native object in the program.
    property list<QtObject> natives: [
        FakeBridge { id: agentBridge }
    ]

    property Component windows: Component {
        TrayIcon {}
    }

    SystemPalette {
        id: system
    }

    function initTestCase() {
        tray = windows.createObject(null);
        compare([tray.width, tray.height], [200, 200]);
        subject = tray;
        pointerRest = tray.contentItem;
        tryVerify(() => drawn.part(tray, "fullForm") !== null);
    }

    function cleanupTestCase() {
        tray.destroy();
    }

    function init() {
        tray.width = tray.height = 200;
        movePointerAway();
    }

    function test_fullForm() {
        look(tray, {
            "": { "width": 200, "height": 200, "color": system.window, "compactBelow": 96, "title": "Warden Desk" },
            "fullForm": { "thumbColor": Qt.rgba(system.windowText.r, system.windowText.g, system.windowText.b, 0.35) },
            "content": { "topPadding": 6, "bottomPadding": 6, "spacing": 4 },
            "trayButton": { "width": 36, "height": 36, "y": 6 },
            "trayButton/FallbackIcon": { "name": "system-run", "size": 32, "color": system.windowText },
            "statusDot": { "x": 28, "y": 28, "width": 8, "height": 8, "radius": 4 },
            "trayButton/FocusRing": { "anchors.margins": 0, "radius": 4, "border.color": system.highlight },
            "statusText": {
                "color": system.windowText, "horizontalAlignment": Text.AlignHCenter, "wrapMode": Text.Wrap,
                "width": drawn.part(tray, "content").width - 16, "text": "Warden Desk\nStatus: idle"
            },
            "trayAction": { "height": 24, "width": Math.min(184, drawn.part(tray, "content").width - 16) },
            "trayAction.background": { "radius": 4, "color": system.button },
            "trayAction.contentItem": {
                "color": system.buttonText, "fontSizeMode": Text.HorizontalFit, "minimumPointSize": 7,
                "horizontalAlignment": Text.AlignHCenter, "verticalAlignment": Text.AlignVCenter
            },
            "trayAction/FocusRing": { "anchors.margins": 0, "radius": 4, "border.color": system.highlight },
            "trayAction[0]": { "label": "Open Omni-Bar" },
            "trayAction[1]": { "label": "Restart Agent" },
            "trayAction[2]": { "label": "View Logs" },
            "trayAction[3]": { "label": "Settings" }
        });
        const action = drawn.part(tray, "trayAction");
        lookHovered(action, action, { ".background": { "color": system.midlight } });
    }

    function test_wideForm() {
        tray.width = 400;
        look(tray, { "trayAction": { "width": 184 } });
    }

    function test_status_data() {
        return [
            { tag: "disconnected", color: "#FF0000", tip: "Not connected" },
            { tag: "thinking", color: "#FFD700", tip: "Processing..." },
            { tag: "running", color: "#FFD700", tip: "Processing..." },
            { tag: "error", color: "#FF0000", tip: "Error" },
            { tag: "idle", color: "#098909", tip: "Connected" },
            { tag: "toString", color: "#098909", tip: "Connected" }
        ];
    }
    function test_status(data) {
        agentBridge.status = data.tag;
        look(tray, { "statusDot": { "color": data.color }, "": { "toolTipSubText": data.tip, "toolTipMainText": "Warden Desk" } });
        agentBridge.status = "idle";
    }

    function test_compactForm_data() {
        return [
            { tag: "narrow", width: 95, height: 200, compact: true },
            { tag: "low", width: 200, height: 95, compact: true },
            { tag: "large enough", width: 96, height: 96, compact: false }
        ];
    }
    function test_compactForm(data) {
        tray.width = data.width;
        tray.height = data.height;
        tryCompare(tray, "compact", data.compact);
        compare(drawn.part(tray, "compactForm") !== null, data.compact);
        if (!data.compact)
            return;
        look(tray, {
            "compactForm": { "width": data.width, "height": data.height },
            "compactForm/FallbackIcon": { "size": 32 },
            "compactForm/statusDot": { "x": data.width - 8, "y": data.height - 8 }
        });
    }
}
