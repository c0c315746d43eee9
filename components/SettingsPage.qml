// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "logic/Translatable.js" as Translatable
import "common"
import "config"
import "config/controllers"

//! The settings of the agent tool: a tab for each section of its configuration file, and one for its use of tokens.
Kirigami.Page {
    id: page

    readonly property alias configData: controller.configData
    property alias hasUnsavedChanges: controller.hasUnsavedChanges
    readonly property alias controller: controller

    readonly property bool isInActiveWindow: Window.active
    readonly property var tabs: [
        { title: Translatable.mark("Agents"), icon: "user-identity", file: "AgentsConfigPage.qml" },
        { title: Translatable.mark("Tools"), icon: "configure", file: "ToolsConfigPage.qml" },
        { title: Translatable.mark("Permissions"), icon: "security-high", file: "PermissionsConfigPage.qml" },
        { title: Translatable.mark("MCP"), icon: "plugins", file: "McpConfigPage.qml" },
        { title: Translatable.mark("Providers"), icon: "network-connect", file: "ProvidersConfigPage.qml" },
        { title: Translatable.mark("Usage"), icon: "view-statistics", file: "UsageConfigPage.qml" }
    ]
    readonly property var problems: ({
        invalid: Translation.tr("The configuration file can't be read as a JSON object. The settings are empty, and saving them replaces the file."),
        changed: Translation.tr("Another program has changed the configuration file. \"Reload\" shows its changes; \"Save Configuration\" replaces them.")
    })

    //! Leaves the page, if the window has others.
    function back() {
        const window = typeof applicationWindow === "function" ? applicationWindow() : null;
        if (window && window.pageStack)
            window.pageStack.pop();
    }

    function notify(text, duration) {
        const window = typeof applicationWindow === "function" ? applicationWindow() : null;
        if (window && typeof window.showPassiveNotification === "function")
            window.showPassiveNotification(text, duration);
    }

    palette: themePalette.palette
    // The user may come from an editor.
    onIsInActiveWindowChanged: if (isInActiveWindow) controller.checkFile()
    title: Translation.tr("Loomra Settings")
    padding: 0
    Component.onCompleted: controller.reload()

    ThemePalette {
        id: themePalette
    }

    ConfigController {
        id: controller

        onNotified: page.notify(text, duration)
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Kirigami.Units.smallSpacing

        RowLayout {
            Layout.margins: Kirigami.Units.smallSpacing
            spacing: Kirigami.Units.smallSpacing

            ConfigButton {
                objectName: "settingsBack"

                text: Translation.tr("Back")
                icon.name: LayoutMirroring.enabled ? "go-next" : "go-previous"
                onClicked: page.back()
            }
            ConfigText {
                id: heading

                text: Translation.tr("Loomra Configuration")
                font.pointSize: Kirigami.Theme.defaultFont.pointSize * 1.3
                wrapMode: Text.NoWrap
                elide: Text.ElideRight
                Accessible.role: Accessible.Heading
            }
            ConfigButton {
                objectName: "settingsReload"

                text: Translation.tr("Reload")
                icon.name: "view-refresh"
                onClicked: controller.reload()
            }
            ConfigButton {
                objectName: "settingsSave"

                text: Translation.tr("Save Configuration")
                icon.name: "document-save"
                enabled: controller.hasUnsavedChanges
                onClicked: controller.save()
            }
        }
        ConfigMessage {
            objectName: "settingsPath"

            Layout.leftMargin: Kirigami.Units.smallSpacing
            Layout.rightMargin: Kirigami.Units.smallSpacing
            text: Translatable.filled(Translation.tr("Configuration file: {path}"), { path: controller.path })
        }
        ConfigMessage {
            objectName: "settingsProblem"

            Layout.leftMargin: Kirigami.Units.smallSpacing
            Layout.rightMargin: Kirigami.Units.smallSpacing
            visible: controller.problem !== ""
            isWarning: true
            text: visible ? page.problems[controller.problem] : ""
        }
        QQC2.TabBar {
            id: tabBar
            objectName: "settingsTabs"

            Layout.fillWidth: true
            Accessible.name: heading.text

            Repeater {
                model: page.tabs

                QQC2.TabButton {
                    id: tab

                    required property var modelData

                    text: Translatable.translated(modelData.title, Translation.tr)
                    icon.name: modelData.icon
                    icon.color: Kirigami.Theme.textColor
                    Accessible.name: text

                    // Not every style shows which tab has the focus.
                    FocusRing {
                        control: tab
                        anchors.margins: 0
                        radius: 2
                        border.color: Kirigami.Theme.focusColor
                    }
                }
            }
        }
        StackLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            currentIndex: tabBar.currentIndex

            Repeater {
                model: page.tabs

                LateLoader {
                    id: loader

                    required property var modelData
                    required property int index

                    file: Qt.resolvedUrl(modelData.file)
                    wanted: tabBar.currentIndex === index
                    properties: ({ controller: controller })

                    Connections {
                        target: loader.item
                        function onConfigChanged() { controller.hasUnsavedChanges = true; }
                    }
                }
            }
        }
    }
}
