// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

.import "ConfigObject.js" as ConfigObject

// The rules of the section "permission": what agents may do. "ask" is the default, which the file doesn't name.

const choices = ["ask", "allow", "deny"];

const fields = [
    { key: "read", label: "Read Files" },
    { key: "edit", label: "Edit Files" },
    { key: "glob", label: "Glob Patterns" },
    { key: "grep", label: "Grep Search" },
    { key: "list", label: "List Directory" },
    { key: "bash", label: "Bash Commands" },
    { key: "task", label: "Task Execution" },
    { key: "external_directory", label: "External Directory" },
    { key: "todowrite", label: "Todo Write" },
    { key: "todoread", label: "Todo Read" },
    { key: "webfetch", label: "Web Fetch" },
    { key: "websearch", label: "Web Search" },
    { key: "codesearch", label: "Code Search" },
    { key: "lsp", label: "LSP" },
    { key: "doom_loop", label: "Doom Loop" }
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
