// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra 1.0
import org.kde.loomra.components.controls 1.0

import "common"
import "settings"

//! The settings sheet. Each row of "tabs" is a tab.
FloatingPanel {
    id: panel
    objectName: "settingsPanel"

    required property var bar
    required property Item barCardItem
    //! The chat panel, which is hidden while the sheet is open. Null before it is created.
    property Item chatPanelItem: null

    readonly property list<SettingsTab> tabs: [
        SettingsTab { title: panel.bar.tr("Look"); file: Qt.resolvedUrl("settings/LookTab.qml") },
        SettingsTab { title: panel.bar.tr("Models"); file: Qt.resolvedUrl("settings/ModelsTab.qml") },
        SettingsTab {
            title: panel.bar.tr("Assistant")
            file: Qt.resolvedUrl("settings/AssistantTab.qml")
            onEntered: panel.bar.refreshPowerProfile()
        },
        SettingsTab {
            title: panel.bar.tr("Sessions")
            file: Qt.resolvedUrl("settings/SessionsTab.qml")
            onEntered: panel.bar.refreshSessionsList()
        },
        SettingsTab { title: panel.bar.tr("Voice"); file: Qt.resolvedUrl("settings/VoiceTab.qml") },
        SettingsTab {
            title: panel.bar.dashNeedsAttention ? panel.bar.tr("System ●") : panel.bar.tr("System")
            file: Qt.resolvedUrl("settings/SystemTab.qml")
            onEntered: panel.bar.enterDashboard()
            onLeft: panel.bar.leaveDashboard()
        }
    ]
    readonly property int margin: 12
    readonly property real contentLimit: Math.round(bar.screenHeight * 0.78)

    width: Math.min(Math.max(bar.barWidth - 16, 560), bar.screenWidth - 32)
    height: Math.min(content.implicitHeight, contentLimit) + 2 * margin
    shown: bar.settingsPanelOpen
    entranceDuration: 250 * Motion.durationFactor
    Accessible.role: Accessible.Dialog
    Accessible.name: heading.text

    ScrollPane {
        objectName: "settingsScrollPane"

        anchors.fill: parent
        anchors.margins: panel.margin
        anchors.rightMargin: 2
        contentHeight: content.implicitHeight
        thumbColor: panel.theme.uiScrollThumb
        scrollBarName: panel.bar.tr("Scroll settings")

        Column {
            id: content

            anchors.left: parent.left
            // The scroll bar is in the margin, where it covers no control.
            width: panel.width - 2 * panel.margin
            spacing: 12

            PlainText {
                id: heading

                anchors.left: parent.left
                text: panel.bar.tr("Settings")
                color: panel.theme.uiTextStrong
                font.pointSize: 12
                font.bold: true
                Accessible.role: Accessible.Heading
            }

            SettingsTabs {
                width: parent.width
                bar: panel.bar
                theme: panel.theme
                tabs: panel.tabs
                open: panel.shown
                name: heading.text
            }
        }
    }
}
