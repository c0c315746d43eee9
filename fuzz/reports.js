// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../components/config/AgentConfig.js" as AgentConfig
.import "../components/config/ConfigObject.js" as ConfigObject
.import "../components/config/FieldText.js" as FieldText
.import "../components/config/PermissionRules.js" as PermissionRules
.import "../components/mainwindow/logic/Choices.js" as Choices
.import "../components/mainwindow/logic/History.js" as History
.import "../components/mainwindow/logic/SessionNames.js" as SessionNames
.import "../components/panels/PanelText.js" as PanelText
.import "../contents/ui/omnibar/logic/Attachments.js" as Attachments
.import "../contents/ui/omnibar/logic/Dashboard.js" as Dashboard
.import "../contents/ui/omnibar/logic/Models.js" as Models
.import "../contents/ui/omnibar/logic/PlanText.js" as PlanText
.import "../contents/ui/omnibar/logic/RuntimePanels.js" as RuntimePanels
.import "../contents/ui/omnibar/logic/Sessions.js" as Sessions
.import "../contents/ui/omnibar/logic/SuggestionNotice.js" as SuggestionNotice
.import "../contents/ui/omnibar/logic/Suggestions.js" as Suggestions
.import "../contents/ui/omnibar/logic/WorkspaceTemplates.js" as WorkspaceTemplates

// Calls what makes rows and texts of the bridge's reports and of the agent tool's configuration. Fuzzed by
// fuzz_reports.cpp.

const tr = text => text;

function require(holds, rule) {
    if (!holds) {
        throw new Error(rule);
    }
}

function isText(value) {
    return typeof value === "string";
}

function text(value) {
    require(isText(value), "what is shown is a text");
    return value;
}

/** Rows whose fields QML can assign to properties of a fixed type. */
function rows(list) {
    require(Array.isArray(list), "rows are a list");
    list.forEach(row => Object.keys(row).forEach(key => {
        const value = row[key];
        require(isText(value) || typeof value === "boolean" || (typeof value === "number" && isFinite(value)),
                "the field " + key + " is a text, a number or a truth");
    }));
    return list;
}

function hasUnique(list, key) {
    return new Set(list.map(row => row[key])).size === list.length;
}

function checkDashboard(value) {
    ["dashboard", "systemReport", "appLogSummary", "appMetrics", "serviceHealth", "powerProfile", "runtimeHealth"].forEach(kind => {
        const properties = Dashboard.values(kind, value);
        Object.keys(properties).forEach(name => {
            const property = properties[name];
            require(Array.isArray(property) || rows([{ property: property }]), "a property has its type");
        });
        const target = {};
        Dashboard.assign(target, properties);
        require(JSON.stringify(target) === JSON.stringify(properties), "all properties are assigned");
    });
    rows(Dashboard.modelRows(rows(Dashboard.logEntries(value))));
    rows(Dashboard.modelRows(rows(Dashboard.summaryEntries(value))));
    rows(Dashboard.jobRows(value));
    rows(Dashboard.reminderRows(value, "Reminder"));
    require(Dashboard.profiles(value).every(isText), "profiles are names");
}

function checkSessions(list) {
    const sessions = rows(Sessions.rows(list));
    require(sessions.every(row => row.sid !== "" && row.sname !== "" && row.screatedAt >= 0), "a session has a name");
    rows(Sessions.namedRows(sessions, tr)).forEach(row => text(Sessions.timeText(row.screatedAt, tr)));
    sessions.forEach(row => text(Sessions.shortId(row.sid)));
    const named = rows(SessionNames.rows(list, tr));
    require(hasUnique(named, "id") && named.every(row => row.id !== "" && row.name !== ""), "a session appears once, with a name");
    const history = History.rows(list);
    require(text(History.sessionName(history.lastReply)).length <= 50, "the name of a session is short");
    text(History.replyHash(history.lastReply));
    rows(history.rows);
    require(history.rows.every(row => row.role === "user" || row.role === "assistant"), "the history has two sides");
    require(history.rows.length <= history.hashes.length && new Set(history.hashes).size === history.hashes.length,
            "no message appears twice");
}

function checkModels(list, object) {
    const models = rows(Models.rows(list));
    require(models.every(row => row.id !== "" && row.fullId !== ""), "a model has ids");
    require(Models.matching(Models.searchable(models), "").length === models.length, "all models match an empty filter");
    models.forEach(row => text(Models.chosenId(row)));
    const checked = rows(Models.checkRows(object));
    checked.forEach(row => text(Models.checkOutcome(row, tr)));
    text(Models.checkStatus(checked, tr));
    rows(Choices.models(list)).forEach(row => text(Choices.buttonText(row.name)));
    const agents = Choices.mergedAgents(rows(Choices.configAgents(object)), list);
    require(hasUnique(agents, "id") && agents.every(row => isText(row.id) && isText(row.name)), "an agent appears once");
}

function checkSuggestions(value, object) {
    rows(Suggestions.cards(value, "volume", "the volume", tr));
    require(rows(Suggestions.followUpCards(value)).every(card => card.prompt !== "" && card.title !== ""), "a card has a prompt");
    text(SuggestionNotice.barLine(text(SuggestionNotice.statusText(object, tr))));
    text(SuggestionNotice.title(object));
    text(SuggestionNotice.body(object));
    require(rows(SuggestionNotice.actions(object)).every(action => action.id !== "" && action.label !== ""), "a button has a label");
}

