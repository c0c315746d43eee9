// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

.import "../logic/Translatable.js" as Translatable
.import "ConfigObject.js" as ConfigObject

// The fields of the sections "mcp" and "provider".

const mark = Translatable.mark;

const types = ["local", "remote"];

function isRemote(server) {
    return ConfigObject.get(server, "type") === "remote";
}

const isLocal = server => !isRemote(server);

const serverFields = [
    { key: "type", label: mark("Type:"), control: "choice", choices: types, fallback: "local" },
    { key: "command", label: mark("Command:"), control: "line", format: "words", isShown: isLocal },
    { key: "environment", label: mark("Environment Variables (JSON):"), control: "area", format: "json", isShown: isLocal },
    { key: "url", label: mark("URL:"), control: "line", isShown: isRemote },
    { key: "headers", label: mark("Headers (JSON):"), control: "area", format: "json", isShown: isRemote },
    { key: "enabled", label: mark("Enabled:"), control: "check", fallback: true },
    { key: "timeout", label: mark("Timeout (ms):"), control: "number", from: 1000, to: 60000, step: 1000, fallback: 5000 }
];

function newServer(type) {
    return { type: type, enabled: true };
}

const providerFields = [
    { key: "api", label: mark("API Endpoint:"), control: "line" },
    { key: "name", label: mark("Name:"), control: "line" },
    { key: "id", label: mark("ID:"), control: "line" },
    { key: "npm", label: mark("NPM Package:"), control: "line" },
    { key: "env", label: mark("Environment Variables (comma-separated):"), control: "line", format: "list" },
    { key: "options", label: mark("Options (JSON):"), control: "area", format: "json" },
    { key: "whitelist", label: mark("Model Whitelist (comma-separated):"), control: "line", format: "list" },
    { key: "blacklist", label: mark("Model Blacklist (comma-separated):"), control: "line", format: "list" }
];

/** A section after a field of one entry was edited. An empty value removes the field; the entry stays. */
function withField(entries, name, key, value) {
    return ConfigObject.withValue(entries, name, ConfigObject.edited(ConfigObject.section(entries, name), key, value));
}
