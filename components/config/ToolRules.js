// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

.import "ConfigObject.js" as ConfigObject

// The rules of the section "tools": which tools the agents have.

const knownTools = ["read", "edit", "glob", "grep", "list", "bash", "task", "external_directory", "todowrite", "todoread",
                    "webfetch", "websearch", "codesearch", "lsp"];

/** What a check box shows: "external_directory" is "External directory". */
function labelOf(tool) {
    return tool.charAt(0).toUpperCase() + tool.slice(1).replace(/_/g, " ");
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
