// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../common"
import "../logic/PlanText.js" as PlanText

//! The progress of a running plan, then its result for a moment.
Rectangle {
    id: progressBar
    objectName: "planProgressBar"

    required property var bar
    required property var theme

    readonly property bool done: !bar.planExecuting
    readonly property int index: bar.bridge ? bar.bridge.planStepIndex : -1
    readonly property int total: bar.bridge ? bar.bridge.planStepTotal : 0

    // Assistive technology reads the range from these names.
    readonly property real minimumValue: 0
    readonly property real maximumValue: 1
    readonly property real value: PlanText.progress(done, index, total)

    implicitHeight: 48
    height: implicitHeight
    radius: 8
    color: done ? Qt.rgba(0.2, 0.8, 0.4, 0.18) : theme.uiSuccessBarBg
    border.width: 1
    border.color: done ? Qt.rgba(0.2, 0.8, 0.4, 0.35) : theme.uiSuccessBarBorder
    Accessible.role: Accessible.ProgressBar
    Accessible.name: label.text

    // The animations are off while the bar is hidden, so that a new run doesn't begin with the end of the last one.
    Behavior on color {
        enabled: progressBar.visible
        ColorAnimation { duration: 300 }
    }
    Behavior on border.color {
        enabled: progressBar.visible
        ColorAnimation { duration: 300 }
    }

    ShortText {
        id: label
        objectName: "planProgressText"

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: 16
        y: track.visible ? Math.round((track.y - height) / 2) + 2 : Math.round((parent.height - height) / 2)
        text: PlanText.cut(whole, PlanText.lineLength)
        whole: PlanText.progressText({
            "done": progressBar.done,
            "label": progressBar.bar.planDoneLabel,
            "index": progressBar.index,
            "total": progressBar.total,
            "capability": progressBar.bar.bridge ? progressBar.bar.bridge.planStepCapability : "",
            "phase": progressBar.bar.bridge ? progressBar.bar.bridge.planStepPhase : ""
        }, progressBar.bar.tr)
        color: progressBar.theme.uiTextStrong
        font.pointSize: 10
        // The mark of the phase at the end stays in view.
        elide: Text.ElideMiddle
    }

    Rectangle {
        id: track
        objectName: "planProgressTrack"

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 8
        width: progressBar.width - 32
        height: 3
        radius: 1.5
        visible: progressBar.done || PlanText.hasStep(progressBar.index, progressBar.total)
        color: Qt.rgba(1, 1, 1, 0.15)

        Rectangle {
            objectName: "planProgressFill"

            anchors.left: parent.left
            width: track.width * progressBar.value
            height: parent.height
            radius: 1.5
            color: progressBar.theme.progressFill

            Behavior on width {
                enabled: progressBar.visible
                NumberAnimation {
                    duration: 250
                    easing.type: Easing.OutCubic
                }
            }
        }
    }
}
