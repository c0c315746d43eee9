// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.loomra.components.controls 1.0

import "../../../../components/logic/Translatable.js" as Translatable

//! The strip below the prompt bar while a transcript waits to be sent: countdown, "Rephrase", "Send" and "Cancel".
Rectangle {
    id: confirm
    objectName: "voiceConfirmBar"

    required property var bar

    readonly property bool shown: bar.voiceConfirmPending && !bar.compactMode
    //! Turns true after creation, so that the first appearance is animated too.
    property bool built: false

    height: shown && built ? 36 : 0
    visible: height > 0
    clip: true
    radius: 10
    color: Qt.rgba(0.15, 0.10, 0.22, 0.92)
    border.width: 1
    border.color: Qt.rgba(0.9, 0.5, 1.0, 0.25)
    Component.onCompleted: built = true
    Accessible.role: Accessible.Grouping
    Accessible.name: bar.tr("Voice prompt")

    Behavior on height {
        NumberAnimation {
            duration: 200
            easing.type: Easing.OutCubic
        }
    }

    ClickBarrier {}

    RowLayout {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 12
        // Not while the strip closes, because the state is that of the next confirmation then.
        visible: confirm.shown

        Arc {
            objectName: "countdownRing"

            readonly property real part: Math.min(1, confirm.bar.voiceConfirmCountdown / Math.max(1, confirm.bar.voiceConfirmTotal))

            implicitWidth: 22
            implicitHeight: 22
            visible: confirm.bar.voiceConfirmCountdown > 0
            radius: 8
            line: 2
            color: confirm.bar.toviMagenta
            track: Qt.rgba(1, 1, 1, 0.15)
            to: from + 2 * Math.PI * part
            Accessible.ignored: true
        }

        PlainText {
            objectName: "voiceConfirmLabel"

            Layout.fillWidth: true
            text: {
                if (confirm.bar.voiceRephrasing)
                    return confirm.bar.tr("Rephrasing…");
                if (confirm.bar.voiceConfirmCountdown > 0)
                    return Translatable.filled(confirm.bar.tr("Sending in {count}s"), { "count": confirm.bar.voiceConfirmCountdown });
                return confirm.bar.tr("Edited");
            }
            color: Qt.rgba(0.85, 0.7, 1.0, 0.9)
            font.pointSize: 9
        }

        VoiceConfirmButton {
            objectName: "voiceRephraseBtn"

            implicitWidth: contentItem.implicitWidth + 14
            fill: Qt.rgba(0.35, 0.65, 1.0, 0.16)
            hoverFill: Qt.rgba(0.35, 0.65, 1.0, 0.28)
            label: confirm.bar.voiceRephrasing ? "..." : confirm.bar.tr("Rephrase")
            Accessible.name: confirm.bar.tr("Rephrase")
            enabled: !confirm.bar.voiceRephrasing
            opacity: enabled ? 1 : 0.55
            onClicked: confirm.bar.voiceRephrase()
        }

        VoiceConfirmButton {
            objectName: "voiceSendBtn"

            implicitWidth: 48
            fill: confirm.bar.toviMagenta
            hoverFill: "#d916dd"
            label: confirm.bar.tr("Send")
            bold: true
            onClicked: confirm.bar.voiceConfirmSend()
        }

        VoiceConfirmButton {
            objectName: "voiceCancelBtn"

            implicitWidth: 54
            label: confirm.bar.tr("Cancel")
            onClicked: confirm.bar.voiceConfirmCancel()
        }
    }
}
