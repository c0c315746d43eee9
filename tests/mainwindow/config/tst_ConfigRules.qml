// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "../../../components/config/AgentConfig.js" as AgentConfig
import "../../../components/config/ConfigObject.js" as ConfigObject
import "../../../components/config/FieldText.js" as FieldText
import "../../../components/config/PermissionRules.js" as PermissionRules
import "../../../components/config/ServerRules.js" as ServerRules
import "../../../components/config/ToolRules.js" as ToolRules
import "../../../components/config/UsageNumbers.js" as UsageNumbers

//! The rules of the configuration pages. Objects are compared as JSON, because compare() ignores keys like "__proto__".
TestCase {
    id: test
    name: "ConfigRules"

    readonly property string hostile: '{"__proto__":{"a":1},"constructor":{"b":2},"toString":{"c":3}}'

    function same(actual, expected) {
        compare(JSON.stringify(actual), typeof expected === "string" ? expected : JSON.stringify(expected));
    }

    // ---- Objects

    function test_hostileKeysSurviveEachChange() {
        const object = JSON.parse(hostile);
        same(ConfigObject.withValue(object, "x", 1), hostile.replace(/}$/, ',"x":1}'));
        same(ConfigObject.without(object, "x"), hostile);
        same(ConfigObject.withValue({}, "__proto__", { y: 1 }), '{"__proto__":{"y":1}}');
        same(ConfigObject.without(object, "__proto__"), '{"constructor":{"b":2},"toString":{"c":3}}');
        same(ConfigObject.objectKeys(object), ["__proto__", "constructor", "toString"]);
        compare(({}).y, undefined);
    }

    function test_inheritedMembersAreNoKeys_data() {
        return ["__proto__", "constructor", "toString", "hasOwnProperty"].map(key => ({ tag: key, key: key }));
    }

    function test_inheritedMembersAreNoKeys(data) {
        compare(ConfigObject.get({}, data.key), undefined);
        same(ConfigObject.section({}, data.key), {});
        compare(ToolRules.isOn({}, data.key), false);
        same(AgentConfig.withField({}, data.key, "model", "m"), '{"' + data.key + '":{"model":"m"}}');
        same(PermissionRules.withPath({}, data.key, data.key, "deny"), '{"' + data.key + '":{"' + data.key + '":"deny"}}');
    }

    function test_sections_data() {
        return [
            { tag: "missing", config: {} },
            { tag: "null", config: { x: null } },
            { tag: "a list", config: { x: [1] } },
            { tag: "a text", config: { x: "text" } },
            { tag: "a number", config: { x: 5 } },
            { tag: "no object around", config: null },
            { tag: "a list around", config: [1] }
        ];
    }

    function test_sections(data) {
        same(ConfigObject.section(data.config, "x"), {});
    }

    function test_json() {
        compare(ConfigObject.asJson({ a: "\u00a0\u2028\u2029\ufdd0\ufdd1\r\n\u00e4" }),
                '{\n  "a": "\\u00a0\\u2028\\u2029\\ufdd0\\ufdd1\\r\\n\u00e4"\n}');
        compare(FieldText.formatOf({ format: "json" }).shown({ a: "\u00a0" }), '{\n  "a": "\\u00a0"\n}');
        verify(AgentConfig.editorText({ agent: { a: { prompt: "\u00a0" } } }, "").includes('"prompt": "\\u00a0"'));
    }

    function test_changesDontTouchTheOriginal() {
        const object = { a: { b: 1 } };
        AgentConfig.withField(object, "a", "b", 2);
        ConfigObject.without(object, "a");
        ServerRules.withField(object, "a", "b", "");
        same(object, { a: { b: 1 } });
    }

    // ---- Texts of fields

    function test_formats_data() {
        return [
            { tag: "text", format: "text", text: " a b ", value: " a b ", shown: " a b " },
            { tag: "words", format: "words", text: "  npx  -y\tserver ", value: ["npx", "-y", "server"], shown: "npx -y server" },
            { tag: "no words", format: "words", text: "  ", value: undefined, shown: "" },
            { tag: "list", format: "list", text: "a, b ,,c d,", value: ["a", "b", "c d"], shown: "a, b, c d" },
            { tag: "no list", format: "list", text: " , ", value: undefined, shown: "" },
            { tag: "json", format: "json", text: '{"a":[1]}', value: { a: [1] }, shown: '{\n  "a": [\n    1\n  ]\n}' },
            { tag: "no json", format: "json", text: " \n", value: undefined, shown: "" }
        ];
    }

    function test_formats(data) {
        const format = FieldText.formatOf({ format: data.format });
        const parsed = format.parse(data.text);
        compare(parsed.valid, true);
        compare(JSON.stringify(parsed.value), JSON.stringify(data.value));
        compare(format.shown(data.value), data.shown);
    }

    function test_invalidJson_data() {
        return ['{"a":', "5", "null", '"text"', "[1]", "{a: 1}"].map(text => ({ tag: text, text: text }));
    }

    function test_invalidJson(data) {
        compare(FieldText.formatOf({ format: "json" }).parse(data.text).valid, false);
    }

    //! Values of other types than expected are shown, so that nothing looks empty that isn't.
    function test_shownValues_data() {
        return [
            { tag: "number as text", format: "text", value: 5, shown: "5" },
            { tag: "object as text", format: "text", value: { a: 1 }, shown: '{"a":1}' },
            { tag: "null", format: "text", value: null, shown: "" },
            { tag: "text as words", format: "words", value: "npx -y", shown: "npx -y" },
            { tag: "text as list", format: "list", value: "a,b", shown: "a,b" },
            { tag: "objects in a list", format: "list", value: [{ a: 1 }], shown: '[{"a":1}]' },
            { tag: "text as json", format: "json", value: "text", shown: '"text"' },
            { tag: "default", format: undefined, value: "x", shown: "x" }
        ];
    }

    function test_shownValues(data) {
        compare(FieldText.formatOf({ format: data.format }).shown(data.value), data.shown);
    }

    // ---- Agents

    function test_agentFields() {
        same(AgentConfig.fields, [
            { key: "model", label: "Model:", control: "line", placeholder: "e.g., anthropic/claude-3-opus" },
            { key: "temperature", label: "Temperature:", control: "number", scale: 100, from: 0, to: 200, fallback: 100 },
            { key: "top_p", label: "Top P:", control: "number", scale: 100, from: 0, to: 100, fallback: 100 },
            { key: "prompt", label: "System Prompt:", control: "area" },
            { key: "description", label: "Description:", control: "line", placeholder: "When to use this agent" },
            { key: "mode", label: "Mode:", control: "choice", choices: ["primary", "subagent", "all"], fallback: "primary" },
            { key: "steps", label: "Max Steps:", control: "number", from: 1, to: 1000, fallback: 50, alias: "maxSteps" },
            { key: "color", label: "Color (Hex):", control: "line", placeholder: "#FF5733" },
            { key: "disable", label: "Disabled:", control: "check" },
            { key: "options", label: "Options (key-value pairs):", control: "pairs" }
        ]);
        same(AgentConfig.newFields.map(row => row.key), AgentConfig.fields.map(row => row.key));
        compare(AgentConfig.newFields[5].control, "radio");
    }

    function test_invalidNames_data() {
        return ["mode", "model", "prompt", "description", "temperature", "top_p", "steps", "color", "disable", "disabled",
                "options"].map(name => ({ tag: name, name: name }));
    }

    function test_invalidNames(data) {
        compare(AgentConfig.isValidName(data.name), false);
        const agents = ConfigObject.withValue({ build: { steps: 1 } }, data.name, {});
        same(AgentConfig.cleaned(agents), { build: { steps: 1 } });
        same(Object.keys(AgentConfig.enabledAgents({ agent: agents })), ["build"]);
    }

    function test_cleaning_data() {
        return [
            { tag: "nothing wrong", agents: { build: {} }, needed: false },
            { tag: "a field", agents: { build: {}, model: "m" }, needed: true },
            { tag: "an object of a field's name", agents: { build: {}, model: {} }, needed: false },
            { tag: "other values", agents: { build: {}, other: "text" }, needed: false },
            { tag: "a field and other values", agents: { build: {}, steps: 5, other: "text", list: [1] }, needed: true },
            { tag: "no agents", agents: undefined, needed: false },
            { tag: "a text", agents: "text", needed: false }
        ];
    }

    function test_cleaning(data) {
        compare(AgentConfig.needsCleaning(data.agents), data.needed);
        if (data.needed)
            same(AgentConfig.cleaned(data.agents), { build: {} });
    }

    function test_enabledAgents_data() {
        return [
            { tag: "agents", config: { agent: { a: {}, b: { mode: "all" } } }, names: ["a", "b"] },
            { tag: "disabled ones", config: { agent: { a: { disable: true }, b: { disabled: true }, c: { disable: false } } }, names: ["c"] },
            { tag: "modes", config: { agent: {}, mode: { a: {} } }, names: ["a"] },
            { tag: "agents before modes", config: { agent: { a: {} }, mode: { b: {} } }, names: ["a"] },
            { tag: "all agents disabled", config: { agent: { a: { disable: true } }, mode: { b: {} } }, names: [] },
            { tag: "values that are no objects", config: { agent: { a: "text", b: 5, c: null, d: [1], e: {} } }, names: ["e"] },
            { tag: "a text instead of agents", config: { agent: "text" }, names: [] },
            { tag: "nothing", config: {}, names: [] },
            { tag: "hostile names", config: { agent: JSON.parse(hostile) }, names: ["__proto__", "constructor", "toString"] }
        ];
    }

    function test_enabledAgents(data) {
        same(Object.keys(AgentConfig.enabledAgents(data.config)), data.names);
    }

    function test_editedFields_data() {
        return [
            { tag: "new", agent: {}, key: "model", value: "m", result: { a: { model: "m" }, z: {} } },
            { tag: "changed", agent: { x: 1, model: "m" }, key: "model", value: "n", result: { a: { x: 1, model: "n" }, z: {} } },
            { tag: "empty text", agent: { x: 1, model: "m" }, key: "model", value: "", result: { a: { x: 1 }, z: {} } },
            { tag: "undefined", agent: { x: 1, options: {} }, key: "options", value: undefined, result: { a: { x: 1 }, z: {} } },
            { tag: "null", agent: { x: 1, model: "m" }, key: "model", value: null, result: { a: { x: 1 }, z: {} } },
            { tag: "emptied agent", agent: { model: "m" }, key: "model", value: "", result: { z: {} } },
            { tag: "0 isn't empty", agent: {}, key: "temperature", value: 0, result: { a: { temperature: 0 }, z: {} } },
            { tag: "disabled", agent: {}, key: "disable", value: true, result: { a: { disable: true }, z: {} } },
            { tag: "not disabled", agent: { x: 1, disable: true }, key: "disable", value: false, result: { a: { x: 1 }, z: {} } },
            { tag: "the other name of a key", agent: { maxSteps: 5 }, key: "steps", value: 6, result: { a: { steps: 6 }, z: {} } }
        ];
    }

    function test_editedFields(data) {
        same(AgentConfig.withField({ a: data.agent, z: {} }, "a", data.key, data.value), data.result);
    }

    function test_options_data() {
        return [
            { tag: "true", text: "true", value: true },
            { tag: "false", text: "false", value: false },
            { tag: "a number", text: "42", value: 42 },
            { tag: "negative", text: "-1.5e3", value: -1500 },
            { tag: "0", text: "0", value: 0 },
            { tag: "a text", text: "high", value: "high" },
            { tag: "True", text: "True", value: "True" },
            { tag: "empty", text: "", value: "" },
            { tag: "whitespace", text: " 5", value: " 5" },
            { tag: "leading zeros", text: "007", value: "007" },
            { tag: "hexadecimal", text: "0x10", value: "0x10" },
            { tag: "infinite", text: "Infinity", value: "Infinity" },
            { tag: "too large", text: "1e999", value: "1e999" },
            { tag: "more digits than a number has", text: "12345678901234567890", value: "12345678901234567890" },
            { tag: "JSON", text: '{"a":1}', value: '{"a":1}' }
        ];
    }

    function test_options(data) {
        same(AgentConfig.withOption({ x: 1 }, "key", data.text), { x: 1, key: data.value });
    }

    function test_removedOptions() {
        same(AgentConfig.withOption({ x: 1, y: 2 }, "x", undefined), { y: 2 });
        compare(AgentConfig.withOption({ x: 1 }, "x", undefined), undefined);
    }

    function test_newAgent_data() {
        return [
            { tag: "nothing", values: {}, agent: {} },
            { tag: "all defaults", values: { model: "", temperature: 1, top_p: 1, prompt: "", description: "", mode: "primary", steps: 50, color: "", disable: false }, agent: {} },
            { tag: "everything else", values: { model: "m", temperature: 0.5, top_p: 0, prompt: "p", description: "d", mode: "all", steps: 1, color: "#fff", disable: true, options: { x: 1 } },
              agent: { model: "m", temperature: 0.5, top_p: 0, prompt: "p", description: "d", mode: "all", steps: 1, color: "#fff", disable: true, options: { x: 1 } } },
            { tag: "unknown keys", values: { other: 1, toString: 2 }, agent: {} }
        ];
    }

    function test_newAgent(data) {
        same(AgentConfig.newAgent(data.values), data.agent);
    }

    function test_editorText_data() {
        return [
            { tag: "no agents", config: { agent: {}, tools: { a: true } }, shown: { "$schema": "address", agent: {} } },
            { tag: "its own schema", config: { "$schema": "own", agent: {} }, shown: { "$schema": "own", agent: {} } },
            { tag: "everything", config: { provider: {}, mcp: {}, theme: "dark", tools: {}, permission: {}, agent: { a: {} } },
              shown: { "$schema": "address", agent: { a: {} }, permission: {}, tools: {}, mcp: {}, provider: {} } },
            { tag: "modes", config: { mode: { a: {} } }, shown: { "$schema": "address", agent: { a: {} } } },
            { tag: "only disabled agents", config: { agent: { a: { disable: true } } }, shown: { "$schema": "address", agent: { a: { disable: true } } } }
        ];
    }

    function test_editorText(data) {
        compare(AgentConfig.editorText(data.config, "address"), JSON.stringify(data.shown, null, 2));
    }

    function test_fromEditor_data() {
        return [
            { tag: "only the schema", text: '{"$schema":"x"}', agents: {} },
            { tag: "nothing", text: "{}", agents: {} },
            { tag: "agents", text: '{"$schema":"x","agent":{"a":{}},"tools":{}}', agents: { a: {} } },
            { tag: "modes", text: '{"mode":{"a":{}}}', agents: { a: {} } },
            { tag: "agents before modes", text: '{"mode":{"a":{}},"agent":{"b":{}}}', agents: { b: {} } },
            { tag: "the agents alone", text: '{"a":{"model":"m"}}', agents: { a: { model: "m" } } },
            { tag: "the other sections alone", text: '{"$schema":"x","tools":{},"mcp":{}}', agents: {} },
            { tag: "hostile names", text: '{"agent":' + hostile + '}', agents: JSON.parse(hostile) }
        ];
    }

    function test_fromEditor(data) {
        const result = AgentConfig.fromEditor(data.text);
        compare(result.error, "");
        same(result.agents, data.agents);
    }

    function test_invalidEditorTexts_data() {
        return [
            { tag: "cut", text: '{"agent":' }, { tag: "empty", text: "" },
            { tag: "a number", text: "5", error: "object" }, { tag: "a list", text: "[]", error: "object" },
            { tag: "null", text: "null", error: "object" }, { tag: "agents are a text", text: '{"agent":"a"}', error: "object" }
        ];
    }

    function test_invalidEditorTexts(data) {
        const result = AgentConfig.fromEditor(data.text);
        compare(result.agents, null);
        if (data.error)
            compare(result.error, data.error);
        else
            verify(result.error !== "" && result.error !== "object");
    }

    // ---- Tools and permissions

    function test_tools() {
        same(ToolRules.knownTools, ["read", "edit", "glob", "grep", "list", "bash", "task", "external_directory",
                                    "todowrite", "todoread", "webfetch", "websearch", "codesearch", "lsp"]);
        compare(ToolRules.labelOf("external_directory", null), "External directory");
        compare(ToolRules.labelOf("read", null), "Read");
        same(ToolRules.withTool({ x: false }, "bash", true), { x: false, bash: true });
        same(ToolRules.withTool({ x: false, bash: true }, "bash", false), { x: false });
        compare(ToolRules.isOn({ bash: "true" }, "bash"), false);
        same(ToolRules.customTools({ bash: true, mine: true, yours: "text" }), ["mine", "yours"]);
    }

    function test_permissionFields() {
        same(PermissionRules.fields.map(row => row.label + "=" + row.key), [
            "Read Files=read", "Edit Files=edit", "Glob Patterns=glob", "Grep Search=grep", "List Directory=list",
            "Bash Commands=bash", "Task Execution=task", "External Directory=external_directory", "Todo Write=todowrite",
            "Todo Read=todoread", "Web Fetch=webfetch", "Web Search=websearch", "Code Search=codesearch", "LSP=lsp",
            "Doom Loop=doom_loop"]);
        PermissionRules.fields.forEach(row => same([row.control, row.choices, row.fallback],
                                                   ["choice", ["ask", "allow", "deny"], "ask"]));
        same(PermissionRules.pathActions, ["read", "edit", "glob", "grep", "list", "bash", "task", "external_directory", "lsp"]);
    }

    function test_permissions() {
        same(PermissionRules.withPermission({ x: 1 }, "edit", "deny"), { x: 1, edit: "deny" });
        same(PermissionRules.withPermission({ x: 1, edit: "deny" }, "edit", "ask"), { x: 1 });
    }

    function test_paths_data() {
        return [
            { tag: "first path", before: {}, act: ["bash", "git *", "allow"], after: { bash: { "git *": "allow" } } },
            { tag: "another path", before: { bash: { a: "deny" } }, act: ["bash", "b", "allow"], after: { bash: { a: "deny", b: "allow" } } },
            { tag: "changed", before: { bash: { a: "deny" } }, act: ["bash", "a", "allow"], after: { bash: { a: "allow" } } },
            { tag: "ask", before: { bash: { a: "deny", b: "deny" } }, act: ["bash", "a", "ask"], after: { bash: { b: "deny" } } },
            { tag: "ask for the last path", before: { x: 1, bash: { a: "deny" } }, act: ["bash", "a", "ask"], after: { x: 1 } },
            { tag: "ask without paths", before: { bash: "deny" }, act: ["bash", "a", "ask"], after: { bash: "deny" } },
            { tag: "a permission for everything stays", before: { bash: "deny" }, act: ["bash", "a", "allow"], after: { bash: { "*": "deny", a: "allow" } } },
            { tag: "a number", before: { bash: 5 }, act: ["bash", "a", "allow"], after: { bash: { a: "allow" } } }
        ];
    }

    function test_paths(data) {
        same(PermissionRules.withPath(data.before, data.act[0], data.act[1], data.act[2]), data.after);
    }

    function test_pathRows() {
        same(PermissionRules.pathRows({ read: "allow", bash: { a: "deny", b: 5 }, custom: { c: "allow" }, list: [1] }), [
            { action: "bash", path: "a", permission: "deny" }, { action: "bash", path: "b", permission: 5 },
            { action: "custom", path: "c", permission: "allow" }]);
    }

    // ---- Servers and providers

    function test_serverFields_data() {
        return [
            { tag: "local", server: { type: "local" }, keys: ["type", "command", "environment", "enabled", "timeout"] },
            { tag: "remote", server: { type: "remote" }, keys: ["type", "url", "headers", "enabled", "timeout"] },
            { tag: "no type", server: {}, keys: ["type", "command", "environment", "enabled", "timeout"] }
        ];
    }

    function test_serverFields(data) {
        const shown = ServerRules.serverFields.filter(row => !row.isShown || row.isShown(data.server));
        same(shown.map(row => row.key), data.keys);
    }

    function test_serverLabels() {
        same(ServerRules.serverFields.map(row => row.label), ["Type:", "Command:", "Environment Variables (JSON):", "URL:",
                                                              "Headers (JSON):", "Enabled:", "Timeout (ms):"]);
        const timeout = ServerRules.serverFields[6];
        same([timeout.from, timeout.to, timeout.step, timeout.fallback], [1000, 60000, 1000, 5000]);
        same(ServerRules.newServer("remote"), { type: "remote", enabled: true });
    }

    function test_providerFields() {
        same(ServerRules.providerFields.map(row => row.label + " " + row.key), [
            "API Endpoint: api", "Name: name", "ID: id", "NPM Package: npm", "Environment Variables (comma-separated): env",
            "Options (JSON): options", "Model Whitelist (comma-separated): whitelist",
            "Model Blacklist (comma-separated): blacklist"]);
        same(ServerRules.providerFields.filter(row => row.format === "list").map(row => row.key), ["env", "whitelist", "blacklist"]);
    }

    function test_editedEntries() {
        same(ServerRules.withField({ a: { x: 1 } }, "a", "url", "u"), { a: { x: 1, url: "u" } });
        same(ServerRules.withField({ a: { url: "u" } }, "a", "url", ""), { a: {} });
        same(ServerRules.withField({}, "__proto__", "url", "u"), '{"__proto__":{"url":"u"}}');
    }

    // ---- Use of tokens

    function test_shortNumbers_data() {
        return [
            { number: 0, text: "0" }, { number: 999, text: "999" }, { number: 1000, text: "1.0k" },
            { number: 1234, text: "1.2k" }, { number: 999949, text: "999.9k" }, { number: 1e6, text: "1.00M" },
            { number: 1234567, text: "1.23M" }, { number: 1.5e9, text: "1500.00M" }
        ].map(row => Object.assign({ tag: row.text }, row));
    }

    function test_shortNumbers(data) {
        compare(UsageNumbers.short(data.number), data.text);
    }

    function test_usage() {
        same(UsageNumbers.windows, [7, 14, 30, 60, 90]);
        compare(UsageNumbers.defaultWindow, 30);
        same(UsageNumbers.columns.map(column => column.title), ["Date", "Messages", "Input", "Output", "Reasoning", "Cache R/W", "Total"]);
        const days = [{ date: "2026-11-22", messages: 3, input: 1500, output: 20, reasoning: 5, cacheRead: 2e6, cacheWrite: 7, total: 2001532 },
                      { total: 10 }];
        same(UsageNumbers.cells(days[0]), ["2026-11-22", "3", "1.5k", "20", "5", "2.00M / 7", "2.00M"]);
        compare(UsageNumbers.peak(days), 2001532);
        compare(UsageNumbers.sum(days), 2001542);
        compare(UsageNumbers.peak([]), 0);
    }
}
