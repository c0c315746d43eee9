// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Window 2.15
import QtTest 1.15

import org.kde.loomra 1.0

import "../panels"

Item {
    id: root
    width: 700
    height: 500

    Component {
        id: scenes

        Column {
            property alias editor: codeEditor
            property QtObject sdk: null
            property QtObject files: realFileService

            anchors.fill: parent

            QQC2.Button {
                id: before
                objectName: "before"
                text: "before"
            }
            CodeEditor {
                id: codeEditor
                width: parent.width
                height: 400
                sdk: parent.sdk
                files: parent.files
            }
            QQC2.Button {
                objectName: "after"
                text: "after"
            }
        }
    }
    Component { id: sdks; FakePanelSdk {} }
    Component {
        id: fakeFiles

        QtObject {
            property string content: ""
            property string written: ""
            property bool opens: true
            function readFile(path) { return content; }
            function fileExists(path) { return true; }
            function writeFile(path, text) { written = text; return opens; }
            function createFile(path) { return false; }
        }
    }

    // One long file, because the tests share the editor and its fakes.
    TestCase {
        id: test
        name: "CodeEditor"
        when: windowShown

        property QtObject sdk
        property Item scene
        property CodeEditor editor

        function init() {
            sdk = createTemporaryObject(sdks, root);
            scene = createTemporaryObject(scenes, root, { "sdk": sdk });
            editor = scene.editor;
            waitForRendering(editor);
        }

        function part(name) { return findChild(scene, name); }
        function message() { return part("messageBar").visible ? part("editorMessage").text : ""; }
        function isOpen(name) { return part(name).visible; }
        function focused() { return root.Window.activeFocusItem; }
        function type(text) {
            part("codeArea").forceActiveFocus();
            for (const letter of text)
                keyClick(letter);
        }
        //! Answers the open question.
        function answer(dialog, label) {
            tryVerify(() => part(dialog).visible);
            for (const button of answers(dialog)) {
                if (button.label === label) {
                    tryVerify(() => !isPolishScheduled(button.parent)); // the row's layout
                    mouseClick(button);
                    return;
                }
            }
            fail("no answer " + label);
        }
        function answers(dialog) {
            const found = [];
            const visit = parent => {
                for (let i = 0; i < parent.children.length; ++i) {
                    const child = parent.children[i];
                    if (["answerButton", "cancelButton"].includes(child.objectName))
                        found.push(child);
                    visit(child);
                }
            };
            visit(part(dialog));
            return found;
        }

        // ---- The window part

        function test_atStart() {
            compare(editor.filePath, "");
            compare(editor.fileContent, "");
            compare(part("pathText").text, "No file open");
            compare(part("newButton").label, "New File");
            compare(part("openButton").label, "Open File");
            compare(part("saveButton").label, "Save");
            compare(part("generateButton").label, "Generate Code");
            compare(part("saveButton").enabled, false);
            compare(part("generateButton").enabled, true);
            sdk.ready = false;
            compare(part("generateButton").enabled, false);
            const area = part("codeArea");
            compare(area.wrapMode, TextEdit.NoWrap);
            compare(area.textFormat, TextEdit.PlainText);
            compare(area.font.family, "monospace");
            compare(part("modifiedText").visible, false);
        }

        //! A file that begins with a comment in Arabic.
        function test_leftToRight() {
            const area = part("codeArea");
            area.text = "// \u062a\u0639\u0644\u064a\u0642\nint x;";
            compare(area.positionToRectangle(0).x, area.leftPadding);
            const xOf = sign => area.positionToRectangle(area.text.indexOf(sign)).x;
            verify(xOf(";") > xOf("x"));
            verify(xOf("\u062a") > xOf("/"));
            area.insert(0, "\u062a");
            verify(xOf(";") > xOf("x"));
        }

        function test_withoutNativeObjects() {
            scene = createTemporaryObject(scenes, root, { "sdk": null, "files": null });
            editor = scene.editor;
            compare(part("generateButton").enabled, false);
            compare(editor.loadFile("/etc/hostname"), false);
            compare(editor.saveFile(), false);
            editor.filePath = "/nowhere/x";
            compare(editor.saveFile(), false);
            editor.save();
            mouseClick(part("newButton"));
            part("dialogField").text = "/nowhere/y";
            part("newDialog").accept();
            verify(isOpen("newDialog"));
        }

        // ---- Loading

        function test_load_data() {
            return [
                { tag: "text", bytes: "one\ntwo\n", content: "one\ntwo\n" },
                { tag: "empty", bytes: "", content: "" },
                { tag: "markup", bytes: "<b>bold</b> &amp;", content: "<b>bold</b> &amp;" },
                { tag: "tabs", bytes: "\ta\t", content: "\ta\t" },
                { tag: "UTF-8", bytes: "\u00c3\u00bc", content: "ü" },
                { tag: "lines of Windows", bytes: "a\r\nb\r\n", content: "a\nb\n" },
                { tag: "byte order mark", bytes: "\u00ef\u00bb\u00bfa", content: "a" },
                { tag: "control characters", bytes: "\u0001\v\f\u007f", content: "\u0001\v\f\u007f" }
            ];
        }

        //! A saved file has the same bytes.
        function test_load(data) {
            editor.fileContent = "before";
            const path = testFiles.write("loaded", data.bytes);
            compare(editor.loadFile(path), true);
            compare(editor.fileContent, data.content);
            compare(editor.filePath, path);
            compare(part("pathText").text, path);
            compare(part("saveButton").enabled, true);
            compare(editor.modified, false);
            compare(editor.saveFile(), true);
            compare(testFiles.bytesOf("loaded"), data.bytes);
            compare(message(), "");
        }

        //! The characters that FileCheck lets pass. Without most of the ideographs, whose layout is slow.
        function test_everyCharacterSurvives() {
            let text = "";
            for (let code = 1; code < 0x10000; code = code === 0x3100 ? 0xf900 : code + 1) {
                const excluded = [0x0d, 0xa0, 0x2028, 0x2029, 0xfdd0, 0xfdd1];
                if (!excluded.includes(code) && code !== 0xfeff)
                    text += String.fromCharCode(code);
            }
            text += "\ud83d\ude00";
            verify(realFileService.writeFile(testFiles.path("all"), text));
            compare(editor.loadFile(testFiles.path("all")), true);
            verify(editor.fileContent === text);
        }

        function test_refused_data() {
            return [
                { tag: "missing", path: () => testFiles.path("nowhere"), message: "There is no file %1." },
                { tag: "folder", path: () => testFiles.makeDirectory("folder"), message: "%1 is a folder." },
                { tag: "FIFO", path: () => testFiles.makeFifo("fifo"), message: "%1 is not a regular file." },
                { tag: "NUL", path: () => testFiles.write("binary", "a\u0000b"),
                  message: "%1 isn't a text file, or its encoding isn't that of your system." },
                { tag: "Latin-1", path: () => testFiles.write("latin", "\u00fc"),
                  message: "%1 isn't a text file, or its encoding isn't that of your system." },
                { tag: "mixed lines", path: () => testFiles.write("mixed", "a\r\nb\n"),
                  message: "%1 has special characters or mixed line breaks that this editor would change. Use another editor." },
                { tag: "large", path: () => testFiles.writeSparse("large", 5 * 1024 * 1024 + 1),
                  message: "%1 is too large for this editor: it has more than 5 MB." },
                { tag: "no path", path: () => "", message: "There is no file ." }
            ];
        }

        function test_refused(data) {
            const shown = testFiles.write("shown", "shown");
            editor.loadFile(shown);
            type("x");
            const path = data.path();
            compare(editor.loadFile(path), false);
            compare(editor.fileContent, "xshown");
            compare(editor.filePath, shown);
            compare(editor.modified, true);
            compare(message(), data.message.replace("%1", path));
            compare(part("editorMessage").textFormat, Text.PlainText);
            mouseClick(part("dismissButton"));
            compare(message(), "");
            verify(part("codeArea").activeFocus);
        }

        function test_unreadable() {
            const path = testFiles.write("locked", "x");
            scene.files = createTemporaryObject(fakeFiles, root, { "content": "" });
            if (!testFiles.makeUnreadable("locked"))
                skip("this user may read everything");
            compare(editor.loadFile(path), false);
            compare(message(), "You have no permission to read " + path + ".");
        }

        // ---- Saving

        function test_save() {
            const path = testFiles.write("saved", "a");
            editor.loadFile(path);
            type("x");
            compare(editor.modified, true);
            compare(part("modifiedText").visible, true);
            mouseClick(part("saveButton"));
            compare(testFiles.bytesOf("saved"), "xa");
            compare(editor.modified, false);
            type("y");
            keyClick("s", Qt.ControlModifier);
            compare(testFiles.bytesOf("saved"), "xya");
        }

        function test_saveWithoutAPath() {
            editor.fileContent = "a";
            compare(part("saveButton").enabled, false);
            compare(editor.saveFile(), false);
            keyClick("s", Qt.ControlModifier);
            compare(editor.modified, true);
        }

        function test_failedSave_data() {
            return [
                { tag: "can't be opened", opens: false, message: "%1 couldn't be saved. Check that you may write to it." },
                { tag: "disk full", opens: true,
                  message: "%1 wasn't saved completely: the disk is full, or its encoding lacks some characters. Your text is still here." }
            ];
        }

        function test_failedSave(data) {
            scene.files = createTemporaryObject(fakeFiles, root, { "content": "b", "opens": data.opens });
            const path = testFiles.write("failing", "b");
            editor.loadFile(path);
            type("x");
            compare(editor.saveFile(), false);
            compare(message(), data.message.replace("%1", path));
            compare(editor.modified, true);
            compare(editor.fileContent, "xb");
        }

        function test_saveOverAFifo() {
            const path = testFiles.write("replaced", "b");
            editor.loadFile(path);
            testFiles.remove("replaced");
            testFiles.makeFifo("replaced");
            compare(editor.saveFile(), false);
            compare(message(), path + " is not a regular file.");
        }

        function test_fileChangedOnDisk_data() {
            return [
                { tag: "overwrite", answer: "Overwrite", content: "xa", bytes: "xa" },
                { tag: "load again", answer: "Load Again", content: "other", bytes: "other" },
                { tag: "cancel", answer: "Cancel", content: "xa", bytes: "other" }
            ];
        }

        function test_fileChangedOnDisk(data) {
            editor.loadFile(testFiles.write("changed", "a"));
            type("x");
            testFiles.write("changed", "other");
            mouseClick(part("saveButton"));
            compare(testFiles.bytesOf("changed"), "other");
            answer("changedDialog", data.answer);
            compare(editor.fileContent, data.content);
            compare(testFiles.bytesOf("changed"), data.bytes);
            compare(isOpen("changedDialog"), false);
        }

        function test_removedFileIsSavedAgain() {
            editor.loadFile(testFiles.write("removed", "a"));
            testFiles.remove("removed");
            editor.save();
            compare(testFiles.bytesOf("removed"), "a");
        }

        // ---- Unsaved changes

        function test_unsavedChanges_data() {
            return [
                { tag: "save", answer: "Save", content: "next", bytes: "xa" },
                { tag: "discard", answer: "Discard", content: "next", bytes: "a" },
                { tag: "cancel", answer: "Cancel", content: "xa", bytes: "a" }
            ];
        }

        function test_unsavedChanges(data) {
            editor.loadFile(testFiles.write("unsaved", "a"));
            const next = testFiles.write("next", "next");
            type("x");
            editor.openFile(next);
            compare(editor.fileContent, "xa");
            answer("unsavedDialog", data.answer);
            compare(editor.fileContent, data.content);
            compare(testFiles.bytesOf("unsaved"), data.bytes);
        }

        function test_unsavedChangesOfAChangedFile() {
            editor.loadFile(testFiles.write("unsaved", "a"));
            type("x");
            testFiles.write("unsaved", "other");
            editor.openFile(testFiles.write("next", "next"));
            answer("unsavedDialog", "Save");
            answer("changedDialog", "Overwrite");
            compare(testFiles.bytesOf("unsaved"), "xa");
            compare(editor.fileContent, "xa");
        }

        function test_textWithoutAPathCantBeSaved() {
            type("x");
            editor.openFile(testFiles.write("next", "next"));
            compare(answers("unsavedDialog").map(item => item.label), ["Discard", "Cancel"]);
            answer("unsavedDialog", "Discard");
            compare(editor.fileContent, "next");
        }

        function test_noQuestionWithoutChanges() {
            editor.openFile(testFiles.write("next", "next"));
            compare(editor.fileContent, "next");
            compare(isOpen("unsavedDialog"), false);
        }

        function test_buttonsAskFirst_data() {
            return [
                { tag: "new", button: "newButton", dialog: "newDialog" },
                { tag: "open", button: "openButton", dialog: "openDialog" }
            ];
        }

        function test_buttonsAskFirst(data) {
            type("x");
            mouseClick(part(data.button));
            compare(isOpen(data.dialog), false);
            answer("unsavedDialog", "Discard");
            compare(isOpen(data.dialog), true);
            keyClick(Qt.Key_Escape);
            compare(editor.fileContent, "x");
        }

        // ---- Dialogs

        function test_dialogTexts_data() {
            return [
                { tag: "new", button: "newButton", dialog: "newDialog", title: "New File", label: "File Path:", placeholder: "" },
                { tag: "open", button: "openButton", dialog: "openDialog", title: "Open File", label: "File Path:", placeholder: "" },
                { tag: "generate", button: "generateButton", dialog: "generateDialog", title: "Generate Code",
                  label: "Prompt:", placeholder: "Describe what code you want to generate..." }
            ];
        }

        function test_dialogTexts(data) {
            mouseClick(part(data.button));
            const dialog = part(data.dialog);
            verify(dialog.visible);
            compare(dialog.title, data.title);
            compare(dialog.fieldLabel, data.label);
            const field = findChild(dialog, "dialogField");
            compare(field.Accessible.name, data.label);
            compare(field.placeholderText, data.placeholder);
            verify(field.activeFocus);
            keyClick(Qt.Key_Return); // nothing to accept
            verify(dialog.visible);
            compare(findChild(dialog, "acceptButton").enabled, false);
            keyClick(Qt.Key_Escape);
            verify(!dialog.visible);
        }

        function fill(dialog, text) {
            findChild(part(dialog), "dialogField").text = text;
            keyClick(Qt.Key_Return);
        }

        function test_newFile() {
            editor.loadFile(testFiles.write("old", "old\r\n"));
            const path = testFiles.path("created");
            mouseClick(part("newButton"));
            fill("newDialog", path);
            compare(isOpen("newDialog"), false);
            compare(editor.fileContent, "");
            compare(editor.filePath, path);
            compare(editor.modified, false);
            compare(testFiles.bytesOf("created"), "");
            editor.fileContent = "a\nb";
            editor.save();
            compare(testFiles.bytesOf("created"), "a\nb");
        }

        function test_failedNewFile_data() {
            return [
                { tag: "exists", path: () => testFiles.write("existing", "a"), error: "%1 exists already." },
                { tag: "no folder", path: () => testFiles.path("nowhere/x"),
                  error: "%1 couldn't be created. Check that you may write to its folder." }
            ];
        }

        function test_failedNewFile(data) {
            const path = data.path();
            mouseClick(part("newButton"));
            fill("newDialog", path);
            compare(isOpen("newDialog"), true);
            const error = findChild(part("newDialog"), "dialogError");
            compare(error.text, data.error.replace("%1", path));
            verify(error.visible);
            keyClick("x");
            compare(error.visible, false);
            compare(editor.filePath, "");
        }

        function test_openFile() {
            const path = testFiles.write("opened", "opened");
            mouseClick(part("openButton"));
            fill("openDialog", path);
            compare(isOpen("openDialog"), false);
            compare(editor.fileContent, "opened");
            mouseClick(part("openButton"));
            compare(findChild(part("openDialog"), "dialogField").text, "");
            fill("openDialog", testFiles.path("nowhere"));
            compare(isOpen("openDialog"), false);
            compare(editor.fileContent, "opened");
            compare(message(), "There is no file " + testFiles.path("nowhere") + ".");
        }

        function test_generate() {
            mouseClick(part("generateButton"));
            fill("generateDialog", "a loop");
            compare(sdk.takeCalls(), ["generateCode(a loop)"]);
            compare(isOpen("generateDialog"), false);
        }

        // ---- Code of the bridge

        function test_codeIsInserted() {
            editor.fileContent = "one two";
            part("codeArea").cursorPosition = 4;
            sdk.codeGenerated("<b>&\n");
            compare(editor.fileContent, "one <b>&\ntwo");
            compare(editor.modified, true);
            editor.insertCode("2");
            compare(editor.fileContent, "one <b>&\n2two");
            sdk.codeGenerated("");
            compare(editor.fileContent, "one <b>&\n2two");
        }

        function test_codeIsReplaced() {
            editor.loadFile(testFiles.write("edited", "one two"));
            sdk.codeEdited("<b>new</b>");
            compare(editor.fileContent, "<b>new</b>");
            compare(editor.modified, true);
            compare(testFiles.bytesOf("edited"), "one two");
            const area = part("codeArea");
            area.undo();
            while (area.canUndo && editor.fileContent === "")
                area.undo();
            compare(editor.fileContent, "one two");
            sdk.codeEdited("");
            compare(editor.fileContent, "");
        }

        // ---- Keyboard

        function test_leavingTheText_data() {
            return [
                { tag: "Escape", key: Qt.Key_Escape, modifiers: Qt.NoModifier, to: "after" },
                { tag: "Ctrl+Tab", key: Qt.Key_Tab, modifiers: Qt.ControlModifier, to: "after" },
                { tag: "Ctrl+Shift+Tab", key: Qt.Key_Backtab, modifiers: Qt.ControlModifier | Qt.ShiftModifier, to: "generateButton" }
            ];
        }

        function test_leavingTheText(data) {
            const area = part("codeArea");
            area.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            compare(editor.fileContent, "\t");
            keyClick(data.key, data.modifiers);
            compare(focused().objectName, data.to);
            compare(editor.fileContent, "\t");
        }

        function test_tabOrder() {
            editor.filePath = "/nowhere/x";
            part("before").forceActiveFocus(Qt.TabFocusReason);
            const reached = [];
            for (let i = 0; i < 5; ++i) {
                keyClick(Qt.Key_Tab);
                reached.push(focused().objectName);
                verify(focused().Accessible.name !== "");
            }
            compare(reached, ["newButton", "openButton", "saveButton", "generateButton", "codeArea"]);
        }

        //! The cursor stays in view.
        function test_theTextScrolls() {
            editor.fileContent = "x\n".repeat(1000) + "y".repeat(1000);
            const area = part("codeArea");
            area.forceActiveFocus();
            keyClick(Qt.Key_End, Qt.ControlModifier);
            const place = area.mapToItem(editor, area.cursorRectangle.x, area.cursorRectangle.y);
            verify(place.x > 0 && place.x < editor.width);
            verify(place.y > 0 && place.y < editor.height);
        }
    }
}
