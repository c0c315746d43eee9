// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Fades an item to and fro while it runs, and leaves it in full sight.
SequentialAnimation {
    id: pulse

    required property Item target
    //! The opacity at which it turns back.
    required property real low
    //! From full to low, and from low to full, in ms.
    required property int duration

    loops: Animation.Infinite
    onStopped: target.opacity = 1.0

    NumberAnimation { target: pulse.target; property: "opacity"; from: 1.0; to: pulse.low; duration: pulse.duration; easing.type: Easing.InOutSine }
    NumberAnimation { target: pulse.target; property: "opacity"; from: pulse.low; to: 1.0; duration: pulse.duration; easing.type: Easing.InOutSine }
}
