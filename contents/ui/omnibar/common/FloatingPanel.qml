// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! The base of panels above the bar: frame, fill, shadow and entrance animation. The window positions them.
Item {
    id: panel

    required property var theme
    required property bool shown
    //! Turns true after the panel is created, so that its first appearance is animated too.
    property bool built: false
    readonly property bool entered: shown && built
    readonly property bool opaque: visible && opacity === 1
    //! Fully shown: the entrance animation has ended. Turns true late, because without animations the panel is opaque
    //! before the bar moves, and would follow the bar.
    property bool settled: false

    //! Duration of the entrance animation in ms.
    property int entranceDuration: 250

    visible: shown
    opacity: entered ? 1 : 0
    scale: entered ? 1 : 0.97
    transformOrigin: Item.Bottom
    onOpaqueChanged: {
        if (opaque)
            Qt.callLater(() => { settled = opaque; });
        else
            settled = false;
    }
    Component.onCompleted: Qt.callLater(() => { built = true; })

    Behavior on opacity {
        NumberAnimation {
            duration: panel.entranceDuration
            easing.type: Easing.OutCubic
        }
    }
    Behavior on scale {
        NumberAnimation {
            duration: panel.entranceDuration
            easing.type: Easing.OutCubic
        }
    }

    GradientPanel {
        anchors.fill: parent
        theme: panel.theme
    }

    ClickBarrier {}
}
