// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Window 2.15
import QtTest 1.15
import org.kde.kirigami 2.20 as Kirigami

import org.kde.loomra 1.0

import "../../omnibar/controllers"

Item {
    id: root
    width: 500
    height: 400

    Component { id: panels; ProjectPanel { anchors.fill: parent } }
    Component {
        id: configs

        CallRecorder {
            property string apiKey: "secret"
            property string currentProject: "/project"
            function save() { note("save", []); }
        }
    }

    TestCase {
        name: "ProjectPanel"
        when: windowShown

        property QtObject config
        property Item panel

        function init() {
            config = createTemporaryObject(configs, root);
            panel = createTemporaryObject(panels, root, { "config": config });
            waitForRendering(panel);
        }

        function part(name) { return findChild(panel, name); }

        function test_fields() {
            verify(panel instanceof Kirigami.Page);
            compare(panel.title, "Project Settings");
            compare(part("pathField").Accessible.name, "Project Path:");
            compare(part("pathField").text, "/project");
            compare(part("keyField").Accessible.description, "API Key:");
            compare(part("keyField").text, "secret");
            compare(part("keyField").echoMode, TextInput.Password);
            compare(part("browseButton").label, "Browse...");
            compare(part("saveButton").label, "Save Settings");
        }

        function test_fieldsAreBoundBothWays_data() {
            return [
                { tag: "path", field: "pathField", property: "currentProject" },
                { tag: "key", field: "keyField", property: "apiKey" }
            ];
        }

        function test_fieldsAreBoundBothWays(data) {
            const field = part(data.field);
            field.forceActiveFocus();
            keyClick(Qt.Key_End);
            keyClick("x");
            verify(config[data.property].endsWith("x"));
            config[data.property] = "new";
            compare(field.text, "new");
            keyClick(Qt.Key_End);
            keyClick("y");
            compare(config[data.property], "newy");
        }

        function test_buttons() {
            mouseClick(part("browseButton"));
            compare(config.takeCalls(), []);
            mouseClick(part("saveButton"));
            compare(config.takeCalls(), ["save()"]);
        }

        function test_keyboard() {
            part("pathField").forceActiveFocus(Qt.TabFocusReason);
            for (const name of ["browseButton", "keyField", "saveButton"]) {
                keyClick(Qt.Key_Tab);
                compare(root.Window.activeFocusItem.objectName, name);
            }
            keyClick(Qt.Key_Return);
            compare(config.takeCalls(), ["save()"]);
        }

        function test_withoutSettings() {
            panel = createTemporaryObject(panels, root, { "config": null });
            compare(part("pathField").text, "");
            part("pathField").forceActiveFocus();
            keyClick("x");
            mouseClick(part("saveButton"));
        }
    }
}
