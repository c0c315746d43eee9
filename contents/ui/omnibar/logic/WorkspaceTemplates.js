// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/Translatable.js" as Translatable
.import "../../../../components/logic/Untrusted.js" as Untrusted

// The catalogue of workspace templates: rows {id, name, description, enabled, workspaceId}. The bridge's workspaces are
// merged into it. They are untrusted: any field may be missing or of another type.

const mark = Translatable.mark;

const templates = [
    { id: "focus-dev", name: mark("Focus — Development"), description: mark("Editor, terminal, and docs for focused development.") },
    { id: "meeting", name: mark("Meeting"), description: mark("Video or chat with notes for meetings.") },
    { id: "research", name: mark("Research"), description: mark("Browser and notes for reading and capture.") }
];

// The client takes an int.
const maxWorkspaceId = 0x7fffffff;

function translated(text, values, tr) {
    return Translatable.filled(Translatable.translated(text, tr), values);
}

/** The rows before anything is known of them: all off and without a workspace. */
function base(tr) {
    return templates.map(template => ({
        id: template.id,
        name: Translatable.translated(template.name, tr),
        description: Translatable.translated(template.description, tr),
        enabled: false,
        workspaceId: 0
    }));
}

/** The base rows with the user's preferences. @param isPreferred function of a row's id */
function preferred(rows, isPreferred) {
    return rows.map(row => Object.assign({}, row, { enabled: Boolean(isPreferred(row.id)) }));
}

function rulesOf(workspace) {
    const rules = workspace.behaviorRules || workspace.behavior_rules;
    if (typeof rules !== "string") {
        return rules;
    }
    try {
        return JSON.parse(rules);
    } catch (error) {
        return null;
    }
}

/** The catalogue id that a workspace belongs to; "" if it names none or its rules are no valid JSON. */
function slugOf(workspace) {
    const rules = Untrusted.isObject(workspace) ? rulesOf(workspace) : null;
    return Untrusted.isObject(rules) ? Untrusted.textOr(rules.slug, "") : "";
}

/** A workspace's id, 0 if it is invalid. */
function idOf(workspace) {
    const id = workspace.id;
    return Number.isInteger(id) && id > 0 && id <= maxWorkspaceId ? id : 0;
}

/**
 * The base rows with what the bridge says about their workspaces. Rows without a workspace follow the preference; of
 * several workspaces for one row, the last counts.
 */
function merged(rows, workspaces, isPreferred) {
    const bySlug = new Map();
    Array.from(workspaces).forEach(workspace => {
        const slug = slugOf(workspace);
        if (slug !== "") {
            bySlug.set(slug, workspace);
        }
    });
    return preferred(rows, isPreferred).map(row => {
        const workspace = bySlug.get(row.id);
        return workspace === undefined ? row : {
            id: row.id,
            name: Untrusted.textOr(workspace.name, row.name),
            description: Untrusted.textOr(workspace.goal, row.description),
            enabled: workspace.status === "active",
            workspaceId: idOf(workspace)
        };
    });
}

/** The rows whose workspace is off although the user wants it on. */
function toEnable(rows, isPreferred) {
    return rows.filter(row => row.workspaceId > 0 && !row.enabled && isPreferred(row.id));
}

function find(rows, id) {
    return rows.find(row => row.id === id);
}

/** The rows with one of them switched. */
function withEnabled(rows, id, enabled) {
    return rows.map(row => row.id === id ? Object.assign({}, row, { enabled: enabled }) : row);
}

// Why a template can't be prepared. The first row that holds is shown.
const refusals = [
    { holds: (row, state) => !row.enabled, text: mark("Enable the template first.") },
    { holds: (row, state) => !state.available, text: mark("Workspace templates require LOOMRA_WORKSPACE_INTEL=1 on the bridge.") },
    { holds: (row, state) => !state.toolsEnabled, text: mark("Turn on desktop actions to prepare this template.") },
    { holds: (row, state) => !(row.workspaceId > 0), text: mark("Template not ready yet — enable WI and restart the bridge.") }
];

/** Why a template can't be prepared, "" if it can. @param state {available, toolsEnabled} */
function refusal(row, state, tr) {
    const found = refusals.find(candidate => candidate.holds(row, state));
    return found === undefined ? "" : Translatable.translated(found.text, tr);
}

function preparingText(row, tr) {
    return translated(mark("Preparing {name}…"), { name: row.name }, tr);
}

/** The text for the result of a preparation, "" if it says neither that it succeeded nor why it failed. */
function preparedText(result, tr) {
    if (result.ok === true) {
        const workspace = Untrusted.isObject(result.workspace) ? result.workspace : {};
        const name = Untrusted.textOr(workspace.name, Translatable.translated(mark("workspace"), tr));
        return translated(mark("Prepared {name}."), { name: name }, tr);
    }
    return Untrusted.textOr(result.error, "");
}
