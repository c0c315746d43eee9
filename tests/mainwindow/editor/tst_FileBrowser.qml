// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import QtTest 1.15

import org.kde.loomra 1.0

Item {
    id: root
    width: 400
    height: 600

    Component { id: browsers; FileBrowser { anchors.fill: parent } }
    SignalSpy { id: selections; signalName: "fileSelected" }

    TestCase {
        id: test
        name: "FileBrowser"
        when: windowShown

        property FileBrowser browser
        property string project

        function initTestCase() {
            testFiles.write("project/src/main.cpp", "int main() {}");
            testFiles.write("project/a <b>name.txt", "");
            testFiles.write("project/b & c\nd.txt", "");
            testFiles.write("project/.hidden", "");
            testFiles.makeDirectory("empty");
            project = testFiles.path("project");
        }

        function init() {
            realConfigManager.currentProject = "";
            browser = createTemporaryObject(browsers, root, { "config": realConfigManager, "files": realFileService });
            selections.target = browser;
            selections.clear();
            waitForRendering(browser);
        }

        function part(name) { return findChild(browser, name); }
        function names(list) {
            const found = [];
            for (let i = 0; i < part(list).count; ++i)
                found.push(findChild(part(list).itemAtIndex(i), "fileName").text);
            return found;
        }
        function row(list, index) {
            tryVerify(() => part(list).itemAtIndex(index));
            return part(list).itemAtIndex(index);
        }
        function enter(path) {
            part("pathField").forceActiveFocus();
            part("pathField").text = path;
            keyClick(Qt.Key_Return);
        }
        function emptyText(list) {
            const text = findChild(part(list), "emptyText");
            return text.visible ? text.text : "";
        }

        function test_texts() {
            verify(browser instanceof ColumnLayout);
            compare(part("filesHeading").text, "Files");
            compare(part("pathField").placeholderText, "Enter project path...");
            compare(part("recentList").height, 150);
            compare(part("recentList").name, "Recent Projects");
        }

        //! Nothing is read before the user asks for it.
        function test_atStart() {
            compare(browser.rootPath, "");
            compare(part("fileList").count, 0);
            compare(emptyText("fileList"), "No project open");
        }

        function test_path() {
            enter(project);
            compare(browser.rootPath, project);
            compare(realConfigManager.currentProject, project);
            compare(realConfigManager.recentProjects[0], project);
            compare(names("fileList"), ["src", "a <b>name.txt", "b & c d.txt"]);
            const text = findChild(row("fileList", 1), "fileName");
            compare(text.textFormat, Text.PlainText);
            compare(row("fileList", 2).Accessible.name, "b & c d.txt");
            compare(row("fileList", 0).iconName, "folder");
            compare(names("recentList")[0], project);
        }

        function test_noFiles_data() {
            return [
                { tag: "missing", path: () => testFiles.path("nowhere"), text: "There is no folder at this path." },
                { tag: "a file", path: () => project + "/src/main.cpp", text: "There is no folder at this path." },
                { tag: "empty", path: () => testFiles.path("empty"), text: "This folder is empty." }
            ];
        }

        function test_noFiles(data) {
            enter(data.path());
            compare(part("fileList").count, 0);
            compare(emptyText("fileList"), data.text);
        }

        function test_clicks() {
            enter(project);
            mouseClick(row("fileList", 2));
            compare(selections.count, 1);
            compare(selections.signalArguments[0][0], project + "/b & c\nd.txt");
            compare(browser.rootPath, project);
            mouseClick(row("fileList", 0));
            compare(browser.rootPath, project + "/src");
            compare(part("pathField").text, project + "/src");
            compare(realConfigManager.currentProject, project);
            compare(selections.count, 1);
            mouseClick(row("fileList", 0));
            compare(selections.signalArguments[1][0], project + "/src/main.cpp");
        }

        function test_refresh() {
            const path = testFiles.makeDirectory("growing");
            enter(path);
            compare(part("fileList").count, 0);
            testFiles.write("growing/x", "");
            compare(part("fileList").count, 0);
            mouseClick(part("refreshButton"));
            compare(part("fileList").count, 1);
            compare(part("refreshButton").Accessible.name, "Refresh");
            testFiles.remove("growing/x");
        }

        function test_recentProjects() {
            enter(project);
            enter(testFiles.path("empty"));
            compare(names("recentList").slice(0, 2), [testFiles.path("empty"), project]);
            tryVerify(() => row("recentList", 1).height > 0);
            mouseClick(row("recentList", 1));
            compare(browser.rootPath, project);
            compare(realConfigManager.currentProject, project);
            compare(names("recentList")[0], project);
        }

        function test_keyboard() {
            enter(project);
            part("refreshButton").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            verify(part("pathField").activeFocus);
            keyClick(Qt.Key_Tab);
            verify(row("fileList", 0).activeFocus);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            compare(selections.count, 1);
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Space);
            compare(browser.rootPath, project + "/src");
            tryVerify(() => row("fileList", 0).activeFocus);
            keyClick(Qt.Key_Return);
            compare(selections.count, 2);
            keyClick(Qt.Key_Tab);
            verify(row("recentList", 0).activeFocus);
        }

        //! Only the rows in view exist.
        function test_manyFiles() {
            for (let i = 0; i < 500; ++i)
                testFiles.write("many/file" + i, "");
            enter(testFiles.path("many"));
            compare(part("fileList").count, 500);
            waitForRendering(browser);
            verify(part("fileList").contentItem.children.length < 100);
        }

        function test_withoutNativeObjects() {
            browser = createTemporaryObject(browsers, root, { "config": null, "files": null });
            enter(project);
            compare(browser.rootPath, project);
            compare(part("fileList").count, 3);
            compare(part("recentList").count, 0);
            compare(emptyText("recentList"), "No recent projects");
            browser = createTemporaryObject(browsers, root);
            compare(browser.config, null);
        }
    }
}
