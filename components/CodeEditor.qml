// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra 1.0 as Loomra
import org.kde.loomra.components.controls 1.0

import "logic/Translatable.js" as Translatable
import "common"
import "common/FocusChain.js" as FocusChain
import "common/Readable.js" as Readable
import "editor"

//! An editor for one text file, into which the bridge can write code.
FocusScope {
    id: editor

    property alias filePath: controller.filePath
    property alias fileContent: area.text
    readonly property alias modified: controller.modified
    property alias sdk: controller.sdk
    property alias files: controller.files

    //! Loads a file at once; unsaved changes are lost, see openFile(). @return whether it is shown
    function loadFile(path) { return controller.loadFile(path); }
    //! Writes the text at once, even if another program has changed the file, see save(). @return whether that worked
    function saveFile() { return controller.saveFile(); }
    //! Inserts code at the cursor.
    function insertCode(code) { controller.insertCode(code); }

    //! Loads a file, after a question if there are unsaved changes.
    function openFile(path) {
        afterQuestion(() => controller.loadFile(path));
    }

    //! Saves, after a question if another program has changed the file.
    function save() {
        if (filePath === "")
            return;
        if (controller.changedOnDisk())
            changedDialog.open();
        else
            controller.saveFile();
    }

    //! Calls a function that gives up the text, after a question if there are unsaved changes.
    function afterQuestion(next) {
        if (!modified) {
            next();
            return;
        }
        unsavedDialog.next = next;
        unsavedDialog.open();
    }

    //! Leaves the text by keyboard, because Tab is part of the text.
    function leaveText(forward) {
        FocusChain.step(editor.Window.contentItem || editor, area, forward);
    }

    implicitWidth: Kirigami.Units.gridUnit * 30
    implicitHeight: Kirigami.Units.gridUnit * 20
    Keys.onPressed: {
        if (event.matches(StandardKey.Save)) {
            event.accepted = true;
            save();
        }
    }

    EditorController {
        id: controller
        area: area
    }

    Connections {
        target: controller.sdk
        ignoreUnknownSignals: true

        function onCodeGenerated(code) { controller.insertCode(code); }
        function onCodeEdited(code) { controller.replaceCode(code); }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Kirigami.Units.smallSpacing

        GridLayout {
            Layout.fillWidth: true
            Layout.margins: Kirigami.Units.smallSpacing
            Layout.bottomMargin: 0
            columns: width < Kirigami.Units.gridUnit * 36 ? 1 : 2
            columnSpacing: Kirigami.Units.largeSpacing
            rowSpacing: Kirigami.Units.smallSpacing

            Flow {
                Layout.fillWidth: true
                Layout.preferredWidth: toolWidth
                Layout.maximumWidth: toolWidth
                spacing: Kirigami.Units.smallSpacing

                // A Flow doesn't know its width in one line.
                readonly property real toolWidth: newButton.width + openButton.width + saveButton.width
                                                  + generateButton.width + 3 * spacing

                TextButton {
                    id: newButton
                    objectName: "newButton"

                    label: Translation.tr("New File")
                    icon.name: "document-new"
                    onClicked: editor.afterQuestion(() => newDialog.open())
                }

                TextButton {
                    id: openButton
                    objectName: "openButton"

                    label: Translation.tr("Open File")
                    icon.name: "document-open"
                    onClicked: editor.afterQuestion(() => openDialog.open())
                }

                TextButton {
                    id: saveButton
                    objectName: "saveButton"

                    label: Translation.tr("Save")
                    icon.name: "document-save"
                    enabled: editor.filePath !== ""
                    onClicked: editor.save()
                }

                TextButton {
                    id: generateButton
                    objectName: "generateButton"

                    label: Translation.tr("Generate Code")
                    icon.name: "code-context"
                    enabled: Boolean(editor.sdk && editor.sdk.ready)
                    onClicked: generateDialog.open()
                }
            }

            RowLayout {
                Layout.fillWidth: true
                Layout.preferredWidth: Kirigami.Units.gridUnit * 8 // whatever the length of the path
                spacing: Kirigami.Units.smallSpacing

                PlainText {
                    objectName: "pathText"

                    readonly property bool hovered: pathPointer.hovered

                    Layout.fillWidth: true
                    text: editor.filePath === "" ? Translation.tr("No file open") : editor.filePath
                    color: editor.filePath === "" ? Readable.on(Kirigami.Theme.backgroundColor, Kirigami.Theme.disabledTextColor)
                                                   : Kirigami.Theme.textColor
                    elide: Text.ElideMiddle
                    maximumLineCount: 1

                    HoverHandler {
                        id: pathPointer
                    }

                    HoverTip {
                        control: parent
                        text: editor.filePath
                        longest: 4096
                        enabledHere: parent.truncated
                    }
                }

                PlainText {
                    objectName: "modifiedText"

                    visible: editor.modified
                    text: Translation.tr("Modified")
                    color: Readable.on(Kirigami.Theme.backgroundColor, Kirigami.Theme.neutralTextColor)
                }
            }
        }

        MessageBar {
            objectName: "messageBar"

            Layout.fillWidth: true
            Layout.leftMargin: Kirigami.Units.smallSpacing
            Layout.rightMargin: Kirigami.Units.smallSpacing
            text: controller.message
            onDismissed: {
                controller.message = "";
                area.forceActiveFocus(Qt.OtherFocusReason);
            }
        }

        // Code is written from left to right in every language.
        Rectangle {
            objectName: "codeFrame"

            LayoutMirroring.enabled: false
            LayoutMirroring.childrenInherit: true
            Layout.fillWidth: true
            Layout.fillHeight: true
            color: Kirigami.Theme.backgroundColor
            border.width: 1
            border.color: area.activeFocus
                          ? Kirigami.Theme.highlightColor
                          : Qt.rgba(Kirigami.Theme.textColor.r, Kirigami.Theme.textColor.g, Kirigami.Theme.textColor.b, 0.3)
            Kirigami.Theme.inherit: false
            Kirigami.Theme.colorSet: Kirigami.Theme.View

            Flickable {
                id: pane

                anchors.fill: parent
                anchors.margins: 1
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                QQC2.ScrollBar.vertical: QQC2.ScrollBar {
                    focusPolicy: Qt.NoFocus
                    Accessible.name: Translation.tr("Scroll")
                }
                QQC2.ScrollBar.horizontal: QQC2.ScrollBar {
                    focusPolicy: Qt.NoFocus
                    Accessible.name: Translation.tr("Scroll")
                }

                QQC2.TextArea.flickable: QQC2.TextArea {
                    id: area
                    objectName: "codeArea"

                    focus: true
                    textFormat: TextEdit.PlainText
                    wrapMode: TextEdit.NoWrap
                    horizontalAlignment: TextEdit.AlignLeft
                    font.family: "monospace"
                    font.pointSize: Kirigami.Theme.defaultFont.pointSize
                    tabStopDistance: 4 * metrics.averageCharacterWidth
                    color: Kirigami.Theme.textColor
                    selectionColor: Kirigami.Theme.highlightColor
                    selectedTextColor: Readable.on(Kirigami.Theme.highlightColor, Kirigami.Theme.highlightedTextColor)
                    selectByMouse: true
                    background: null
                    Accessible.name: Translation.tr("Code")
                    Accessible.description: Translation.tr("Tab is part of the text. Ctrl+Tab or Escape leaves the editor.")

                    FontMetrics {
                        id: metrics
                        font: area.font
                    }

                    Loomra.CodeDirection {
                        id: direction
                    }

                    onTextChanged: direction.apply(textDocument)
                    Keys.priority: Keys.BeforeItem
                    Keys.onEscapePressed: editor.leaveText(true)
                    Keys.onPressed: {
                        if (event.modifiers & Qt.ControlModifier
                                && (event.key === Qt.Key_Tab || event.key === Qt.Key_Backtab)) {
                            event.accepted = true;
                            editor.leaveText(event.key === Qt.Key_Tab);
                        }
                    }
                }
            }
        }
    }

    FieldDialog {
        id: newDialog
        objectName: "newDialog"

        title: Translation.tr("New File")
        fieldLabel: Translation.tr("File Path:")
        acceptLabel: Translation.tr("Create")
        onAccepted: {
            error = controller.newFile(value);
            if (error === "")
                close();
        }
    }

    FieldDialog {
        id: openDialog
        objectName: "openDialog"

        title: Translation.tr("Open File")
        fieldLabel: Translation.tr("File Path:")
        acceptLabel: Translation.tr("Open")
        onAccepted: {
            controller.loadFile(value);
            close();
        }
    }

    FieldDialog {
        id: generateDialog
        objectName: "generateDialog"

        title: Translation.tr("Generate Code")
        fieldLabel: Translation.tr("Prompt:")
        placeholder: Translation.tr("Describe what code you want to generate...")
        acceptLabel: Translation.tr("Generate")
        onAccepted: {
            controller.generateCode(value);
            close();
        }
    }

    ChoiceDialog {
        id: unsavedDialog
        objectName: "unsavedDialog"

        property var next: () => {}

        title: Translation.tr("Unsaved Changes")
        question: editor.filePath === ""
                  ? Translation.tr("The text was never saved. Discard it?")
                  : Translatable.filled(Translation.tr("{path} has unsaved changes. Save them?"), { path: editor.filePath })
        // A text without a path can't be saved.
        answers: editor.filePath === "" ? [Translation.tr("Discard")] : [Translation.tr("Save"), Translation.tr("Discard")]
        onChosen: {
            const saves = answer < answers.length - 1;
            if (saves && controller.changedOnDisk())
                changedDialog.open();
            else if (!saves || controller.saveFile())
                next();
        }
    }

    ChoiceDialog {
        id: changedDialog
        objectName: "changedDialog"

        title: Translation.tr("File Changed")
        question: Translatable.filled(Translation.tr("Another program has changed {path}. Overwrite its changes, or load the file again and lose yours?"),
                                      { path: editor.filePath })
        answers: [Translation.tr("Overwrite"), Translation.tr("Load Again")]
        onChosen: {
            if (answer === 0)
                controller.saveFile();
            else
                controller.loadFile(editor.filePath);
        }
    }
}
