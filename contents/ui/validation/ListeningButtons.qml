// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../omnibar/settings/common"

//! The buttons of the microphone, in both modes. They stay enabled while an engine works, because a disabled button
//! loses the keyboard focus.
Flow {
    id: buttons

    required property var validation
    required property var theme

    spacing: 8

    SettingsButton {
        objectName: "listenBtn"

        theme: buttons.theme
        enabled: Boolean(buttons.validation.voice)
        fill: buttons.theme.uiAccentDim
        hoverFill: buttons.theme.uiAccentBorder
        label: buttons.validation.listening ? buttons.validation.tr("Stop") : buttons.validation.tr("Start listening")
        onClicked: {
            if (buttons.validation.listening)
                buttons.validation.stopListening();
            else
                buttons.validation.startListening();
        }
    }

    SettingsButton {
        objectName: "cancelBtn"

        theme: buttons.theme
        enabled: Boolean(buttons.validation.voice)
        label: buttons.validation.tr("Cancel")
        onClicked: buttons.validation.cancelListening()
    }

    SettingsButton {
        objectName: "reloadBtn"

        theme: buttons.theme
        enabled: Boolean(buttons.validation.voice)
        label: buttons.validation.tr("Reload model")
        onClicked: buttons.validation.loadModel()
    }
}
