// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! The end of the prompt bar: the usage ring and the buttons for settings, voice, sending and closing.
Row {
    id: buttons

    required property var bar

    spacing: 10

    Loader {
        anchors.verticalCenter: parent.verticalCenter
        active: buttons.bar.sessionUsageTotal > 0
        visible: active
        Accessible.ignored: true
        sourceComponent: UsageRing {
            bar: buttons.bar
        }
    }

    RoundButton {
        id: settingsBtn
        objectName: "settingsBtn"

        anchors.verticalCenter: parent.verticalCenter
        label: buttons.bar.tr("Settings")
        iconName: "settings-configure"
        fill: Qt.rgba(1, 1, 1, 0.06)
        hoverFill: Qt.rgba(1, 1, 1, 0.15)
        hoverDuration: 120
        Accessible.checkable: true
        Accessible.checked: buttons.bar.settingsPanelOpen
        onClicked: buttons.bar.toggleSettings()
    }

    MicButton {
        id: micBtn

        anchors.verticalCenter: parent.verticalCenter
        bar: buttons.bar
    }

    SpeakerButton {
        id: speakerBtn

        anchors.verticalCenter: parent.verticalCenter
        bar: buttons.bar
        visible: buttons.bar.voice ? buttons.bar.voice.ttsAvailable : false
    }

    SendButton {
        id: sendBtn

        anchors.verticalCenter: parent.verticalCenter
        bar: buttons.bar
        visible: buttons.bar.inputField.text.trim() !== ""
    }

    RoundButton {
        id: barCloseBtn
        objectName: "barCloseBtn"

        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: 32
        label: buttons.bar.tr("Close Tovi")
        glyph: "\u2715"
        fill: Qt.rgba(1, 1, 1, 0.06)
        hoverFill: Qt.rgba(0.95, 0.2, 0.2, 0.35)
        iconColor: highlighted ? "#ff6b6b" : Qt.rgba(1, 1, 1, 0.8)
        onClicked: buttons.bar.startClosing()
    }
}
