// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import org.kde.loomra 1.0
import "qrc:/org/kde/loomra/components/config/controllers"

//! Each page by itself, without the settings around it and without native objects.
Item {
    id: root
    width: 800
    height: 600

    Component { id: agents; AgentsConfigPage {} }
    Component { id: tools; ToolsConfigPage {} }
    Component { id: permissions; PermissionsConfigPage {} }
    Component { id: mcp; McpConfigPage {} }
    Component { id: providers; ProvidersConfigPage {} }

    QtObject {
        id: fakeManager

        property string updated: ""

        function getLoomraConfig() { return { tools: { read: true } }; }
        function updateTools(tools) { updated = JSON.stringify(tools); }
    }

    Component {
        id: controllers

        ConfigController {
            manager: fakeManager
        }
    }

    TestCase {
        name: "PagesAlone"
        when: windowShown

        function test_pages_data() {
            return [
                { tag: "agents", page: agents, control: "addAgent" },
                { tag: "tools", page: tools, control: "tool-read" },
                { tag: "permissions", page: permissions, control: "addPath" },
                { tag: "mcp", page: mcp, control: "addServer" },
                { tag: "providers", page: providers, control: "addProvider" }
            ];
        }

        function test_pages(data) {
            const page = createTemporaryObject(data.page, root, { width: 800, height: 600 });
            verify(page.controller);
            compare(JSON.stringify(page.configData), '{"agent":{}}');
            verify(findChild(page, data.control).visible);
        }

        function test_usage() {
            const component = Qt.createComponent("qrc:/org/kde/loomra/components/UsageConfigPage.qml");
            const page = createTemporaryObject(component, root, { width: 800, height: 600 });
            compare(findChild(page, "usageTotals").text, "Totals (last 30 days): 0 tokens");
        }

        //! A manager may lack functions.
        function test_changesAreSignalled() {
            const controller = createTemporaryObject(controllers, root);
            const page = createTemporaryObject(tools, root, { width: 800, height: 600, controller: controller });
            controller.reload();
            const spy = createTemporaryQmlObject("import QtTest 1.15; SignalSpy { signalName: 'configChanged' }", root);
            spy.target = page;
            mouseClick(findChild(page, "tool-bash"), 10, 10);
            compare(spy.count, 1);
            compare(fakeManager.updated, '{"read":true,"bash":true}');
            compare(controller.save(), false);
        }
    }
}
