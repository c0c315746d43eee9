// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra 1.0
import org.kde.loomra.components.controls 1.0

import "../logic/Native.js" as Native
import "EditorText.js" as EditorText

//! The file in the code editor: loads and saves it without losing any of it.
QtObject {
    id: controller

    property QtObject files: typeof fileService !== "undefined" ? fileService : null
    property QtObject sdk: typeof loomraSDK !== "undefined" ? loomraSDK : null
    //! The text area.
    required property Item area

    property string filePath: ""
    //! Whether the text was edited since it was loaded or saved.
    property bool modified: false
    //! What the user has to know, "" if nothing.
    property string message: ""

    //! Larger files make the editor slow. In bytes.
    readonly property int maximumSize: 5 * 1024 * 1024
    //! How the file is written, see FileCheck.
    property var format: ({})
    //! The state of the file when it was loaded or saved, see FileCheck.
    property string stamp: ""
    //! Whether the text changes without the user or the bridge.
    property bool isShowing: false

    readonly property FileCheck check: FileCheck {}
    readonly property Connections edits: Connections {
        target: controller.area

        function onTextChanged() {
            if (!controller.isShowing)
                controller.modified = true;
        }
    }

    //! Reports what happened to a file. @return false
    function fail(key, path) {
        message = EditorText.message(key, path, Translation.tr);
        return false;
    }

    function show(path, text, foundFormat) {
        isShowing = true;
        area.text = text;
        area.cursorPosition = 0;
        isShowing = false;
        filePath = path;
        format = foundFormat;
        stamp = check.stamp(path);
        modified = false;
        message = "";
    }

    //! Shows a file. If that fails, a message tells why, and nothing else changes.
    //! @return whether the file is shown
    function loadFile(path) {
        if (!Native.offers(files, "readFile"))
            return false;
        const found = check.examineText(path, maximumSize);
        if (EditorText.refusedKinds.includes(found.kind))
            return fail(found.kind, path);
        // Not even opened if it is empty, because files of the kernel that seem empty may block.
        const text = found.kind === "file" && found.size === 0 ? "" : files.readFile(path);
        if (text === "" && !Native.call(files, "fileExists", path))
            return fail("missing", path);
        show(path, text, found);
        return true;
    }

    //! Creates an empty file and shows it. @return an error message, "" if it is shown
    function newFile(path) {
        if (Native.call(files, "createFile", path) === true) {
            show(path, "", {});
            return "";
        }
        const exists = Native.call(files, "fileExists", path) === true;
        return EditorText.message(exists ? "exists" : "notCreated", path, Translation.tr);
    }

    //! Whether another program has written the file since it was loaded or saved. One that was removed doesn't count.
    function changedOnDisk() {
        const now = check.stamp(filePath);
        return now !== "" && now !== stamp;
    }

    //! Writes the text to the file. If that fails, a message tells why. @return whether all of it was written
    function saveFile() {
        if (filePath === "" || !Native.offers(files, "writeFile"))
            return false;
        const kind = check.examine(filePath).kind;
        if (kind === "folder" || kind === "special")
            return fail(kind, filePath);
        const text = area.text;
        if (files.writeFile(filePath, EditorText.asWritten(text, format)) !== true)
            return fail("notWritten", filePath);
        stamp = check.stamp(filePath);
        // The service notices only errors of opening.
        if (files.readFile(filePath) !== text)
            return fail("incomplete", filePath);
        modified = false;
        message = "";
        return true;
    }

    //! Inserts code at the cursor.
    function insertCode(code) {
        area.insert(area.cursorPosition, code);
    }

    //! Replaces the text. Unlike a new value of its property, this can be undone.
    function replaceCode(code) {
        const position = area.cursorPosition;
        area.remove(0, area.length);
        area.insert(0, code);
        area.cursorPosition = Math.min(position, area.length);
    }

    function generateCode(prompt) {
        Native.call(sdk, "generateCode", prompt);
    }
}
