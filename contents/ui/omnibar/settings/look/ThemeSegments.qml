// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! The choice between dark and light, as two segments.
Row {
    id: segments

    required property var bar
    required property var theme

    readonly property bool light: bar.appearanceStore.lightChrome

    spacing: 4
    Accessible.role: Accessible.Grouping
    Accessible.name: bar.tr("Theme")

    Repeater {
        // Theme tokens by name. With their values the model would change with the theme, and the pressed segment would
        // be created again without the focus.
        model: [
            { "name": "darkSegment", "text": segments.bar.tr("Dark"), "light": false, "fill": "uiSegDarkOn", "words": "uiSegTextOnDark" },
            { "name": "lightSegment", "text": segments.bar.tr("Light"), "light": true, "fill": "uiSegLightOn", "words": "uiSegTextOnLight" }
        ]

        PlainButton {
            id: segment

            required property var modelData

            readonly property bool chosen: modelData.light === segments.light

            objectName: modelData.name
            implicitWidth: 84
            implicitHeight: 30
            label: modelData.text
            Accessible.role: Accessible.RadioButton
            Accessible.checkable: true
            Accessible.checked: chosen
            onClicked: segments.bar.appearanceStore.lightChrome = modelData.light

            background: Rectangle {
                radius: 6
                color: segment.chosen ? segments.theme[segment.modelData.fill] : segment.hovered ? segments.theme.uiWellFillHi : segments.theme.uiWellFill
                border.width: 1
                border.color: segment.chosen ? segments.theme.uiAccentBorder : segments.theme.uiWellBorder
            }
            contentItem: PlainText {
                text: segment.label
                color: segment.chosen ? segments.theme[segment.modelData.words] : segments.theme.uiTextSoft
                font.pointSize: 9
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                Accessible.ignored: true
            }

            FocusRing {
                control: segment
                radius: 8
                border.color: segments.theme.focusRing
            }
        }
    }
}
