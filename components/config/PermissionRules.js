// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

.import "../logic/Translatable.js" as Translatable
.import "ConfigObject.js" as ConfigObject

// The rules of the section "permission": what agents may do. "ask" is the default, which the file doesn't name.

const mark = Translatable.mark;

const choices = ["ask", "allow", "deny"];

const fields = [
    { key: "read", label: mark("Read Files") },
    { key: "edit", label: mark("Edit Files") },
    { key: "glob", label: mark("Glob Patterns") },
    { key: "grep", label: mark("Grep Search") },
    { key: "list", label: mark("List Directory") },
    { key: "bash", label: mark("Bash Commands") },
    { key: "task", label: mark("Task Execution") },
    { key: "external_directory", label: mark("External Directory") },
    { key: "todowrite", label: mark("Todo Write") },
    { key: "todoread", label: mark("Todo Read") },
    { key: "webfetch", label: mark("Web Fetch") },
    { key: "websearch", label: mark("Web Search") },
    { key: "codesearch", label: mark("Code Search") },
    { key: "lsp", label: mark("LSP") },
    { key: "doom_loop", label: mark("Doom Loop") }
].map(row => Object.assign({ control: "choice", choices: choices, fallback: "ask" }, row));

/** Actions that may have a permission per path. */
const pathActions = ["read", "edit", "glob", "grep", "list", "bash", "task", "external_directory", "lsp"];

/** What a permission applied to before it was split by path. */
const anyPath = "*";

function withPermission(permissions, action, permission) {
    return ConfigObject.edited(permissions, action, permission === "ask" ? undefined : permission);
}

/** All permissions per path, one row { action, path, permission } each. */
function pathRows(permissions) {
    return ConfigObject.objectKeys(permissions).reduce((rows, action) => {
        Object.keys(permissions[action]).forEach(path =>
            rows.push({ action: action, path: path, permission: permissions[action][path] }));
        return rows;
    }, []);
}

/** "ask" removes the path, and an action without paths is removed. */
function withPath(permissions, action, path, permission) {
    const old = ConfigObject.get(permissions, action);
    // A permission for everything stays, as that of any other path.
    const paths = typeof old === "string" && old !== "ask" && permission !== "ask"
        ? ConfigObject.withValue({}, anyPath, old) : ConfigObject.section(permissions, action);
    if (permission === "ask" && !ConfigObject.isObject(old))
        return permissions;
    return ConfigObject.withEntry(permissions, action, withPermission(paths, path, permission));
}
