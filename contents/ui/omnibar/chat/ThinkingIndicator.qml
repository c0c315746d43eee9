// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../components/logic/Native.js" as Native

//! The footer of the conversation while waiting for a reply: the current phase and a stop button.
Item {
    id: thinkingIndicator
    objectName: "thinkingIndicator"

    required property var bar
    required property var theme

    readonly property bool thinking: bar.bridgeStatus === "thinking"

    height: thinking ? 40 : 0
    visible: height > 0
    clip: true

    Behavior on height {
        NumberAnimation {
            duration: 180
            easing.type: Easing.OutCubic
        }
    }

    Loader {
        anchors.left: parent.left
        anchors.right: parent.right
        height: 40
        active: thinkingIndicator.visible
        Accessible.ignored: true
        sourceComponent: Item {
            id: body

            readonly property string phase: thinkingIndicator.bar.bridge ? thinkingIndicator.bar.bridge.activePhase : ""
            readonly property color dotColor: phase === "executing" ? "#4ade80" : phase === "creating" ? "#f59e0b" : "#8b5cf6"
            readonly property int step: thinkingIndicator.bar.bridge ? thinkingIndicator.bar.bridge.planStepIndex : -1
            readonly property int steps: thinkingIndicator.bar.bridge ? thinkingIndicator.bar.bridge.planStepTotal : 0

            Accessible.role: Accessible.Animation
            Accessible.name: label.text

            Item {
                id: pulse

                anchors.left: parent.left
                anchors.leftMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                width: 16
                height: 16

                Rectangle {
                    objectName: "halo"

                    anchors.centerIn: parent
                    width: 16
                    height: 16
                    radius: 8
                    color: body.dotColor
                    opacity: 0.22
                }

                Rectangle {
                    id: phaseDot
                    objectName: "phaseDot"

                    anchors.centerIn: parent
                    width: 9
                    height: 9
                    radius: 4.5
                    color: body.dotColor

                    SequentialAnimation on opacity {
                        loops: Animation.Infinite
                        NumberAnimation { from: 0.55; to: 1.0; duration: 650; easing.type: Easing.InOutSine }
                        NumberAnimation { from: 1.0; to: 0.55; duration: 650; easing.type: Easing.InOutSine }
                    }
                }
            }

            Row {
                anchors.left: pulse.right
                anchors.leftMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                spacing: 8

                PlainText {
                    id: label
                    objectName: "phaseLabel"

                    anchors.verticalCenter: parent.verticalCenter
                    width: Math.min(implicitWidth, body.width - 220)
                    text: thinkingIndicator.bar.activePhaseLabel || thinkingIndicator.bar.tr("Thinking…")
                    color: thinkingIndicator.theme.uiTextMed
                    font.pointSize: 10
                    font.weight: Font.Medium
                    maximumLineCount: 1
                }

                Rectangle {
                    objectName: "stepBadge"

                    anchors.verticalCenter: parent.verticalCenter
                    visible: body.phase === "executing" && body.steps > 1
                    width: badge.implicitWidth + 12
                    height: 18
                    radius: 9
                    color: thinkingIndicator.theme.uiWellFillHi

                    PlainText {
                        id: badge

                        anchors.centerIn: parent
                        text: (body.step + 1) + "/" + body.steps
                        color: thinkingIndicator.theme.uiTextMed
                        font.pixelSize: 11
                    }
                }

                Row {
                    objectName: "waitDots"

                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 4

                    Repeater {
                        model: 3

                        Rectangle {
                            id: waitDot

                            required property int index

                            width: 5
                            height: 5
                            radius: 2.5
                            color: thinkingIndicator.theme.uiTextSoft
                            opacity: 0.2

                            SequentialAnimation {
                                running: true

                                PauseAnimation { duration: waitDot.index * 140 }
                                SequentialAnimation {
                                    loops: Animation.Infinite
                                    NumberAnimation { target: waitDot; property: "opacity"; from: 0.2; to: 1.0; duration: 380 }
                                    NumberAnimation { target: waitDot; property: "opacity"; from: 1.0; to: 0.2; duration: 380 }
                                }
                            }
                        }
                    }
                }
            }

            PlainButton {
                id: stop
                objectName: "stopBtn"

                anchors.right: parent.right
                anchors.rightMargin: 16
                anchors.verticalCenter: parent.verticalCenter
                implicitWidth: contentItem.implicitWidth + 24
                implicitHeight: 26
                label: thinkingIndicator.bar.tr("Stop")
                // Intentional: cancels only the chat request, not a running plan. Escape stops both.
                onClicked: Native.call(thinkingIndicator.bar.bridge, "cancelRequest")

                background: Rectangle {
                    radius: 8
                    color: Qt.rgba(0.9, 0.22, 0.21, stop.hovered ? 0.30 : 0.14)
                }
                contentItem: PlainText {
                    text: stop.label
                    color: "#e53935"
                    font.pixelSize: 12
                    font.weight: Font.DemiBold
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    Accessible.ignored: true
                }

                FocusRing {
                    control: stop
                    radius: 10
                    border.color: thinkingIndicator.theme.focusRing
                }
            }
        }
    }
}
