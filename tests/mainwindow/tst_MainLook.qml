// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.kirigami 2.20 as Kirigami

import "qrc:/org/kde/loomra"
import "../support/qml"
import "controllers"

//! What the main window draws: sidebar, chat, sheets. Colours are those of the desktop.
LookCase {
    id: test
    name: "MainLook"

    property var window: null

    // The window finds them by these names, as it finds the native objects in the program.
    property list<QtObject> natives: [
        FakeMainSdk { id: loomraSDK },
        QtObject {
            id: configManager

            property string apiKey: ""
            property string currentProject: ""

            function getAgents() { return ({}); }
            function save() {}
        }
    ]

    property Component windows: Component {
        MainWindow {}
    }

    readonly property int small: Kirigami.Units.smallSpacing
    readonly property int grid: Kirigami.Units.gridUnit

    function initTestCase() {
        window = windows.createObject(null);
        subject = window;
        pointerRest = window.contentItem;
        tryCompare(window, "firstFrameShown", true);
        loomraSDK.modelsListed([{ "id": "m1", "name": "One" }, { "id": "m2", "name": "Two" }]);
        loomraSDK.agentsListed([{ "id": "build", "name": "Build" }]);
        loomraSDK.currentSessionId = "s1";
        loomraSDK.sessionsListed([{ "id": "s1", "title": "One" }, { "id": "s2", "title": "Two" }]);
        part("sessionRow[1]");
    }

    function cleanupTestCase() {
        window.destroy();
    }

    function init() {
        window.chatModel.clear();
        movePointerAway();
    }

    //! Its colours are those of its own colour set.
    function faint(item, opacity) {
        const text = item.Kirigami.Theme.textColor;
        return Qt.rgba(text.r, text.g, text.b, opacity);
    }

    function test_window() {
        look(window, {
            "": {
                "title": "Loomra KDE", "width": 60 * grid, "height": 40 * grid, "minimumWidth": 40 * grid, "minimumHeight": 30 * grid
            },
            "mainPage": { "padding": 0 },
            "sidebarLoader": { "Layout.preferredWidth": 280, "Layout.minimumWidth": 250, "Layout.maximumWidth": 400, "width": 280 },
            "tabBar/FocusRing": { "anchors.margins": 0, "radius": 2 }
        });
        compare([part("sidebarLoader").parent.spacing, part("tabBar").parent.spacing], [0, 0]);
        compare(window.globalDrawer.title, "Loomra KDE");
        compare(window.globalDrawer.titleIcon, "loomra-kde");
        compare(Array.from(window.globalDrawer.actions).map(action => [action.text, action.icon.name]),
                [["Settings", "settings-configure"], ["Project Settings", "project-development"], ["About", "help-about"]]);
    }

    function test_chat() {
        look("chatView", {
            "ColumnLayout[0]": { "anchors.margins": small, "spacing": small },
            "modelButton": {
                "Layout.fillWidth": true, "Layout.minimumWidth": 150, "Layout.preferredWidth": 200, "Layout.maximumWidth": 200, "width": 200, "menuWidth": 350,
                "opacity": 1
            },
            "agentButton": { "Layout.minimumWidth": 150, "Layout.preferredWidth": 200, "Layout.maximumWidth": 300 },
            "choiceCaption": {
                "leftPadding": small, "horizontalAlignment": Text.AlignLeft, "verticalAlignment": Text.AlignVCenter, "opacity": 1
            },
            "arrow": { "name": "arrow-down", "size": 16 },
            "messageList": { "clip": true, "spacing": small, "cacheBuffer": 0, "displayMarginBeginning": 0, "displayMarginEnd": 0 },
            "layout": { "spacing": small },
            "chatInput": { "wrapMode": TextEdit.Wrap, "textFormat": TextEdit.PlainText, "placeholderText": "Type your message..." },
            "chatInput.background": { "radius": 3 },
            "sendButton": { "Layout.preferredHeight": 40, "height": 40, "opacity": 0.5 }
        });
        const agents = part("agentButton");
        compare(agents.menuWidth, Math.max(300, agents.width + 50));
        compare(part("choiceCaption").rightPadding, part("arrow").width);
        const input = part("chatInput");
        look(input, { "": { "placeholderTextColor": Qt.rgba(input.color.r, input.color.g, input.color.b, 0.7) } });
        input.forceActiveFocus();
        look(input, { ".background": { "border.width": 2, "border.color": input.Kirigami.Theme.focusColor } });
        part("modelButton").forceActiveFocus();
        look(input, { ".background": { "border.width": 1, "border.color": faint(input.background, 0.3) } });
        // Between 40 and 150 high.
        look("ScrollView", { "": { "height": 40 } });
        input.text = "line\n".repeat(30);
        look("ScrollView", { "": { "height": 150 } });
        input.text = "";
        look("ScrollView", { "": { "height": 40 } });
    }

    function test_messages() {
        window.chatModel.addUserMessage("hello");
        window.chatModel.addAssistantMessage("hello", "Build");
        part("chatMessage[1]");
        look("messageList", {
            "chatMessage": { "implicitHeight": part("chatMessage/column").implicitHeight + 2 * small },
            "chatMessage/column": { "x": small, "y": small, "spacing": small / 2 },
            "chatMessage/column/Row": { "spacing": small },
            "messageAuthor": { "font.bold": true },
            "messageAgent": { "opacity": 0.7 },
            "messageText": { "wrapMode": TextEdit.Wrap, "textFormat": TextEdit.PlainText },
            "chatMessage/FocusRing": { "anchors.margins": 0, "radius": 2 }
        });
        const own = part("chatMessage[0]");
        look(own, {
            "": { "color": own.Kirigami.Theme.alternateBackgroundColor },
            "messageAuthor": { "text": "You", "color": own.Kirigami.Theme.textColor },
            "messageText": { "color": own.Kirigami.Theme.textColor, "selectionColor": own.Kirigami.Theme.highlightColor }
        });
        const other = part("chatMessage[1]");
        look(other, { "": { "color": other.Kirigami.Theme.backgroundColor }, "messageAgent": { "text": "(Build)" } });
    }

    function test_choiceMenu() {
        part("modelButton").openMenu();
        const menu = part("ChoiceMenu");
        tryCompare(menu, "opened", true);
        look(menu, {
            "": { "y": part("modelButton").height, "width": 350, "margins": small, "padding": 1 },
            "choiceList": { "clip": true },
            "choiceName": { "x": small, "anchors.rightMargin": small, "verticalAlignment": Text.AlignVCenter },
            "choiceName[0]": { "font.bold": true },
            "choiceName[1]": { "font.bold": false }
        });
        const row = drawn.part(menu, "choiceRow[0]");
        compare(row.height, Math.max(drawn.part(row, "choiceName").implicitHeight + 2 * small, 1.5 * grid));
        look(row, { "": { "color": row.Kirigami.Theme.highlightColor } });
        const next = drawn.part(menu, "choiceRow[1]");
        look(next, { "": { "color": next.Kirigami.Theme.backgroundColor } });
        menu.close();
        tryCompare(menu, "visible", false);
    }

    function test_sidebar() {
        look("sessionSidebar", {
            "": { "width": 280 },
            "ColumnLayout[0]": { "anchors.margins": small, "spacing": small },
            "SessionList": { "Layout.minimumHeight": 60, "Layout.preferredHeight": 3, "clip": true },
            "FileList": { "Layout.minimumHeight": 60, "Layout.preferredHeight": 2, "clip": true },
            "refreshFilesButton": { "icon.name": "view-refresh", "width": part("refreshFilesButton").implicitHeight },
            "projectPathField": { "placeholderText": "Enter project path..." },
            "sessionName": {
                "x": small, "anchors.rightMargin": small, "horizontalAlignment": Text.AlignLeft, "verticalAlignment": Text.AlignVCenter
            },
            "sessionRow": { "height": Math.max(part("sessionName").implicitHeight + 2 * small, 1.8 * grid) },
            "sessionRow/FocusRing": { "anchors.margins": 1, "radius": 2 }
        });
        const texts = Array.from(part("sessionSidebar/ColumnLayout").children)
            .filter(row => row.children.length > 0 && ["Sessions", "Files"].includes(row.children[0].text)).map(row => row.children[0]);
        compare(texts.map(text => [text.text, text.font.bold]), [["Sessions", true], ["Files", true]]);
        const selected = part("sessionRow[0]");
        look(selected, { "": { "color": selected.Kirigami.Theme.highlightColor } });
        const row = part("sessionRow[1]");
        look(row, { "": { "color": "transparent" }, "sessionName": { "color": row.Kirigami.Theme.textColor } });
        lookHovered(row, row, { "": { "color": row.Kirigami.Theme.hoverColor } });
        const field = part("projectPathField");
        look(field, { "": { "placeholderTextColor": Qt.rgba(field.color.r, field.color.g, field.color.b, 0.7) } });
    }

    function test_files() {
        testFiles.write("project/a.txt", "");
        testFiles.makeDirectory("project/folder");
        window.projectModel.rootPath = testFiles.path("project");
        part("fileRow[1]");
        look("FileList", {
            "fileRow": { "height": 1.5 * grid, "color": "transparent" },
            "icon": { "x": small, "size": 16 },
            "fileName": { "anchors.leftMargin": small, "horizontalAlignment": Text.AlignLeft },
            "fileRow/FocusRing": { "anchors.margins": 0, "radius": 2 }
        });
        for (const row of [part("fileRow[0]"), part("fileRow[1]")])
            look(row, { "icon": { "fallback": row.model.isDirectory ? "folder" : "text-x-generic" } });
        const row = part("fileRow");
        lookHovered(row, row, { "": { "color": row.Kirigami.Theme.hoverColor } });
    }
}
