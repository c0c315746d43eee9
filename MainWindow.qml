// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra 1.0
import org.kde.loomra.components.controls 1.0

import "components/common"
import "components/logic/Native.js" as Native

//! The main window: sessions and files at the side, chat and code editor beside them, and the configuration pages.
Kirigami.ApplicationWindow {
    id: mainWindow
    objectName: "mainWindow"

    readonly property var sdk: typeof loomraSDK !== "undefined" ? loomraSDK : null
    readonly property var config: typeof configManager !== "undefined" ? configManager : null
    readonly property var files: typeof fileService !== "undefined" ? fileService : null

    //! The messages of the chat.
    property ChatModel chatModel: ChatModel {}
    //! The files of the project.
    property ProjectModel projectModel: ProjectModel {}
    //! The file or directory that was chosen last.
    property string currentFilePath: ""
    //! The code editor; null for a moment after the start.
    readonly property var codeEditor: editorLoader.item
    //! The user has agreed to lose what was not saved.
    property bool isClosing: false
    //! What the first frame doesn't show is built after it.
    property bool firstFrameShown: false

    function openSettings() {
        if (pageStack.depth === 1)
            pageStack.push(Qt.resolvedUrl("components/SettingsPage.qml"), {
                "enabled": Qt.binding(() => pageStack.currentIndex > 0)
            });
    }

    function openProjectSettings() { openSheet(projectSettings); }
    function openAbout() { openSheet(about); }

    function openSheet(loader) {
        loader.wanted = true;
        loader.item.open();
    }

    //! Shows a file in the editor, or a directory in the sidebar.
    function openPath(path) {
        currentFilePath = path;
        if (Native.call(files, "isDirectory", path)) {
            projectModel.rootPath = path;
            return;
        }
        tabBar.currentIndex = 1;
        // Asks first if there are unsaved changes.
        Native.call(codeEditor, "openFile", path);
    }

    //! Asks about unsaved changes before the window closes.
    function confirmClosing(event) {
        if (isClosing || !codeEditor || !codeEditor.modified)
            return;
        event.accepted = false;
        tabBar.currentIndex = 1;
        codeEditor.afterQuestion(() => {
            isClosing = true;
            mainWindow.close();
        });
    }

    title: "Loomra KDE"
    width: Kirigami.Units.gridUnit * 60
    height: Kirigami.Units.gridUnit * 40
    minimumWidth: Kirigami.Units.gridUnit * 40
    minimumHeight: Kirigami.Units.gridUnit * 30
    palette: themePalette.palette
    pageStack.initialPage: mainPage
    // One page at a time.
    pageStack.columnView.columnResizeMode: Kirigami.ColumnView.SingleColumn
    onFrameSwapped: firstFrameShown = true
    onClosing: confirmClosing(close)
    // Does nothing if the program has already done it.
    Component.onCompleted: {
        Native.call(sdk, "initialize");
        chatView.forceActiveFocus();
    }

    Connections {
        target: mainWindow.sdk

        // Replies are handled by ChatView.
        function onChatStreamChunk(chunk) {
            mainWindow.chatModel.appendToLastMessage(chunk);
        }
        // Intentional: the editor inserts generated code by itself too, so it arrives twice.
        function onCodeGenerated(code) {
            Native.call(mainWindow.codeEditor, "insertCode", code);
        }
        function onError(error) {
            console.log("[MainWindow] " + error);
        }
    }

    globalDrawer: Kirigami.GlobalDrawer {
        title: "Loomra KDE"
        titleIcon: "loomra-kde"
        // The drawer shows its title only on phones.
        topContent: [
            Kirigami.Heading {
                Layout.fillWidth: true
                Layout.margins: Kirigami.Units.smallSpacing
                text: "Loomra KDE"
                textFormat: Text.PlainText
                level: 2
            }
        ]
        actions: [
            Kirigami.Action {
                text: Translation.tr("Settings")
                icon.name: "settings-configure"
                onTriggered: mainWindow.openSettings()
            },
            Kirigami.Action {
                text: Translation.tr("Project Settings")
                icon.name: "project-development"
                onTriggered: mainWindow.openProjectSettings()
            },
            Kirigami.Action {
                text: Translation.tr("About")
                icon.name: "help-about"
                onTriggered: mainWindow.openAbout()
            }
        ]
    }

    ThemePalette {
        id: themePalette
    }

    Kirigami.Page {
        id: mainPage
        objectName: "mainPage"

        title: "Loomra KDE"
        padding: 0
        // The page beside it in the stack is out of sight, but Tab would reach its controls.
        enabled: mainWindow.pageStack.currentIndex <= 0

        RowLayout {
            anchors.fill: parent
            spacing: 0

            LateLoader {
                id: sidebarLoader
                Layout.fillHeight: true
                Layout.preferredWidth: 280
                Layout.minimumWidth: 250
                Layout.maximumWidth: 400
                file: Qt.resolvedUrl("components/SessionSidebar.qml")
                properties: ({ "projectModel": mainWindow.projectModel })
                wanted: mainWindow.firstFrameShown

                Connections {
                    target: sidebarLoader.item
                    function onFileSelected(path) { mainWindow.openPath(path); }
                }
            }
            Kirigami.Separator {
                Layout.fillHeight: true
            }
            ColumnLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                spacing: 0

                QQC2.TabBar {
                    id: tabBar
                    objectName: "tabBar"
                    Accessible.name: mainWindow.title
                    Layout.fillWidth: true

                    PageTab {
                        text: Translation.tr("Chat")
                    }
                    PageTab {
                        text: Translation.tr("Code Editor")
                    }
                }
                StackLayout {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    currentIndex: tabBar.currentIndex

                    ChatView {
                        id: chatView
                        focus: true
                        chatModel: mainWindow.chatModel
                    }
                    LateLoader {
                        id: editorLoader
                        file: Qt.resolvedUrl("components/CodeEditor.qml")
                        wanted: mainWindow.firstFrameShown
                    }
                }
            }
        }
    }

    LateLoader {
        id: projectSettings
        parent: mainWindow.overlay
        anchors.fill: parent
        file: Qt.resolvedUrl("components/mainwindow/ProjectSettingsSheet.qml")
        properties: ({ "config": () => mainWindow.config })
    }

    LateLoader {
        id: about
        parent: mainWindow.overlay
        anchors.fill: parent
        file: Qt.resolvedUrl("components/mainwindow/AboutSheet.qml")
    }

    // Not every style shows which tab has the focus.
    component PageTab: QQC2.TabButton {
        id: tab

        Accessible.name: text // Qt sets it only if a screen reader runs by then

        FocusRing {
            control: tab
            anchors.margins: 0
            radius: 2
            border.color: Kirigami.Theme.focusColor
        }
    }
}
