// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Fades an item out and in while running. Afterwards the item is fully opaque.
SequentialAnimation {
    id: pulse

    required property Item target
    //! The minimum opacity.
    required property real low
    //! Duration of each direction in ms.
    required property int duration

    loops: Animation.Infinite
    onStopped: target.opacity = 1.0

    NumberAnimation { target: pulse.target; property: "opacity"; from: 1.0; to: pulse.low; duration: pulse.duration; easing.type: Easing.InOutSine }
    NumberAnimation { target: pulse.target; property: "opacity"; from: pulse.low; to: 1.0; duration: pulse.duration; easing.type: Easing.InOutSine }
}
