// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra 1.0
import org.kde.loomra.components.controls 1.0

import "logic/Native.js" as Native
import "common"

//! The files of a project, one folder at a time, and the projects that were opened last.
ColumnLayout {
    id: browser

    property QtObject config: typeof configManager !== "undefined" ? configManager : null
    property QtObject files: typeof fileService !== "undefined" ? fileService : null
    //! The folder that is shown.
    property alias rootPath: entries.rootPath
    readonly property var recentProjects: config && config.recentProjects ? config.recentProjects : []

    signal fileSelected(string path)

    //! Shows a folder and makes it the current project.
    function openProject(path) {
        entries.rootPath = path;
        if (config)
            config.currentProject = path;
    }

    function activate(path, isDirectory) {
        if (isDirectory)
            entries.rootPath = path;
        else
            fileSelected(path);
    }

    function reasonForNoFiles() {
        if (rootPath === "")
            return Translation.tr("No project open");
        return Native.call(files, "isDirectory", rootPath) === false ? Translation.tr("There is no folder at this path.")
                                                                     : Translation.tr("This folder is empty.");
    }

    //! A file name in one line.
    function oneLine(name) {
        return name.replace(/[\r\n\u2028\u2029]/g, " ");
    }

    spacing: Kirigami.Units.smallSpacing

    ProjectModel {
        id: entries
    }

    RowLayout {
        Layout.fillWidth: true

        Kirigami.Heading {
            objectName: "filesHeading"

            Layout.fillWidth: true
            level: 2
            text: Translation.tr("Files")
            color: Kirigami.Theme.textColor // in every style
            textFormat: Text.PlainText
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        TextButton {
            id: refreshButton
            objectName: "refreshButton"

            Layout.preferredWidth: implicitHeight
            label: Translation.tr("Refresh")
            display: QQC2.AbstractButton.IconOnly
            icon.name: "view-refresh"
            onClicked: entries.refresh()

            HoverTip {
                control: refreshButton
                text: refreshButton.label
            }
        }
    }

    QQC2.TextField {
        id: pathField
        objectName: "pathField"

        Layout.fillWidth: true
        text: entries.rootPath
        placeholderText: Translation.tr("Enter project path...")
        placeholderTextColor: Qt.rgba(color.r, color.g, color.b, 0.7)
        selectByMouse: true
        Accessible.name: Translation.tr("Project path")
        onAccepted: {
            browser.openProject(text);
            text = Qt.binding(() => entries.rootPath); // typing has removed it
        }
    }

    RowList {
        id: fileList
        objectName: "fileList"

        Layout.fillWidth: true
        Layout.fillHeight: true
        name: Translation.tr("Files")
        model: entries
        emptyText: count === 0 ? browser.reasonForNoFiles() : ""

        // A new folder is shown from its start, and keeps the focus.
        Connections {
            target: entries

            function onRootPathChanged() {
                fileList.currentIndex = fileList.count > 0 ? 0 : -1;
                fileList.positionViewAtBeginning();
            }
        }

        delegate: FileRow {
            required property var model

            label: browser.oneLine(model.name)
            iconName: model.icon
            onClicked: {
                fileList.currentIndex = index;
                browser.activate(model.path, model.isDirectory);
            }
        }
    }

    Kirigami.Heading {
        Layout.fillWidth: true
        level: 3
        text: Translation.tr("Recent Projects")
        color: Kirigami.Theme.textColor // in every style
        textFormat: Text.PlainText
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    RowList {
        id: recentList
        objectName: "recentList"

        Layout.fillWidth: true
        Layout.preferredHeight: 150
        name: Translation.tr("Recent Projects")
        model: browser.recentProjects
        emptyText: Translation.tr("No recent projects")

        delegate: FileRow {
            required property string modelData

            label: browser.oneLine(modelData)
            iconName: "folder"
            elide: Text.ElideMiddle
            onClicked: {
                recentList.currentIndex = index;
                browser.openProject(modelData);
            }
        }
    }
}
