// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

.import "../logic/Translatable.js" as Translatable
.import "ConfigObject.js" as ConfigObject

// The rules of the section "tools": which tools the agents have.

const mark = Translatable.mark;

const labels = {
    read: mark("Read"),
    edit: mark("Edit"),
    glob: mark("Glob"),
    grep: mark("Grep"),
    list: mark("List"),
    bash: mark("Bash"),
    task: mark("Task"),
    external_directory: mark("External directory"),
    todowrite: mark("Todowrite"),
    todoread: mark("Todoread"),
    webfetch: mark("Webfetch"),
    websearch: mark("Websearch"),
    codesearch: mark("Codesearch"),
    lsp: mark("Lsp")
};

const knownTools = Object.keys(labels);

/** What the check box of a known tool shows. */
function labelOf(tool, tr) {
    return Translatable.translated(labels[tool], tr);
}

function isOn(tools, tool) {
    return ConfigObject.get(tools, tool) === true;
}

/** Intentional: a tool that is turned off has no key, so that the agent tool's own default applies. */
function withTool(tools, tool, isOn) {
    return isOn ? ConfigObject.withValue(tools, tool, true) : ConfigObject.without(tools, tool);
}

function customTools(tools) {
    return Object.keys(tools).filter(tool => !knownTools.includes(tool));
}
