// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The frame, fill and shadow of the chat panel and the settings sheet.
Item {
    id: panel

    required property var theme
    property real radius: 14
    //! Duration of a theme switch in ms.
    readonly property int flipDuration: 350

    PanelShadow {
        anchors.fill: parent
        radius: panel.radius
        shadowColor: panel.theme.panelShadow
        shadowRadius: panel.theme.panelShadowRadius
    }

    Rectangle {
        objectName: "frame"

        anchors.fill: parent
        radius: panel.radius
        gradient: Gradient {
            orientation: Gradient.Horizontal

            GradientStop {
                position: 0.0
                color: panel.theme.panelFrameStart
                Behavior on color { ColorAnimation { duration: panel.flipDuration } }
            }
            GradientStop {
                position: 0.5
                color: panel.theme.panelFrameMiddle
                Behavior on color { ColorAnimation { duration: panel.flipDuration } }
            }
            GradientStop {
                position: 1.0
                color: panel.theme.panelFrameEnd
                Behavior on color { ColorAnimation { duration: panel.flipDuration } }
            }
        }
    }

    Rectangle {
        objectName: "fill"

        anchors.fill: parent
        anchors.margins: 1
        radius: panel.radius - 1
        gradient: Gradient {
            GradientStop {
                position: 0.0
                color: panel.theme.panelFillTop
                Behavior on color { ColorAnimation { duration: panel.flipDuration } }
            }
            GradientStop {
                position: 1.0
                color: panel.theme.panelFillBottom
                Behavior on color { ColorAnimation { duration: panel.flipDuration } }
            }
        }
    }
}
