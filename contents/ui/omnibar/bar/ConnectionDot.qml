// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! The connection status as a coloured dot. It blinks while disconnected.
Rectangle {
    id: dot
    objectName: "connectionDot"

    required property var bar

    readonly property string status: bar.bridgeStatus
    readonly property bool hovered: pointer.hovered
    readonly property var looks: ({
        "connected": { "color": "#4ade80", "tip": bar.tr("Connected") },
        "idle": { "color": "#4ade80", "tip": bar.tr("Connected") },
        "thinking": { "color": "#FFD700", "tip": bar.activePhaseLabel || bar.tr("Processing...") },
        "connecting": { "color": "#FFD700", "tip": bar.tr("Connecting...") },
        "error": { "color": "#ef4444", "tip": bar.tr("Connection error") }
    })
    readonly property var look: looks.hasOwnProperty(status) ? looks[status] : { "color": "#ef4444", "tip": bar.tr("Disconnected") }

    width: 8
    height: 8
    radius: 4
    color: look.color
    border.width: 1.5
    border.color: "#3D1B6E"
    Accessible.role: Accessible.Indicator
    Accessible.name: look.tip

    HoverHandler {
        id: pointer
    }

    HoverTip {
        control: dot
        text: dot.look.tip
    }

    Pulse {
        target: dot
        low: 0.3
        duration: 800
        // In compact mode nobody would see it.
        running: dot.status === "disconnected" && !dot.bar.compactMode
    }
}
