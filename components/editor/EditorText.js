// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../logic/Translatable.js" as Translatable

// What the code editor reports to the user.

const mark = Translatable.mark;

const messages = {
    missing: mark("There is no file {path}."),
    folder: mark("{path} is a folder."),
    special: mark("{path} is not a regular file."),
    unreadable: mark("You have no permission to read {path}."),
    large: mark("{path} is too large for this editor: it has more than 5 MB."),
    binary: mark("{path} isn't a text file, or its encoding isn't that of your system."),
    unsuitable: mark("{path} has special characters or mixed line breaks that this editor would change. Use another editor."),
    exists: mark("{path} exists already."),
    notCreated: mark("{path} couldn't be created. Check that you may write to its folder."),
    notWritten: mark("{path} couldn't be saved. Check that you may write to it."),
    incomplete: mark("{path} wasn't saved completely: the disk is full, or its encoding lacks some characters. Your text is still here.")
};

//! Files of these kinds, see FileCheck, are never opened.
const refusedKinds = ["folder", "special", "unreadable", "large", "binary", "unsuitable"];

/** A message about a file, translated by tr. */
function message(key, path, tr) {
    return Translatable.filled(Translatable.translated(messages[key], tr), { path: path });
}

/** The text to write for that of the editor. found: {lineBreak, byteOrderMark} of FileCheck. */
function asWritten(text, found) {
    const body = found.lineBreak === "\r\n" ? text.replace(/\n/g, "\r\n") : text;
    return found.byteOrderMark ? "\uFEFF" + body : body;
}
