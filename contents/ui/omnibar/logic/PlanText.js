// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/Translatable.js" as Translatable
.import "../../../../components/logic/Untrusted.js" as Untrusted

// The wording of plans and their results. Both come from the bridge, so the type of every field is checked, and lookups
// use maps, because every object has a "constructor". The last argument of most functions is the translating function;
// without it the text is English.

const mark = Translatable.mark;

var summaryLength = 60;
// More than fits on a line. Texts of a megabyte take seconds to lay out.
var lineLength = 300;
// Leaves room on the line for the words around it.
const capabilityLength = 200;
// For tooltips and assistive technology.
var wholeLength = 4000;

// ---- Values

function isSet(value) {
    return value !== undefined && value !== null;
}

function listOr(value) {
    return Array.isArray(value) ? value : [];
}

/** A value of a result as text. */
function shown(value) {
    return Untrusted.isObject(value) ? JSON.stringify(value) : String(value);
}

/** The text up to a number of characters, then "…". Never ends with half of a surrogate pair. */
function cut(text, length) {
    return text.length > length ? text.substring(0, length).replace(/[\ud800-\udbff]$/, "") + "…" : text;
}

/** A text for a place of one line: cut to length, each run of whitespace a single space. */
function oneLine(text, length) {
    return cut(text, length).replace(/\s+/g, " ");
}

function sentence(text, values, tr) {
    return Translatable.filled(Translatable.translated(text, tr), values);
}

// ---- What a step has done. A row is a function of the step's result that returns [text, values], or null if a value
// ---- that the text needs is missing.

function always(text) {
    return () => [text, {}];
}

/** @param text contains {value} */
function value(key, text) {
    return result => isSet(result[key]) ? [text, { value: shown(result[key]) }] : null;
}

/** @param text contains {value}; used if the value is neither missing nor empty, 0 or false */
function optional(key, without, text) {
    return result => result[key] ? [text, { value: shown(result[key]) }] : [without, {}];
}

function onOff(key, on, off) {
    return result => [result[key] ? on : off, {}];
}

/** @param text contains {count}. The value is a list, or a number. */
function count(key, text) {
    return result => {
        const number = Array.isArray(result[key]) ? result[key].length : result[key];
        return typeof number === "number" ? [text, { count: shown(number) }] : null;
    };
}

const outcomes = new Map([
    ["audio.volume.get", value("level", mark("Volume is at {value}%."))],
    ["audio.volume.set", value("level", mark("Volume set to {value}%."))],
    ["audio.volume.mute", onOff("mute", mark("Audio muted."), mark("Audio unmuted."))],
    ["display.brightness.get", value("level", mark("Brightness is at {value}%."))],
    ["display.brightness.set", value("level", mark("Brightness set to {value}%."))],
    ["display.night_color.toggle", onOff("enabled", mark("Night Color enabled."), mark("Night Color disabled."))],
    ["display.rotate", optional("rotation", mark("Display rotated to normal."), mark("Display rotated to {value}."))],
    ["window.list", count("windows", mark("{count} windows open."))],
    ["window.close", always(mark("Window closed."))],
    ["window.minimize", always(mark("Window minimized."))],
    ["window.maximize", always(mark("Window maximized."))],
    ["app.launch", optional("name", mark("App launched."), mark("App launched: {value}."))],
    ["panel.get_layout", count("panels", mark("{count} panel(s) found."))],
    ["notification.dnd.set", onOff("enabled", mark("Do Not Disturb turned ON."), mark("Do Not Disturb turned OFF."))],
    ["notification.dnd.get", onOff("dnd", mark("Do Not Disturb is ON."), mark("Do Not Disturb is OFF."))],
    ["audio.sink.list", count("sinks", mark("{count} audio output(s) available."))],
    ["settings.read", value("value", mark("Value: {value}"))],
    ["settings.write", optional("key", mark("Setting applied."), mark("Setting applied ({value})."))],
    ["theme.apply", optional("applied", mark("Theme applied."), mark("Theme applied: {value}."))],
    ["input.touchpad.set_enabled", onOff("enabled", mark("Touchpad enabled."), mark("Touchpad disabled."))],
    ["trash.empty", always(mark("Trash emptied."))],
    ["power.lock_screen", always(mark("Screen locked."))]
]);

