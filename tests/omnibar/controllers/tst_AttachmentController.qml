// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"
import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/Attachments.js" as Attachments

TestCase {
    id: test
    name: "AttachmentController"

    property FakeBar bar
    property AttachmentController attachments
    //! What the check finds; null fails the test that reaches it.
    property var found: null

    readonly property QtObject check: QtObject {
        function examine(path) {
            if (test.found === null)
                test.fail("the file " + path + " was examined");
            return test.found;
        }
    }
    //! A text file that exists on every machine that runs the tests.
    readonly property string ownUrl: String(Qt.resolvedUrl("tst_AttachmentController.qml"))
    readonly property string ownName: "tst_AttachmentController.qml"

    Component { id: bars; FakeBar {} }
    Component { id: controllers; AttachmentController {} }

    function init() {
        bar = createTemporaryObject(bars, test);
        attachments = createTemporaryObject(controllers, test, { "bar": bar });
        found = null;
    }

    function fill(count) {
        const files = [{ "name": "a", "path": "/a", "content": "one", "chars": 3 },
                       { "name": "b", "path": "/b", "content": "two", "chars": 3 }];
        attachments.slashAttachedFiles = files.slice(0, count);
    }

    function row(key, values) {
        return "appendSystemMessage(" + Attachments.row(key, bar.tr, values) + ")";
    }

    function test_initialState() {
        compare([attachments.slashAttachedFiles, attachments.maxAttachedFiles, attachments.maxFileChars, attachments.fileDialogOpen],
                [[], 2, 2000, false]);
    }

    // ---- Commands

    function test_attachOpensTheDialog_data() {
        return [{ tag: "first file", files: 0 }, { tag: "second file", files: 1 }];
    }
    function test_attachOpensTheDialog(data) {
        fill(data.files);
        attachments.chooseFile();
        compare(bar.takeCalls(), [row("kinds")]);
        compare(attachments.fileDialogOpen, true);
    }

    function test_thirdFileIsRefusedBeforeTheDialog() {
        fill(2);
        attachments.chooseFile();
        compare(bar.takeCalls(), [row("full")]);
        compare(attachments.fileDialogOpen, false);
    }

    function test_detach_data() {
        return [
            { tag: "nothing", files: 0, key: "nothing" },
            { tag: "one", files: 1, key: "removed" },
            { tag: "two", files: 2, key: "removed" }
        ];
    }
    function test_detach(data) {
        fill(data.files);
        attachments.detachFiles();
        compare(bar.takeCalls(), [row(data.key, { "count": data.files })]);
        compare(attachments.slashAttachedFiles, []);
    }

    function test_removeOne() {
        fill(2);
        attachments.removeAttachedFile(0);
        compare(attachments.slashAttachedFiles.map(file => file.name), ["b"]);
        attachments.removeAttachedFile(5);
        compare(attachments.slashAttachedFiles.length, 1);
        compare(bar.takeCalls(), []);
    }

    function test_filesGoWithOnePrompt() {
        compare(attachments.buildFileContextPrefix(), "");
        compare(attachments.takeFileContext(), "");
        fill(2);
        const prefix = "--- File: a (path: /a) ---\n```\none\n```\n\n--- File: b (path: /b) ---\n```\ntwo\n```\n\n";
        compare(attachments.buildFileContextPrefix(), prefix);
        compare(attachments.takeFileContext(), prefix);
        compare(attachments.slashAttachedFiles, []);
    }

    // ---- Selected files

    function test_refusedUnseen_data() {
        return [
            { tag: "no name", url: "file:///", files: 0, key: "noName" },
            { tag: "no file", url: "http://127.0.0.1/a.txt", files: 0, key: "noName" },
            { tag: "binary", url: "file:///a.PNG", files: 0, key: "binary", name: "a.PNG" },
            { tag: "binary before the limit", url: "file:///a.png", files: 2, key: "binary", name: "a.png" },
            { tag: "third", url: "file:///a.txt", files: 2, key: "fullNow" }
        ];
    }
    function test_refusedUnseen(data) {
        fill(data.files);
        attachments.attachFile(data.url, check);
        compare(bar.takeCalls(), [row(data.key, { "name": data.name || "" })]);
        compare(attachments.slashAttachedFiles.length, data.files);
    }

    function test_refusedUnread_data() {
        return ["missing", "folder", "special", "unreadable"].map(kind => ({ tag: kind, found: { "kind": kind, "size": 0 }, key: kind }))
            .concat({ tag: "empty", found: { "kind": "file", "size": 0 }, key: "empty" },
                    { tag: "huge", found: { "kind": "file", "size": 2147483648 }, key: "large" });
    }
    function test_refusedUnread(data) {
        found = data.found;
        attachments.attachFile("file:///nowhere/50%25%20%FF.txt", check);
        compare(bar.takeCalls(), [row(data.key, { "name": "50% %FF.txt".replace(/%20/g, " ") })]);
        compare(attachments.slashAttachedFiles, []);
    }

    function test_attaches() {
        found = { "kind": "file", "size": 5 };
        attachments.attachFile(ownUrl, check);
        tryVerify(() => bar.calls.length > 0);
        const file = attachments.slashAttachedFiles[0];
        compare([file.name, file.path], [ownName, ownUrl.substring("file://".length)]);
        verify(file.content.startsWith("// SPDX-"));
        verify(file.chars > 2000);
        compare(file.content.length, 2000 + "\n…(truncated at 2000 chars)".length);
        compare(bar.takeCalls(), [row("attachedCut", file)]);
    }

    function test_vanishesAfterTheCheck() {
        found = { "kind": "file", "size": 5 };
        attachments.attachFile("file:///nowhere/a.txt", check);
        tryVerify(() => bar.calls.length > 0);
        compare(bar.takeCalls(), [row("failed", { "name": "a.txt", "status": 0 })]);
        compare(attachments.slashAttachedFiles, []);
    }

    function test_results_data() {
        const tooLong = "x".repeat(2001);
        return [
            { tag: "read", status: 200, content: "one", key: "attached", chars: 3 },
            { tag: "read without a status", status: 0, content: "one", key: "attached", chars: 3 },
            { tag: "cut", status: 200, content: tooLong, key: "attachedCut", chars: 2001 },
            { tag: "nothing but a mark", status: 200, content: "", key: "empty" },
            { tag: "not read", status: 0, content: "", key: "failed" },
            { tag: "status", status: 404, content: "Not found", key: "failed" }
        ];
    }
    function test_results(data) {
        attachments.handleContent("a.txt", "/a.txt", data.status, data.content);
        compare(bar.takeCalls(), [row(data.key, { "name": "a.txt", "status": data.status, "chars": data.chars })]);
        compare(attachments.slashAttachedFiles,
                data.chars ? [Attachments.entry("a.txt", "/a.txt", data.content)] : []);
    }

    function test_otherFilesWereFaster() {
        fill(2);
        attachments.handleContent("c", "/c", 200, "three");
        compare(bar.takeCalls(), [row("fullNow")]);
        compare(attachments.slashAttachedFiles.length, 2);
    }
}
