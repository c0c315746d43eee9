// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../common"

//! Checks for workspace suggestions, at once and at intervals.
Column {
    id: reminders

    required property var bar
    required property var theme

    readonly property var sdk: bar.sdk

    width: parent.width
    spacing: 8

    Flow {
        width: parent.width
        spacing: 8

        SettingsButton {
            objectName: "checkSuggestionBtn"

            theme: reminders.theme
            label: reminders.bar.tr("Check workspace suggestion (notify)")
            onClicked: reminders.bar.checkWorkspaceSuggestion()
        }

        SettingsButton {
            objectName: "resetDismissedBtn"

            theme: reminders.theme
            label: reminders.bar.tr("Reset dismissed prompts")
            onClicked: reminders.bar.resetDismissedSuggestions()
        }
    }

    Item {
        width: parent.width
        height: minutes.height

        StateSwitch {
            id: reminderSwitch
            objectName: "reminderSwitch"

            anchors.left: parent.left
            anchors.right: minutes.left
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            theme: reminders.theme
            label: reminders.bar.tr("Periodic reminder")
            on: Boolean(reminders.sdk && reminders.sdk.workspaceSuggestionReminderEnabled)
            onSwitched: reminders.sdk.workspaceSuggestionReminderEnabled = on
        }

        SettingsSpinBox {
            id: minutes
            objectName: "reminderMinutes"

            readonly property int fallback: 5

            anchors.right: unit.left
            anchors.rightMargin: 8
            theme: reminders.theme
            enabled: reminderSwitch.on
            from: 1
            to: 1440
            value: (reminders.sdk && reminders.sdk.workspaceSuggestionReminderMinutes) || fallback
            Accessible.name: reminders.bar.tr("Minutes between reminders")
            onValueModified: reminders.sdk.workspaceSuggestionReminderMinutes = value
        }

        PlainText {
            id: unit

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            // i18n: minutes, after a number
            text: reminders.bar.tr("min")
            color: reminders.theme.uiTextMed
            font.pointSize: 10
        }
    }

    SettingsStatus {
        objectName: "suggestionStatus"

        theme: reminders.theme
        message: reminders.bar.wiSuggestionNotifyStatus
    }
}