/** What a step has done, from its capability and result. "" if there is nothing to say. */
function formatResultValue(capabilityId, result, tr) {
    const id = Untrusted.textOr(capabilityId, "");
    if (id === "") {
        return "";
    }
    if (!Untrusted.isObject(result)) {
        return "(" + id + ")";
    }
    const wording = outcomes.has(id) ? outcomes.get(id)(result) : null;
    return wording ? sentence(wording[0], wording[1], tr)
                   : sentence(mark("{capability}: done."), { capability: capabilityWords(id) }, tr);
}

function capabilityWords(capabilityId) {
    return capabilityId.replace(/\./g, " ");
}

// ---- The result of a run

const readOnlyCapabilities = new Set([
    "audio.volume.get", "display.brightness.get", "window.list", "panel.get_layout", "notification.dnd.get",
    "audio.sink.list", "settings.read", "window.expose"
]);

const liveApplyNotes = new Map([
    ["cursor_live_apply", mark("Cursor setting was saved, but KDE could not apply it instantly. "
                               + "You may need to reopen apps or log out/in.")],
    ["font_live_apply", mark("Font setting was saved, but KDE could not apply it instantly. "
                             + "You may need to reopen apps or log out/in.")]
]);
const otherLiveApplyNote = mark("Setting was saved, but KDE could not apply it instantly.");

/** The result of a run with every field in its type: {success, actionId, error, results, state, details, verified, total}. */
function parseOutcome(payload) {
    const fields = Untrusted.isObject(payload) ? payload : {};
    const summary = Untrusted.isObject(fields.verificationSummary) ? fields.verificationSummary : {};
    return {
        success: fields.success === true,
        actionId: Untrusted.textOr(fields.actionId, ""),
        error: Untrusted.textOr(fields.error, ""),
        results: listOr(fields.results).filter(Untrusted.isObject),
        state: Untrusted.textOr(summary.state, ""),
        details: listOr(summary.details).filter(detail => Untrusted.textOr(detail, "") !== ""),
        verified: summary.verified,
        total: summary.total
    };
}

/** Whether a run has changed nothing. */
function isReadOnlyPlan(results) {
    return Array.isArray(results) && results.length > 0
        && results.every(step => Untrusted.isObject(step) && readOnlyCapabilities.has(step.capabilityId));
}

function succeeded(step) {
    return Boolean(step.ok) && Boolean(step.result);
}

/** What each successful step has done. */
function resultLines(results, tr) {
    return results.filter(succeeded)
        .map(step => formatResultValue(step.capabilityId, step.result, tr))
        .filter(line => line !== "");
}

/** One note for each kind of setting that was saved without taking effect. */
function liveApplyText(results, tr) {
    const notes = results
        .filter(step => step.capabilityId === "settings.write" && Untrusted.isObject(step.result) && step.result.liveApplied === false)
        .map(step => liveApplyNotes.get(step.result.liveApplyHook) || otherLiveApplyNote);
    return Array.from(new Set(notes)).map(note => Translatable.translated(note, tr)).join(" ");
}

/** Whether a theme that a step applied is light: true or false, undefined if none is known. */
function lightChrome(results) {
    let light;
    results.filter(step => succeeded(step) && ["theme.apply", "theme.preview"].includes(step.capabilityId))
        .map(step => Untrusted.textOr(step.result.applied, Untrusted.textOr(step.result.preview, "")))
        // The patterns ignore case, because lower-casing a hostile name can take minutes.
        .forEach(name => {
            if (/dark/i.test(name)) {
                light = false;
            } else if (/breeze/i.test(name)) {
                light = true;
            }
        });
    return light;
}

/** The text of the progress bar after a run. outcome: see parseOutcome(). */
function doneLabel(outcome, tr) {
    return outcome.success ? "✓ " + (resultLines(outcome.results, tr)[0] || Translatable.translated(mark("Done"), tr))
                           : "✗ " + (outcome.details[0] || Translatable.translated(mark("Failed"), tr));
}

