// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

.import "../logic/Translatable.js" as Translatable
.import "ConfigObject.js" as ConfigObject

// The rules of the agents in the agent tool's configuration.

const mark = Translatable.mark;

/** Names of an agent's fields. As names of agents they come from a file whose fields are one level too high. */
const invalidNames = ["mode", "model", "prompt", "description", "temperature", "top_p", "steps", "color", "disable",
                      "disabled", "options"];

const modes = ["primary", "subagent", "all"];

const fields = [
    { key: "model", label: mark("Model:"), control: "line", placeholder: mark("e.g., anthropic/claude-3-opus") },
    { key: "temperature", label: mark("Temperature:"), control: "number", scale: 100, from: 0, to: 200, fallback: 100 },
    { key: "top_p", label: mark("Top P:"), control: "number", scale: 100, from: 0, to: 100, fallback: 100 },
    { key: "prompt", label: mark("System Prompt:"), control: "area" },
    { key: "description", label: mark("Description:"), control: "line", placeholder: mark("When to use this agent") },
    { key: "mode", label: mark("Mode:"), control: "choice", choices: modes, fallback: "primary" },
    { key: "steps", label: mark("Max Steps:"), control: "number", from: 1, to: 1000, fallback: 50, alias: "maxSteps" },
    { key: "color", label: mark("Color (Hex):"), control: "line", placeholder: "#FF5733" },
    { key: "disable", label: mark("Disabled:"), control: "check" },
    { key: "options", label: mark("Options (key-value pairs):"), control: "pairs" }
];

/** The fields of the dialog for a new agent. */
const newFields = fields.map(row => row.key === "mode" ? ConfigObject.withValue(row, "control", "radio") : row);

/** Sections that the editor shows besides the agents. */
const otherSections = ["permission", "tools", "mcp", "provider"];

function isValidName(name) {
    return name !== "" && !invalidNames.includes(name);
}

/** Whether the file has fields where agents belong. */
function needsCleaning(agents) {
    return ConfigObject.isObject(agents)
        && Object.keys(agents).some(name => !isValidName(name) && !ConfigObject.isObject(agents[name]));
}

function cleaned(agents) {
    return ConfigObject.filtered(agents, (name, agent) => ConfigObject.isObject(agent) && isValidName(name));
}

/** All entries of the agents' section. Older files call them modes. */
function agentsOf(config) {
    const agents = ConfigObject.section(config, "agent");
    return ConfigObject.isEmpty(agents) ? ConfigObject.section(config, "mode") : agents;
}

function enabledAgents(config) {
    return ConfigObject.filtered(cleaned(agentsOf(config)), (name, agent) =>
        !ConfigObject.get(agent, "disable") && !ConfigObject.get(agent, "disabled"));
}

/** The agents after a field of one was edited. An empty value removes the field, and an agent without any is removed. */
function withField(agents, name, key, value) {
    // The box "Disabled" is off by default.
    const stored = key === "disable" && value === false ? undefined : value;
    let agent = ConfigObject.edited(ConfigObject.section(agents, name), key, stored);
    // The other name of the field would win again if the field were removed.
    const row = fields.find(field => field.key === key);
    if (row && row.alias)
        agent = ConfigObject.without(agent, row.alias);
    return ConfigObject.withEntry(agents, name, agent);
}

/** What the text of an option stands for: true, false, a number or the text itself. */
function optionValue(text) {
    if (text === "true" || text === "false")
        return text === "true";
    const isNumber = /^-?(0|[1-9]\d*)(\.\d+)?([eE][+-]?\d+)?$/.test(text);
    // Digits that a number can't keep, such as those of an account, stay a text.
    const isExact = isFinite(Number(text)) && (!/^-?\d+$/.test(text) || Number.isSafeInteger(Number(text)));
    return isNumber && isExact ? Number(text) : text;
}

/**
 * The options after one was edited, or removed if the text is undefined.
 * @return undefined if there are none left
 */
function withOption(options, key, text) {
    const result = text === undefined ? ConfigObject.without(options, key)
                                      : ConfigObject.withValue(options, key, optionValue(text));
    return ConfigObject.isEmpty(result) ? undefined : result;
}

/** The value that a field stands for while it isn't stored. */
function defaultOf(row) {
    return typeof row.fallback === "number" ? row.fallback / (row.scale || 1) : row.fallback;
}

/** A new agent: the values that are not the default. */
function newAgent(values) {
    const omitted = ["", undefined, null, false];
    return ConfigObject.filtered(values, (key, value) => {
        const row = fields.find(field => field.key === key);
        return row !== undefined && !omitted.includes(value) && value !== defaultOf(row);
    });
}

/** A name with a capital letter, for headings. */
function capitalized(name) {
    return name.charAt(0).toUpperCase() + name.slice(1);
}

/** The text of the editor. */
function editorText(config, schema) {
    const shown = {};
    const own = ConfigObject.get(config, "$schema");
    ConfigObject.define(shown, "$schema", own === undefined ? schema : own);
    const agents = agentsOf(config);
    ConfigObject.define(shown, "agent", agents);
    if (!ConfigObject.isEmpty(agents))
        otherSections.filter(key => ConfigObject.has(config, key))
            .forEach(key => ConfigObject.define(shown, key, config[key]));
    return ConfigObject.asJson(shown);
}

/**
 * The agents in a text of the editor.
 * @return { agents, error }; the error is empty, the message of the parser, or "object" if there is no object
 */
function fromEditor(text) {
    let parsed;
    try {
        parsed = JSON.parse(text);
    } catch (error) {
        return { agents: null, error: String(error.message) };
    }
    if (!ConfigObject.isObject(parsed))
        return { agents: null, error: "object" };
    const key = ["agent", "mode"].find(name => ConfigObject.has(parsed, name));
    // While a key is being renamed, the text is valid without it: the other sections are no agents then.
    const agents = key ? parsed[key]
                       : ConfigObject.filtered(parsed, name => name !== "$schema" && !otherSections.includes(name));
    return ConfigObject.isObject(agents) ? { agents: agents, error: "" } : { agents: null, error: "object" };
}
