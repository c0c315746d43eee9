// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/LiteralText.js" as LiteralText
.import "../../../../components/logic/Translatable.js" as Translatable
.import "../../../../components/logic/Untrusted.js" as Untrusted

// The bridge's list of models and its check of the free ones. Both are untrusted: any field may be missing or of
// another type.

const mark = Translatable.mark;

const maxIdLength = 1000;
const maxErrorLength = 40;

// The word "free" on its own, as in "gpt-free-1", but not in "freedom".
const freeWord = /(?:^|[-_/:\s])free(?:$|[-_/:\s])/i;

/** The first of these fields that is a text and not empty, cut to a sensible length. */
function firstText(object, names) {
    const name = names.find(candidate => typeof object[candidate] === "string" && object[candidate] !== "");
    return name === undefined ? "" : object[name].substring(0, maxIdLength);
}

/** The bridge's models as rows {id, name, fullId, free}. Entries without an id are dropped. */
function rows(models) {
    return Array.from(models).filter(Untrusted.isObject).map(model => {
        const id = firstText(model, ["id", "fullId"]);
        const fullId = firstText(model, ["fullId", "id"]);
        const name = firstText(model, ["displayName", "name", "id"]);
        return { id: id, name: name, fullId: fullId, free: model.free === true || [id, fullId, name].some(isFree) };
    }).filter(row => row.id !== "");
}

/** Whether a name or id says that the model is free. */
function isFree(name) {
    return freeWord.test(name);
}

/** What identifies a model of the list when it is chosen. */
function chosenId(model) {
    return model.fullId || model.id;
}

/**
 * What the list in the sheet needs of the models: [{row, text}], with a row of its ListModel and the text to search.
 * Made once for each list, because there may be thousands and each letter of a filter searches all.
 */
function searchable(models) {
    return models.map(model => ({
        row: { mid: model.id, mfullId: model.fullId, mname: model.name, mfree: model.free },
        // A filter has no line breaks.
        text: [model.fullId, model.name, model.id].join("\n").toLowerCase()
    }));
}

/** The rows of the searchable models that have a text in their ids or name. */
function matching(candidates, filter) {
    const wanted = filter.trim().toLowerCase();
    return candidates.filter(candidate => candidate.text.includes(wanted)).map(candidate => candidate.row);
}

// ---- The check of the free models

/** A result of the check as rows {model, displayName, ok, responseMs, response, error}; [] for anything else. */
function checkRows(result) {
    const list = Array.isArray(result.results) ? result.results : [];
    return list.filter(Untrusted.isObject).map(entry => ({
        model: firstText(entry, ["model"]),
        displayName: firstText(entry, ["displayName", "model"]),
        ok: entry.ok === true,
        responseMs: typeof entry.responseMs === "number" ? entry.responseMs : 0,
        response: firstText(entry, ["response"]),
        error: firstText(entry, ["error"])
    }));
}

/** Whether the bridge has sent a result. */
function isCheckResult(result) {
    return Untrusted.isObject(result) && Object.keys(result).length > 0;
}

/** The status line for the rows of a check. */
function checkStatus(checked, tr) {
    const working = checked.filter(row => row.ok).length;
    let text = mark("{working} of {count} free model(s) responded.");
    if (checked.length === 0) {
        text = mark("No free models found.");
    } else if (working === 0) {
        text = mark("{count} free model(s) tested — none responded. Check Loomra server.");
    }
    return Translatable.filled(Translatable.translated(text, tr), { working: working, count: checked.length });
}

/** The outcome of the check for a row, shown beside its name. */
function checkOutcome(row, tr) {
    if (row.ok) {
        return Math.round(row.responseMs) + "ms";
    }
    return LiteralText.oneLine(row.error).substring(0, maxErrorLength) || Translatable.translated(mark("failed"), tr);
}
