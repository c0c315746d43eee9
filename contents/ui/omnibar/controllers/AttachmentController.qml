// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Attachments.js" as Attachments

//! Files that are attached to the next prompt.
Controller {
    id: attachments

    //! Objects with name, path, content, chars.
    property var slashAttachedFiles: []
    readonly property int maxAttachedFiles: Attachments.maxFiles
    readonly property int maxFileChars: Attachments.maxChars
    //! Whether the file dialog is open. It sets this to false when it closes.
    property bool fileDialogOpen: false
    readonly property bool isFull: slashAttachedFiles.length >= maxAttachedFiles

    function appendRow(key, values) {
        bar.appendSystemMessage(Attachments.row(key, bar.tr, values));
    }

    //! The command /attach: opens the file dialog.
    function chooseFile() {
        if (isFull) {
            appendRow("full");
            return;
        }
        appendRow("kinds");
        fileDialogOpen = true;
    }

    //! Reads and attaches a file. A row reports the result, which may come later.
    //! @param url of a local file, percent-encoded
    //! @param check object with a function examine(path), see FileCheck
    function attachFile(url, check) {
        const path = Attachments.pathOf(url);
        const name = Attachments.nameOf(path);
        if (name === "") {
            appendRow("noName");
        } else if (Attachments.isBinary(name)) {
            appendRow("binary", { "name": name });
        } else if (isFull) {
            appendRow("fullNow");
        } else {
            const refusal = Attachments.refusal(check.examine(path));
            if (refusal === "")
                read(url, name, path);
            else
                appendRow(refusal, { "name": name });
        }
    }

    function read(url, name, path) {
        const request = new XMLHttpRequest();
        request.onreadystatechange = () => {
            if (request.readyState === XMLHttpRequest.DONE)
                handleContent(name, path, request.status, request.responseText);
        };
        request.open("GET", url);
        request.send();
    }

    function handleContent(name, path, status, content) {
        // The file isn't empty, so a status of 0 without content means that it couldn't be read after all.
        if (status !== 200 && (status !== 0 || content === "")) {
            appendRow("failed", { "name": name, "status": status });
        } else if (content === "") {
            appendRow("empty", { "name": name });
        } else if (isFull) {
            appendRow("fullNow"); // another file was faster
        } else {
            const file = Attachments.entry(name, path, content);
            slashAttachedFiles = slashAttachedFiles.concat(file);
            appendRow(file.chars > maxFileChars ? "attachedCut" : "attached", file);
        }
    }

    //! The command /detach.
    function detachFiles() {
        const count = slashAttachedFiles.length;
        slashAttachedFiles = [];
        appendRow(count === 0 ? "nothing" : "removed", { "count": count });
    }

    function removeAttachedFile(index) {
        slashAttachedFiles = slashAttachedFiles.filter((file, position) => position !== index);
    }

    //! The attached files as text that goes before the question, "" if there are none.
    function buildFileContextPrefix() {
        return Attachments.contextPrefix(slashAttachedFiles);
    }

    //! Like buildFileContextPrefix(), and removes the files: they go with one prompt only.
    function takeFileContext() {
        const prefix = buildFileContextPrefix();
        if (slashAttachedFiles.length > 0)
            slashAttachedFiles = [];
        return prefix;
    }
}
