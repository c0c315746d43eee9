// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

.import "ConfigObject.js" as ConfigObject

// The fields of the sections "mcp" and "provider".

const types = ["local", "remote"];

function isRemote(server) {
    return ConfigObject.get(server, "type") === "remote";
}

const isLocal = server => !isRemote(server);

const serverFields = [
    { key: "type", label: "Type:", control: "choice", choices: types, fallback: "local" },
    { key: "command", label: "Command:", control: "line", format: "words", isShown: isLocal },
    { key: "environment", label: "Environment Variables (JSON):", control: "area", format: "json", isShown: isLocal },
    { key: "url", label: "URL:", control: "line", isShown: isRemote },
    { key: "headers", label: "Headers (JSON):", control: "area", format: "json", isShown: isRemote },
    { key: "enabled", label: "Enabled:", control: "check", fallback: true },
    { key: "timeout", label: "Timeout (ms):", control: "number", from: 1000, to: 60000, step: 1000, fallback: 5000 }
];

function newServer(type) {
    return { type: type, enabled: true };
}

const providerFields = [
    { key: "api", label: "API Endpoint:", control: "line" },
    { key: "name", label: "Name:", control: "line" },
    { key: "id", label: "ID:", control: "line" },
    { key: "npm", label: "NPM Package:", control: "line" },
    { key: "env", label: "Environment Variables (comma-separated):", control: "line", format: "list" },
    { key: "options", label: "Options (JSON):", control: "area", format: "json" },
    { key: "whitelist", label: "Model Whitelist (comma-separated):", control: "line", format: "list" },
    { key: "blacklist", label: "Model Blacklist (comma-separated):", control: "line", format: "list" }
];

/** A section after a field of one entry was edited. An empty value removes the field; the entry stays. */
function withField(entries, name, key, value) {
    return ConfigObject.withValue(entries, name, ConfigObject.edited(ConfigObject.section(entries, name), key, value));
}
