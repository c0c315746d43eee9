// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami

import org.kde.loomra 1.0

import "qrc:/org/kde/loomra/components" as Pages
import "qrc:/org/kde/loomra/components/common"
import "qrc:/org/kde/loomra/components/config"
import "qrc:/org/kde/loomra/components/config/controllers"
import "qrc:/org/kde/loomra/components/editor"
import "../support/qml"
import "panels"

//! What dialogs, lists, panels, the editor and the configuration pages of the main window draw. Colours are those of the
//! desktop.
Item {
    id: root

    width: 900
    height: 800

    QtObject {
        id: fakeManager

        function getLoomraConfig() {
            return {
                "agent": { "helper": { "description": "Helps" } },
                "tools": { "read": true, "mine": true },
                "permission": { "edit": "ask", "bash": { "*": "allow" } },
                "mcp": { "server": { "type": "local", "enabled": true } },
                "provider": { "one": { "name": "One" } }
            };
        }
    }
    ConfigController {
        id: configController
        manager: fakeManager
    }
    FakePanelSdk {
        id: fakeSdk
    }

    Component { id: dialogs; SimpleDialog { title: "Title" } }
    Component { id: choices; ChoiceDialog {} }
    Component { id: fieldDialogs; FieldDialog { fieldLabel: "Label"; placeholder: "Placeholder" } }
    Component { id: editors; CodeEditor { width: 900; height: 600; sdk: fakeSdk; files: realFileService } }
    Component { id: browsers; FileBrowser { width: 400; height: 700; config: realConfigManager; files: realFileService } }
    Component { id: projects; ProjectPanel { width: 600; height: 600 } }
    Component { id: undo; UndoCenter { width: 500; height: 600; sdk: fakeSdk } }
    Component { id: trust; TrustCenter { width: 500; height: 600; sdk: fakeSdk } }
    Component { id: inspector; DesktopInspector { width: 500; height: 600; sdk: fakeSdk } }
    Component { id: messages; ConfigMessage { width: 400; text: "text" } }
    Component { id: usageRows; UsageRow { width: 800; height: 30; cells: ["a", "b", "c", "d", "e", "f"]; share: 0.5 } }
    Component { id: messageBars; MessageBar {} }
    Component { id: agents; AgentsConfigPage {} }
    Component { id: tools; ToolsConfigPage {} }
    Component { id: permissions; PermissionsConfigPage {} }
    Component { id: mcp; McpConfigPage {} }
    Component { id: providers; ProvidersConfigPage {} }
    Component { id: usage; Pages.UsageConfigPage {} }

    LookCase {
        name: "PageLook"

        readonly property int small: Kirigami.Units.smallSpacing
        readonly property int large: Kirigami.Units.largeSpacing
        readonly property int grid: Kirigami.Units.gridUnit
        readonly property real pointSize: Kirigami.Theme.defaultFont.pointSize

        function init() {
            movePointerAway();
        }

        function make(component, properties) {
            const item = createTemporaryObject(component, root, properties || {});
            verify(item);
            subject = item;
            return item;
        }
        function page(component) {
            make(component, { "width": 900, "height": 800, "controller": configController });
            configController.reload();
            return subject;
        }
        //! A colour of an item's own colour set, less opaque.
        function faint(item, opacity) {
            const text = item.Kirigami.Theme.textColor;
            return Qt.rgba(text.r, text.g, text.b, opacity);
        }
        function isFaint(color) {
            return Qt.rgba(color.r, color.g, color.b, 0.7);
        }

        function test_dialog() {
            const dialog = make(dialogs);
            dialog.open();
            const box = part("dialogBox");
            look(dialog, {
                "": { "z": 1000, "width": 900, "height": 800, "maximumWidth": 500, "widthShare": 0.9, "heightShare": 0.9 },
                "dialogShade": { "width": 900, "height": 800, "color": Qt.rgba(0, 0, 0, 0.5) },
                "dialogBox": {
                    "width": 500, "padding": large, "radius": small, "color": box.Kirigami.Theme.backgroundColor, "border.width": 1,
                    "border.color": faint(box, 0.3),
                    "height": part("dialogTitle").implicitHeight + part("contentColumn").implicitHeight
                              + part("buttonRow").implicitHeight + 4 * large
                },
                "dialogTitle": {
                    "x": large, "y": large, "width": 500 - 2 * large, "color": box.Kirigami.Theme.textColor, "font.bold": true,
                    "font.pointSize": pointSize * 1.2
                },
                "ScrollPane": { "anchors.margins": large, "anchors.rightMargin": 0, "thumbColor": faint(box, 0.35) },
                "contentColumn": { "spacing": small },
                "buttonRow": { "anchors.margins": large, "spacing": small }
            });
            compare(part("contentColumn").width, part("ScrollPane").width - large);
            root.width = 400;
            look(dialog, { "dialogBox": { "width": 360 } });
            root.width = 900;
        }

        function test_question() {
            make(choices).open();
            look("dialogQuestion", { "": { "wrapMode": Text.Wrap, "elide": Text.ElideNone } });
        }

        function test_fieldDialog() {
            make(fieldDialogs).open();
            look(subject, {
                "dialogField": { "placeholderText": "Placeholder", "placeholderTextColor": isFaint(part("dialogField").color) },
                "dialogError": { "wrapMode": Text.Wrap, "elide": Text.ElideNone }
            });
        }

        function test_editor() {
            const editor = make(editors);
            const frame = part("codeFrame");
            look(editor, {
                "": { "implicitWidth": 30 * grid, "implicitHeight": 20 * grid },
                "ColumnLayout[0]": { "spacing": small },
                "GridLayout": { "columns": 2, "columnSpacing": large, "rowSpacing": small, "Layout.margins": small },
                "Flow": { "spacing": small },
                "pathText": { "elide": Text.ElideMiddle, "maximumLineCount": 1, "text": "No file open" },
                "codeFrame": { "color": frame.Kirigami.Theme.backgroundColor, "border.width": 1, "border.color": faint(frame, 0.3) },
                "pane": { "x": 1, "y": 1, "clip": true },
                "codeArea": {
                    "wrapMode": TextEdit.NoWrap, "textFormat": TextEdit.PlainText, "horizontalAlignment": TextEdit.AlignLeft,
                    "font.family": "monospace", "font.pointSize": pointSize, "color": frame.Kirigami.Theme.textColor
                }
            });
            part("codeArea").forceActiveFocus();
            look(editor, { "codeFrame": { "border.color": frame.Kirigami.Theme.highlightColor } });
            editor.width = 36 * grid;
            look(editor, { "GridLayout": { "columns": 1 } });
        }

        function test_messageBar() {
            const bar = make(messageBars, { "width": 300 });
            look(bar, {
                "": {
                    "implicitHeight": part("content").implicitHeight + 2 * small, "radius": small, "border.width": 1,
                    "color": bar.Kirigami.Theme.backgroundColor, "border.color": bar.Kirigami.Theme.negativeTextColor
                },
                "content": { "anchors.margins": small, "spacing": small },
                "FallbackIcon": { "name": "dialog-error", "size": Kirigami.Units.iconSizes.small, "color": bar.Kirigami.Theme.negativeTextColor },
                "editorMessage": { "wrapMode": Text.Wrap, "maximumLineCount": 4 }
            });
        }

        function test_browser() {
            testFiles.write("look/a.txt", "");
            const browser = make(browsers);
            part("pathField").text = testFiles.path("look");
            part("pathField").accepted();
            part("fileName");
            const list = part("fileList");
            look(browser, {
                "": { "spacing": small },
                "pathField": { "placeholderText": "Enter project path...", "placeholderTextColor": isFaint(part("pathField").color) },
                "Heading[0]": { "text": "Files" },
                "Heading[1]": { "text": "Recent Projects", "level": 3 },
                "recentList": { "Layout.preferredHeight": 150, "height": 150 },
                "RowList": { "clip": true, "topMargin": 1, "bottomMargin": 1, "leftMargin": 1, "implicitHeight": 8 * grid },
                "emptyText": {
                    "anchors.margins": large, "wrapMode": Text.Wrap, "horizontalAlignment": Text.AlignHCenter,
                    "verticalAlignment": Text.AlignVCenter
                },
                "FileRow": { "width": list.width - 2, "padding": small, "leftPadding": large, "rightPadding": large },
                "FileRow.background": { "color": list.Kirigami.Theme.highlightColor, "opacity": 0 },
                "FileRow/FocusRing": { "anchors.margins": 1, "radius": 2, "border.color": list.Kirigami.Theme.highlightColor },
                "rowIcon": { "width": Kirigami.Units.iconSizes.small, "height": Kirigami.Units.iconSizes.small, "fallback": "text-plain" },
                "fileName": { "anchors.leftMargin": small, "horizontalAlignment": Text.AlignLeft, "maximumLineCount": 1 }
            });
            const ground = drawn.part(list, "ground");
            look(ground, { "": { "color": list.Kirigami.Theme.backgroundColor, "border.width": 1, "border.color": faint(list, 0.3) } });
            const row = part("FileRow");
            compare(row.implicitHeight, row.contentItem.implicitHeight + 2 * small);
            lookHovered(row, row, { ".background": { "opacity": 0.15 } });
            mousePress(row);
            look(row, { ".background": { "opacity": 0.3 } });
            mouseRelease(row);
        }

        function test_records() {
            const panel = make(undo);
            fakeSdk.auditRecentListed([{ "id": "a1", "at": 0 }]);
            part("recordName");
            look(panel, {
                "": { "spacing": small },
                "panelHeading": { "level": 1 },
                "RecordRow.contentItem": { "rowSpacing": small, "columnSpacing": large, "columns": 2 },
                "recordName": { "font.bold": true, "font.family": Kirigami.Theme.defaultFont.family, "maximumLineCount": 1 },
                "recordDetail": { "font.pointSize": Kirigami.Theme.smallFont.pointSize, "maximumLineCount": 1 },
                "buttonRow": { "spacing": small }
            });
            panel.width = 18 * grid;
            look(panel, { "RecordRow.contentItem": { "columns": 1 } });
        }

        function test_trustCenter() {
            look(make(trust), { "Flow": { "spacing": small }, "SectionHeading": { "wrapMode": Text.Wrap, "Layout.topMargin": large } });
        }

        function test_inspector() {
            make(inspector);
            fakeSdk.desktopStateReceived({ "a": "b" });
            look("desktopLine", { "": { "wrapMode": Text.Wrap, "maximumLineCount": 3 } });
        }

        function test_configMessage_data() {
            return [{ tag: "note", warning: false, icon: "dialog-information" }, { tag: "warning", warning: true, icon: "dialog-warning" }];
        }
        function test_configMessage(data) {
            const message = make(messages, { "isWarning": data.warning });
            const tone = data.warning ? message.Kirigami.Theme.neutralTextColor : message.Kirigami.Theme.activeTextColor;
            look(message, {
                "": {
                    "padding": small, "radius": small, "color": Qt.rgba(tone.r, tone.g, tone.b, 0.15), "border.width": 1,
                    "border.color": tone, "implicitHeight": Math.max(part("icon").height, part("label").implicitHeight) + 2 * small
                },
                "icon": {
                    "x": small, "y": small, "width": Kirigami.Units.iconSizes.smallMedium,
                    "height": Kirigami.Units.iconSizes.smallMedium, "source": data.icon
                },
                "label": { "anchors.margins": small, "wrapMode": Text.Wrap, "horizontalAlignment": Text.AlignLeft, "elide": Text.ElideNone }
            });
        }

        function test_usageRow() {
            const row = make(usageRows);
            look(row, {
                "": { "spacing": large },
                "ConfigText": { "font.bold": false, "wrapMode": Text.NoWrap, "elide": Text.ElideRight, "fontSizeMode": Text.FixedSize },
                "ConfigText[0]": { "horizontalAlignment": Text.AlignLeft, "Layout.preferredWidth": 5 * grid, "Layout.maximumWidth": 5 * grid },
                "ConfigText[1]": { "horizontalAlignment": Text.AlignRight, "Layout.preferredWidth": 5 * grid },
                "ConfigText[5]": { "Layout.preferredWidth": 8 * grid, "Layout.maximumWidth": 8 * grid },
                "usageBar": { "radius": 2, "color": row.Kirigami.Theme.highlightColor, "height": 30 * 0.7 }
            });
            const bar = part("usageBar");
            fuzzyCompare(bar.width, bar.parent.width / 2, 0.01);
            compare(bar.parent.Layout.preferredWidth, 5 * grid);
            row.isHeader = true;
            look(row, { "ConfigText": { "font.bold": true, "fontSizeMode": Text.HorizontalFit, "minimumPointSize": Math.floor(pointSize * 0.6) } });
        }

        function test_dialogsOfPages_data() {
            return [
                { tag: "addToolDialog", page: tools, maximum: 400, share: 0.8, z: 1000 },
                { tag: "addPathDialog", page: permissions, maximum: 450, share: 0.8, z: 1000 },
                { tag: "addServerDialog", page: mcp, maximum: 400, share: 0.8, z: 1000 },
                { tag: "addProviderDialog", page: providers, maximum: 400, share: 0.8, z: 1000 },
                { tag: "addAgentDialog", page: agents, maximum: 600, share: 0.9, z: 1000 },
                { tag: "optionDialog", page: agents, maximum: 500, share: 0.8, z: 1001 }
            ];
        }
        function test_dialogsOfPages(data) {
            page(data.page);
            const dialog = part(data.tag);
            dialog.open();
            look(dialog, {
                "": { "maximumWidth": data.maximum, "widthShare": data.share, "z": data.z },
                "dialogShade": { "color": Qt.rgba(0, 0, 0, 0.5) },
                "dialogBox": { "width": Math.min(data.maximum, dialog.width * data.share) }
            });
            // The page scrolls below it.
            compare(part("overlay").z, 1000);
            if (data.tag === "addAgentDialog") {
                look(dialog, { "": { "heightShare": Math.min(0.9, 700 / dialog.height) } });
                subject.height = 600;
                look(dialog, { "": { "heightShare": 0.9 } });
            } else {
                look(dialog, { "dialogName": { "placeholderTextColor": isFaint(drawn.part(dialog, "dialogName").color) } });
            }
        }

        function test_cards() {
            const view = page(mcp);
            const card = part("card");
            look(view, {
                "configPane": { "thumbColor": faint(part("configPane"), 0.35) },
                "card": {
                    "radius": small, "color": card.Kirigami.Theme.backgroundColor, "border.width": 1, "border.color": faint(card, 0.2),
                    "implicitHeight": drawn.part(card, "column").implicitHeight + 2 * large
                },
                "card/column[0]": { "x": large, "y": large, "spacing": small },
                "cardTitle": { "font.bold": true, "wrapMode": Text.Wrap, "maximumLineCount": 2, "elide": Text.ElideRight },
                "FormFields": { "spacing": small },
                "ConfigCards": { "spacing": large, "step": 5 },
                "field-type": { "spacing": large }
            });
            const column = part("column");
            compare([column.x, column.y, column.spacing, column.width], [large, large, large, part("configPane").width - 3 * large]);
            const field = part("field-type");
            compare(field.children[0].Layout.preferredWidth, 10 * grid);
        }

        function test_textArea() {
            page(agents);
            part("jsonEditor").clicked();
            const area = part("agentsJson");
            look(area, {
                "": { "font.family": "monospace", "wrapMode": TextEdit.Wrap, "textFormat": TextEdit.PlainText },
                ".background": { "color": area.palette.base, "border.width": 1, "border.color": area.palette.mid }
            });
            area.forceActiveFocus();
            look(area, { ".background": { "border.width": 2, "border.color": area.palette.highlight } });
        }

        function test_toolsPage() {
            look(page(tools), {
                "Flow": { "spacing": small },
                "tool-read": { "width": 12 * grid },
                "customTools": { "spacing": small, "step": 20 }
            });
        }

        function test_permissionsPage() {
            look(page(permissions), { "paths": { "spacing": small, "step": 20 } });
        }

        function test_usagePage() {
            look(make(usage, { "width": 900, "height": 800 }), {
                "usageNote": { "wrapMode": Text.Wrap, "opacity": 0.8 },
                "usageTotals": { "font.bold": true }
            });
        }

        function test_projectPanel() {
            look(make(projects), { "ColumnLayout[0]": { "spacing": small } });
        }
    }
}
