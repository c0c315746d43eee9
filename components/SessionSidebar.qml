// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "logic/Native.js" as Native
import "mainwindow/controllers"
import "mainwindow/logic/SessionNames.js" as SessionNames
import "mainwindow/sidebar"

//! The side of the main window: the sessions of the bridge and the files of the project.
FocusScope {
    id: sidebar
    objectName: "sessionSidebar"

    //! A ProjectModel with the files.
    property var projectModel: null

    readonly property var sdk: typeof loomraSDK !== "undefined" ? loomraSDK : null

    property alias sessionsData: sessions.sessionsData
    property alias selectedSessionId: sessions.selectedSessionId
    property alias loadingMessages: sessions.loadingMessages
    property alias lastLoadedSessionId: sessions.lastLoadedSessionId

    //! The user chose a file or directory.
    signal fileSelected(string path)

    function generateSessionName(session) { return SessionNames.generated(session, Translation.tr); }
    //! A function, because a binding may be older than the signal whose handler asks.
    function isReady() { return Boolean(sdk && sdk.ready); }

    Accessible.role: Accessible.Pane
    Accessible.name: Translation.tr("Sidebar")

    SessionListController {
        id: sessions
        sidebar: sidebar
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Kirigami.Units.smallSpacing
        spacing: Kirigami.Units.smallSpacing

        RowLayout {
            PlainText {
                Layout.fillWidth: true
                text: Translation.tr("Sessions")
                color: Kirigami.Theme.textColor
                font.bold: true
                Accessible.role: Accessible.Heading
            }
            QQC2.Button {
                objectName: "newSessionButton"
                text: Translation.tr("New")
                enabled: Boolean(sidebar.sdk && sidebar.sdk.ready)
                Accessible.name: Translation.tr("New session")
                onClicked: sessions.create()
            }
        }

        SessionList {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: 3
            Layout.minimumHeight: 60
            sessions: sessions
        }

        RowLayout {
            PlainText {
                Layout.fillWidth: true
                text: Translation.tr("Files")
                color: Kirigami.Theme.textColor
                font.bold: true
                Accessible.role: Accessible.Heading
            }
            QQC2.Button {
                objectName: "refreshFilesButton"
                icon.name: "view-refresh"
                icon.color: Kirigami.Theme.textColor
                display: QQC2.AbstractButton.IconOnly
                implicitWidth: implicitHeight
                Accessible.name: Translation.tr("Refresh files")
                onClicked: Native.call(sidebar.projectModel, "refresh")
            }
        }

        QQC2.TextField {
            id: pathField
            objectName: "projectPathField"
            Layout.fillWidth: true
            placeholderText: Translation.tr("Enter project path...")
            placeholderTextColor: Qt.rgba(color.r, color.g, color.b, 0.7)
            text: sidebar.projectModel ? sidebar.projectModel.rootPath : ""
            selectByMouse: true
            Accessible.name: Translation.tr("Project path")
            onAccepted: {
                if (sidebar.projectModel)
                    sidebar.projectModel.rootPath = text;
            }

            // Typing ends the binding.
            Connections {
                target: sidebar.projectModel
                function onRootPathChanged() { pathField.text = sidebar.projectModel.rootPath; }
            }
        }

        FileList {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: 2
            Layout.minimumHeight: 60
            projectModel: sidebar.projectModel
            onChosen: sidebar.fileSelected(path)
        }
    }
}
