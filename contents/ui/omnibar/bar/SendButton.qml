// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! Sends the text in the input, like Enter.
RoundButton {
    id: send
    objectName: "sendBtn"

    required property var bar

    label: bar.tr("Send")
    iconName: "go-up"
    iconFallback: "arrow-up"
    scale: highlighted ? 1.08 : 1.0
    onClicked: bar.inputField.accepted()

    Behavior on scale {
        NumberAnimation {
            duration: 120
        }
    }

    background: Rectangle {
        radius: send.radius
        gradient: Gradient {
            GradientStop { position: 0.0; color: send.highlighted ? "#f09030" : "#e8782a" }
            GradientStop { position: 1.0; color: send.highlighted ? "#d05a28" : "#c44e20" }
        }
    }
}
