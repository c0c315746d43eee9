// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

/** The text before a question about attached files, "" without files. files: array of {name, path, content}. */
function contextPrefix(files) {
    return files.map(file => "--- File: " + file.name + " (path: " + file.path + ") ---\n"
                             + "```\n" + file.content + "\n```\n\n").join("");
}
