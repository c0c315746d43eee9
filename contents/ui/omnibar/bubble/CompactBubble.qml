// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../bar"

//! The window's compact form: a round button in the corner of the screen.
PlainButton {
    id: bubble
    objectName: "compactBubble"

    required property var bar
    required property var theme

    label: bar.tr("Open Tovi")
    focus: true
    focusPolicy: Qt.StrongFocus
    opacity: bar.compactMode ? 1 : 0
    scale: bar.compactMode ? 1 : 0.8
    visible: opacity > 0
    enabled: bar.compactMode
    Keys.onEscapePressed: bar.handleEscapeKey()
    onClicked: bar.expandFromBubble()

    Behavior on opacity {
        NumberAnimation {
            duration: 350
            easing.type: Easing.OutCubic
        }
    }

    Behavior on scale {
        NumberAnimation {
            duration: 350
            easing.type: Easing.OutBack
        }
    }

    background: Rectangle {
        radius: bubble.bar.bubbleSize / 2
        color: bubble.theme.uiPanelBase

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            gradient: Gradient {
                GradientStop { position: 0.0; color: bubble.theme.uiCompactGrad0 }
                GradientStop { position: 1.0; color: bubble.theme.uiCompactGrad1 }
            }
            border.width: 1.5
            border.color: bubble.visualFocus ? bubble.theme.focusRing : bubble.theme.uiPanelBorder
        }
    }

    contentItem: Item {
        FallbackIcon {
            anchors.centerIn: parent
            name: "dialog-messages"
            fallback: "chat"
            size: 28
            color: bubble.theme.uiIconMuted
        }
    }

    Loader {
        anchors.fill: parent
        active: bubble.bar.compactMode && bubble.bar.thinking
        Accessible.ignored: true
        sourceComponent: ThinkingGlow {
            bar: bubble.bar
            radius: bubble.bar.bubbleSize / 2
        }
    }

    // Intentional: always hidden, because unread messages are not counted yet.
    Rectangle {
        objectName: "unreadBadge"
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.margins: 4
        width: 8
        height: 8
        radius: 4
        color: "#FF3D3D"
        visible: false
    }

    HoverTip {
        control: bubble
        text: bubble.label
    }
}