function checkPlan(value) {
    const outcome = PlanText.parseOutcome(value);
    text(PlanText.message(outcome, tr));
    text(PlanText.doneLabel(outcome, tr));
    const light = PlanText.lightChrome(outcome.results);
    require(light === undefined || typeof light === "boolean", "a theme is light, dark or unknown");
    PlanText.steps(value).forEach(step => require(!/[\u202a-\u202e\u2066-\u2069\n]/.test(text(PlanText.stepText(step))),
                                                  "a step can't hide what it does"));
    const fields = ConfigObject.isObject(value) ? value : {};
    // As AgentBridge reads them of an event.
    const run = { done: false, label: "", index: fields.index | 0, total: fields.total | 0,
                  capability: isText(fields.capabilityId) ? fields.capabilityId : "", phase: isText(fields.phase) ? fields.phase : "" };
    text(PlanText.progressText(run, tr));
    const progress = PlanText.progress(false, run.index, run.total);
    require(progress >= 0 && progress <= 1, "a progress is a part of the whole");
    text(PlanText.summary(value));
    text(PlanText.risk(value, tr));
}

function checkPanels(value, list, object) {
    text(RuntimePanels.dwellText(value, tr));
    text(RuntimePanels.statusLine(object, tr));
    require(RuntimePanels.gatingIndex(value) >= 0, "a gating mode is one of the list");
    const base = WorkspaceTemplates.base(tr);
    const merged = rows(WorkspaceTemplates.merged(base, list, () => true));
    require(merged.length === base.length, "the catalogue stays");
    text(WorkspaceTemplates.preparedText(object, tr));
    rows(PanelText.actionRows(value));
    rows(PanelText.automationRows(value, "never", "unknown"));
    text(PanelText.themeOf(value, "unknown"));
    require(PanelText.countOf(value, "panels") >= 0, "a count is a number");
}

function checkConfig(value, json) {
    const fields = ConfigObject.isObject(value) ? value : {};
    const agents = AgentConfig.agentsOf(value);
    const cleaned = AgentConfig.cleaned(agents);
    require(!AgentConfig.needsCleaning(cleaned), "the fields of a file that is cleaned are where they belong");
    const edited = AgentConfig.fromEditor(AgentConfig.editorText(value, "https://schema"));
    require(edited.error === "" && JSON.stringify(edited.agents) === JSON.stringify(agents), "the editor shows the agents");
    require(isText(AgentConfig.fromEditor(json).error), "a text of the editor is right, or there is a message");
    Object.keys(AgentConfig.enabledAgents(value)).forEach(name => {
        AgentConfig.fields.forEach(row => {
            const shown = text(FieldText.formatOf(row).shown(ConfigObject.get(agents[name], row.key)));
            require(FieldText.formatOf(row).parse(shown).valid, "a field can be edited");
        });
        AgentConfig.withField(agents, name, "model", "a/b");
    });
    Object.keys(FieldText.formats).forEach(name => {
        const format = FieldText.formats[name];
        const shown = text(format.shown(value));
        require(typeof format.parse(json).valid === "boolean", "a text of a field is right or wrong");
        const again = format.parse(shown);
        require(!again.valid || isText(format.shown(again.value)), "a value that was edited is shown again");
    });
    const options = AgentConfig.withOption(fields, "option", json);
    require(ConfigObject.has(options, "option") && AgentConfig.withOption({ option: 1 }, "option", undefined) === undefined,
            "an option can be set and removed");
    require(Object.keys(AgentConfig.newAgent(fields)).every(key => AgentConfig.fields.some(row => row.key === key)),
            "a new agent has known fields only");
    PermissionRules.pathRows(value).forEach(row => {
        require(isText(row.action) && isText(row.path), "a permission has an action and a path");
        const changed = PermissionRules.withPath(value, row.action, row.path, "deny");
        require(changed[row.action][row.path] === "deny", "a permission can be changed");
    });
}

function checkAttachment(content) {
    const entry = Attachments.entry("a", "/a", content);
    require(entry.chars === content.length && entry.content.length <= 2000 + 30, "a long file is cut");
    text(Attachments.contextPrefix([entry]));
    const path = Attachments.pathOf("file:///" + content);
    require(path.startsWith("/"), "the path of a local file is absolute");
    text(Attachments.nameOf(path));
    Attachments.isBinary(path);
    require(Attachments.pathOf(encodeURI("file:///" + Attachments.nameOf("a"))) === "/a", "a path is decoded");
}

function parsed(json) {
    try {
        return JSON.parse(json);
    } catch (error) {
        return undefined;
    }
}

/** Throws an error if a rule is broken. */
function check(json) {
    const value = parsed(json);
    // What the native signals pass.
    const list = Array.isArray(value) ? value : [];
    const object = typeof value === "object" && value !== null && !Array.isArray(value) ? value : {};
    const before = JSON.stringify(value);
    checkDashboard(value);
    checkSessions(list);
    checkModels(list, object);
    checkSuggestions(value, object);
    checkPlan(value);
    checkPanels(value, list, object);
    checkConfig(value, json);
    checkAttachment(json);
    require(JSON.stringify(value) === before, "what the bridge has sent isn't changed");
}
