// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../common"

//! The power profiles of the machine. A click asks the assistant to switch to another one.
Flow {
    id: profiles
    objectName: "powerProfiles"

    required property var bar
    required property var theme

    spacing: 8
    visible: bar.powerProfileAvailable.length > 0
    Accessible.role: Accessible.Grouping
    Accessible.name: bar.tr("Power profile")

    PlainText {
        height: 30
        verticalAlignment: Text.AlignVCenter
        text: profiles.bar.tr("Power:")
        color: profiles.theme.uiTextSoft
        font.pointSize: 9
    }

    Repeater {
        model: profiles.bar.powerProfileAvailable

        ElidedButton {
            objectName: "powerChip"

            required property string modelData
            readonly property bool chosen: modelData === profiles.bar.powerProfileActive

            width: Math.min(implicitWidth, profiles.width)
            theme: profiles.theme
            label: modelData
            fill: chosen ? profiles.theme.uiAccentDim : profiles.theme.uiWellFill
            hoverFill: chosen ? fill : profiles.theme.uiWellFillHi
            borderColor: chosen ? profiles.theme.uiAccentBorder : profiles.theme.uiWellBorder
            Accessible.role: Accessible.RadioButton
            Accessible.checkable: true
            Accessible.checked: chosen
            onClicked: profiles.bar.choosePowerProfile(modelData)
        }
    }
}
