// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../logic/LiteralText.js" as LiteralText
.import "../../logic/Untrusted.js" as Untrusted
.import "TextSet.js" as TextSet

// The models and agents that the user can choose. The lists of the bridge and the agent tool's file are untrusted.

const maxButtonLength = 20;
const cutButtonLength = 17;

/** The first of these fields that isn't empty, as text. */
function firstText(row, names) {
    return names.map(name => Untrusted.textOf(row[name])).find(text => text !== "") || "";
}

function capitalized(text) {
    return text.charAt(0).toUpperCase() + text.substring(1);
}

/** The agents of the agent tool's file, an object from id to agent, as rows. Disabled ones are left out. */
function configAgents(agents) {
    if (!Untrusted.isObject(agents)) {
        return [];
    }
    return Object.keys(agents)
        .filter(id => Untrusted.isObject(agents[id]) && !Array.isArray(agents[id]) && !agents[id].disable && !agents[id].disabled)
        .map(id => ({
            id: id,
            name: Untrusted.textOf(agents[id].description) || capitalized(id),
            description: Untrusted.textOf(agents[id].description),
            model: Untrusted.textOf(agents[id].model),
            mode: Untrusted.textOf(agents[id].mode) || "primary",
            prompt: Untrusted.textOf(agents[id].prompt),
            fromConfig: true
        }));
}

/** The rows of the file, then the bridge's agents that the file doesn't have. */
function mergedAgents(fromConfig, agents) {
    const ids = {};
    fromConfig.forEach(row => TextSet.add(ids, row.id));
    const merged = fromConfig.slice();
    Array.from(agents).filter(Untrusted.isObject).forEach(agent => {
        const id = Untrusted.textOf(agent.id);
        if (id === "" || !TextSet.add(ids, id)) {
            return;
        }
        merged.push(Object.assign({}, agent, { id: id, name: firstText(agent, ["name", "id"]) }));
    });
    return merged;
}

/** The bridge's models as rows {id, name}. Those without an id are left out. */
function models(list) {
    return Array.from(list)
        .filter(Untrusted.isObject)
        .map(model => ({ id: firstText(model, ["fullId", "id"]), name: firstText(model, ["displayName", "name", "id", "fullId"]) }))
        .filter(row => row.id !== "");
}

/** The name of an id in a list of rows, by default the id. */
function nameOf(rows, id) {
    const row = rows.find(candidate => candidate.id === id);
    return row ? row.name : id;
}

/** The index of an id; 0 if it isn't in the list. */
function indexOf(rows, id) {
    return Math.max(0, rows.findIndex(row => row.id === id));
}

/** A name on the agent button. */
function buttonText(name) {
    const line = LiteralText.printable(name);
    return line.length > maxButtonLength ? line.substring(0, cutButtonLength) + "..." : line;
}
