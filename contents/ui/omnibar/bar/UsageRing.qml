// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../components/logic/Translatable.js" as Translatable

//! The number of tokens used since the window was opened, as a ring.
Item {
    id: ring
    objectName: "usageRing"

    required property var bar

    readonly property real progress: bar.usageProgress
    readonly property bool hovered: pointer.hovered
    readonly property bool visualFocus: activeFocus
    readonly property string tip: Translatable.filled(bar.tr("Input: {input} · Output: {output} · Total: {total}"), {
        "input": bar.sessionUsageInput,
        "output": bar.sessionUsageOutput,
        "total": bar.sessionUsageTotal
    })

    implicitWidth: 28
    implicitHeight: 28
    activeFocusOnTab: true
    Accessible.role: Accessible.ProgressBar
    Accessible.name: bar.tr("Tokens used")
    Accessible.description: tip

    Arc {
        anchors.centerIn: parent
        width: 26
        height: 26
        radius: (width - line) / 2
        color: ring.bar.toviMagenta
        track: Qt.rgba(1, 1, 1, 0.2)
        // Begins at the bottom of the circle. Intentional: arcs are drawn clockwise, so with an end before its
        // start the arc is the rest of the budget, which shrinks with every reply.
        from: Math.PI / 2
        to: from - 2 * Math.PI * ring.progress
    }

    HoverHandler {
        id: pointer
    }

    FocusRing {
        control: ring
        border.color: "#e9d5ff"
    }

    HoverTip {
        control: ring
        text: ring.tip
    }
}
