// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The ring around the bar or the bubble while a request runs.
Rectangle {
    id: glow
    objectName: "thinkingGlow"

    required property var bar

    color: "transparent"
    border.width: 2
    border.color: bar.toviMagenta
    Accessible.ignored: true

    SequentialAnimation {
        running: glow.visible
        loops: Animation.Infinite

        ColorAnimation { target: glow.border; property: "color"; from: glow.bar.toviMagenta; to: glow.bar.toviBlue; duration: 900; easing.type: Easing.InOutSine }
        ColorAnimation { target: glow.border; property: "color"; from: glow.bar.toviBlue; to: glow.bar.toviMagenta; duration: 900; easing.type: Easing.InOutSine }
    }

    SequentialAnimation {
        running: glow.visible
        loops: Animation.Infinite

        NumberAnimation { target: glow; property: "opacity"; from: 0.55; to: 1.0; duration: 900; easing.type: Easing.InOutSine }
        NumberAnimation { target: glow; property: "opacity"; from: 1.0; to: 0.55; duration: 900; easing.type: Easing.InOutSine }
    }
}