/**
 * The message in the conversation after a run. Intentional: a run without a verified state counts as failed, even if it
 * says that it succeeded, although the progress bar shows a tick then.
 */
function message(outcome, tr) {
    const lines = resultLines(outcome.results, tr).join(" ");
    const details = outcome.details.join("; ");
    const undo = outcome.actionId !== "" && !isReadOnlyPlan(outcome.results)
        ? Translatable.translated(mark("(Undo available)"), tr) : "";
    const joined = parts => parts.filter(part => part !== "").join(" ");

    if (outcome.success && outcome.state === "verified") {
        return joined([lines || Translatable.translated(mark("Done."), tr), liveApplyText(outcome.results, tr), undo]);
    }
    if (outcome.success && outcome.state === "partially_verified") {
        const counts = { verified: isSet(outcome.verified) ? shown(outcome.verified) : "?",
                         total: isSet(outcome.total) ? shown(outcome.total) : "?" };
        return joined([lines || sentence(mark("Executed ({verified}/{total} verified)."), counts, tr), details, undo]);
    }
    if (outcome.state === "planned") {
        return Translatable.translated(mark("Plan validated (dry run). No changes were made."), tr);
    }
    const reason = details || outcome.error || Translatable.translated(mark("Execution failed"), tr);
    return sentence(mark("Failed: {reason}"), { reason: reason }, tr);
}

// ---- A plan that waits for approval

/** The steps of a plan. */
function steps(plan) {
    return Untrusted.isObject(plan) ? listOr(plan.plan) : [];
}

function summary(plan) {
    return Untrusted.isObject(plan) ? oneLine(Untrusted.textOr(plan.summary, ""), wholeLength) : "";
}

function risk(plan, tr) {
    const level = Untrusted.isObject(plan) ? oneLine(Untrusted.textOr(plan.riskLevel, ""), lineLength) : "";
    return level === "" ? "" : sentence(mark("Risk: {level}"), { level: level }, tr);
}

/**
 * A step of a plan, its capability and params. Characters that change the direction of text are escaped, because they
 * could hide what a step does.
 */
function stepText(step) {
    const fields = Untrusted.isObject(step) ? step : {};
    const params = Untrusted.isObject(fields.params) && Object.keys(fields.params).length > 0
        ? " " + JSON.stringify(fields.params) : "";
    return (oneLine(Untrusted.textOr(fields.capabilityId, "step"), lineLength) + cut(params, wholeLength))
        .replace(/[\u061c\u200e\u200f\u202a-\u202e\u2066-\u2069]/g,
                 control => "\\u" + ("000" + control.charCodeAt(0).toString(16)).slice(-4));
}

// ---- A running plan

const stepTexts = new Map([
    ["start", mark("Step {number}/{total}: {capability}…")],
    ["done", mark("Step {number}/{total}: {capability} ✓")],
    ["failed", mark("Step {number}/{total}: {capability} ✗")]
]);
const otherStepText = mark("Step {number}/{total}: {capability}");

/** Whether the bridge has reported a step. index counts from 0. */
function hasStep(index, total) {
    return total > 0 && index >= 0;
}

/** The text of the progress bar. run is {done, label, index, total, capability, phase}. */
function progressText(run, tr) {
    if (run.done) {
        return run.label !== "" ? oneLine(run.label, wholeLength) : Translatable.translated(mark("✓ Done"), tr);
    }
    if (!hasStep(run.index, run.total)) {
        return Translatable.translated(mark("Applying…"), tr);
    }
    const values = { number: run.index + 1, total: run.total,
                     capability: capabilityWords(oneLine(run.capability, capabilityLength)) };
    return sentence(stepTexts.get(run.phase) || otherStepText, values, tr);
}

/** The filled part of the progress bar, from 0 to 1. */
function progress(done, index, total) {
    return done ? 1 : hasStep(index, total) ? Math.min(1, (index + 1) / Math.max(1, total)) : 0;
}
