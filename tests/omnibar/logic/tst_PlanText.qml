// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/PlanText.js" as PlanText

TestCase {
    name: "PlanText"

    readonly property string cursorNote: "Cursor setting was saved, but KDE could not apply it instantly. You may need to reopen apps or log out/in."
    readonly property string fontNote: "Font setting was saved, but KDE could not apply it instantly. You may need to reopen apps or log out/in."
    readonly property string otherNote: "Setting was saved, but KDE could not apply it instantly."

    //! A fake translation function, which fails for texts that KI18n complains about.
    function translate(text) {
        verify(text !== "" && text.indexOf("%1") < 0, "not translatable: " + text);
        return "<" + text + ">";
    }

    function done(capabilityId, result) {
        return { "ok": true, "capabilityId": capabilityId, "result": result };
    }

    //! The outcome of a run with this state.
    function run(success, state, more) {
        return PlanText.parseOutcome(Object.assign({ "success": success, "verificationSummary": Object.assign({ "state": state }, more && more.summary) }, more));
    }

    function test_formatResultValue_data() {
        return [
            { id: "audio.volume.get", result: { level: 0 }, text: "Volume is at 0%." },
            { id: "audio.volume.get", result: { level: "40" }, text: "Volume is at 40%." },
            { id: "audio.volume.get", result: {}, text: "audio volume get: done." },
            { id: "audio.volume.get", result: { level: null }, text: "audio volume get: done." },
            { id: "audio.volume.set", result: { level: 30 }, text: "Volume set to 30%." },
            { id: "audio.volume.set", result: {}, text: "audio volume set: done." },
            { id: "audio.volume.mute", result: { mute: true }, text: "Audio muted." },
            { id: "audio.volume.mute", result: { mute: false }, text: "Audio unmuted." },
            { id: "audio.volume.mute", result: {}, text: "Audio unmuted." },
            { id: "display.brightness.get", result: { level: 80 }, text: "Brightness is at 80%." },
            { id: "display.brightness.get", result: {}, text: "display brightness get: done." },
            { id: "display.brightness.set", result: { level: 100 }, text: "Brightness set to 100%." },
            { id: "display.brightness.set", result: {}, text: "display brightness set: done." },
            { id: "display.night_color.toggle", result: { enabled: true }, text: "Night Color enabled." },
            { id: "display.night_color.toggle", result: {}, text: "Night Color disabled." },
            { id: "display.rotate", result: { rotation: "left" }, text: "Display rotated to left." },
            { id: "display.rotate", result: { rotation: "" }, text: "Display rotated to normal." },
            { id: "display.rotate", result: {}, text: "Display rotated to normal." },
            { id: "display.rotate", result: { rotation: 90 }, text: "Display rotated to 90." },
            { id: "display.rotate", result: { rotation: 0 }, text: "Display rotated to normal." },
            { id: "theme.apply", result: { applied: false }, text: "Theme applied." },
            { id: "window.list", result: { windows: ["a", "b"] }, text: "2 windows open." },
            { id: "window.list", result: { windows: [] }, text: "0 windows open." },
            { id: "window.list", result: { windows: 7 }, text: "7 windows open." },
            { id: "window.list", result: {}, text: "window list: done." },
            { id: "window.close", result: {}, text: "Window closed." },
            { id: "window.minimize", result: {}, text: "Window minimized." },
            { id: "window.maximize", result: {}, text: "Window maximized." },
            { id: "app.launch", result: { name: "Mail" }, text: "App launched: Mail." },
            { id: "app.launch", result: {}, text: "App launched." },
            { id: "panel.get_layout", result: { panels: [1] }, text: "1 panel(s) found." },
            { id: "panel.get_layout", result: {}, text: "panel get_layout: done." },
            { id: "notification.dnd.set", result: { enabled: true }, text: "Do Not Disturb turned ON." },
            { id: "notification.dnd.set", result: {}, text: "Do Not Disturb turned OFF." },
            { id: "notification.dnd.get", result: { dnd: true }, text: "Do Not Disturb is ON." },
            { id: "notification.dnd.get", result: {}, text: "Do Not Disturb is OFF." },
            { id: "audio.sink.list", result: { sinks: [1, 2, 3] }, text: "3 audio output(s) available." },
            { id: "audio.sink.list", result: { sinks: "many" }, text: "audio sink list: done." },
            { id: "settings.read", result: { value: "dark" }, text: "Value: dark" },
            { id: "settings.read", result: { value: false }, text: "Value: false" },
            { id: "settings.read", result: { value: { a: [1] } }, text: "Value: {\"a\":[1]}" },
            { id: "settings.read", result: { value: null }, text: "settings read: done." },
            { id: "settings.write", result: { key: "font" }, text: "Setting applied (font)." },
            { id: "settings.write", result: {}, text: "Setting applied." },
            { id: "theme.apply", result: { applied: "Breeze Dark" }, text: "Theme applied: Breeze Dark." },
            { id: "theme.apply", result: {}, text: "Theme applied." },
            { id: "theme.preview", result: { preview: "Breeze" }, text: "theme preview: done." },
            { id: "input.touchpad.set_enabled", result: { enabled: true }, text: "Touchpad enabled." },
            { id: "input.touchpad.set_enabled", result: {}, text: "Touchpad disabled." },
            { id: "trash.empty", result: {}, text: "Trash emptied." },
            { id: "power.lock_screen", result: {}, text: "Screen locked." },
            { id: "my.own.tool_x", result: {}, text: "my own tool_x: done." },
            { id: "constructor", result: {}, text: "constructor: done." },
            { id: "__proto__", result: {}, text: "__proto__: done." },
            // A result that is no object.
            { id: "audio.volume.get", result: "loud", text: "(audio.volume.get)" },
            { id: "audio.volume.get", result: null, text: "(audio.volume.get)" },
            { id: "audio.volume.get", result: undefined, text: "(audio.volume.get)" },
            { id: "", result: "loud", text: "" },
            { id: undefined, result: "loud", text: "" },
            { id: { "a": 1 }, result: {}, text: "" },
            // Values that look like placeholders.
            { id: "app.launch", result: { name: "{value} %1 $&" }, text: "App launched: {value} %1 $&." }
        ].map(row => Object.assign({ tag: row.id + " " + JSON.stringify(row.result) }, row));
    }
    function test_formatResultValue(row) {
        compare(PlanText.formatResultValue(row.id, row.result), row.text);
    }

    function test_translated() {
        compare(PlanText.formatResultValue("audio.volume.get", { "level": 40 }, translate), "<Volume is at 40%.>");
        compare(PlanText.formatResultValue("display.rotate", {}, translate), "<Display rotated to normal.>");
        compare(PlanText.formatResultValue("my.tool", {}, translate), "<my tool: done.>");
        compare(PlanText.message(run(true, "verified"), translate), "<Done.>");
        compare(PlanText.message(run(false, ""), translate), "<Failed: <Execution failed>>");
        compare(PlanText.doneLabel(run(true, ""), translate), "✓ <Done>");
        compare(PlanText.doneLabel(run(false, ""), translate), "✗ <Failed>");
        compare(PlanText.risk({ "riskLevel": "low" }, translate), "<Risk: low>");
    }

    function test_readOnly_data() {
        const ids = ["audio.volume.get", "display.brightness.get", "window.list", "panel.get_layout",
                     "notification.dnd.get", "audio.sink.list", "settings.read", "window.expose"];
        return ids.map(id => ({ tag: id, results: [{ capabilityId: id }], expected: true })).concat([
            { tag: "all of them", results: ids.map(id => ({ capabilityId: id })), expected: true },
            { tag: "none", results: [], expected: false },
            { tag: "a write among them", results: [{ capabilityId: "window.list" }, { capabilityId: "window.close" }], expected: false },
            { tag: "constructor", results: [{ capabilityId: "constructor" }], expected: false },
            { tag: "without an id", results: [{}], expected: false },
            { tag: "null", results: [null], expected: false },
            { tag: "no list", results: "window.list", expected: false },
            { tag: "nothing", results: undefined, expected: false }
        ]);
    }
    function test_readOnly(row) {
        compare(PlanText.isReadOnlyPlan(row.results), row.expected);
    }

    function test_doneLabel_data() {
        return [
            { tag: "first line", run: run(true, "verified", { results: [done("window.close", {}), done("trash.empty", {})] }), text: "✓ Window closed." },
            { tag: "no lines", run: run(true, "verified"), text: "✓ Done" },
            { tag: "no state", run: run(true, ""), text: "✓ Done" },
            { tag: "detail", run: run(false, "failed", { summary: { details: ["No such window", "more"] } }), text: "✗ No such window" },
            { tag: "failed", run: run(false, "failed", { error: "unused" }), text: "✗ Failed" },
            { tag: "not exactly true", run: run("yes", "verified"), text: "✗ Failed" }
        ];
    }
    function test_doneLabel(row) {
        compare(PlanText.doneLabel(row.run), row.text);
    }

    function test_message_data() {
        const close = [done("window.close", {})];
        const read = [done("window.list", { windows: [1] })];
        const id = { actionId: "act_1" };
        return [
            { tag: "verified", run: run(true, "verified", { results: close.concat(done("app.launch", { name: "Mail" })) }),
              text: "Window closed. App launched: Mail." },
            { tag: "verified, no lines", run: run(true, "verified"), text: "Done." },
            { tag: "verified, undo", run: run(true, "verified", Object.assign({ results: close }, id)), text: "Window closed. (Undo available)" },
            { tag: "verified, read only", run: run(true, "verified", Object.assign({ results: read }, id)), text: "1 windows open." },
            { tag: "verified, undo without lines", run: run(true, "verified", id), text: "Done. (Undo available)" },
            { tag: "verified, details", run: run(true, "verified", { summary: { details: ["unused"] } }), text: "Done." },
            { tag: "verified, live apply and undo",
              run: run(true, "verified", Object.assign({ results: [done("settings.write", { key: "k", liveApplied: false })] }, id)),
              text: "Setting applied (k). " + otherNote + " (Undo available)" },
            { tag: "partial", run: run(true, "partially_verified", { summary: { verified: 1, total: 2 } }), text: "Executed (1/2 verified)." },
            { tag: "partial, none", run: run(true, "partially_verified", { summary: { verified: 0 } }), text: "Executed (0/? verified)." },
            { tag: "partial, unknown", run: run(true, "partially_verified"), text: "Executed (?/? verified)." },
            { tag: "partial, lines, details, undo",
              run: run(true, "partially_verified", Object.assign({ results: close, summary: { details: ["a", "b"] } }, id)),
              text: "Window closed. a; b (Undo available)" },
            { tag: "partial, read only", run: run(true, "partially_verified", Object.assign({ results: read }, id)), text: "1 windows open." },
            { tag: "partial, no live apply", run: run(true, "partially_verified", { results: [done("settings.write", { liveApplied: false })] }),
              text: "Setting applied." },
            { tag: "planned", run: run(true, "planned", id), text: "Plan validated (dry run). No changes were made." },
            { tag: "planned, no success", run: run(false, "planned"), text: "Plan validated (dry run). No changes were made." },
            { tag: "details", run: run(false, "failed", { error: "unused", summary: { details: ["a", "b"] } }), text: "Failed: a; b" },
            { tag: "error", run: run(false, "failed", { error: "no way" }), text: "Failed: no way" },
            { tag: "no reason", run: run(false, "failed", id), text: "Failed: Execution failed" },
            { tag: "verified without success", run: run(false, "verified"), text: "Failed: Execution failed" },
            { tag: "success without a summary", run: PlanText.parseOutcome({ success: true }), text: "Failed: Execution failed" },
            { tag: "hostile reason", run: run(false, "", { error: "{reason} %1 $&" }), text: "Failed: {reason} %1 $&" }
        ];
    }
    function test_message(row) {
        compare(PlanText.message(row.run), row.text);
    }

    function test_onlySuccessfulStepsAreListed() {
        const results = [done("window.close", {}), { ok: false, capabilityId: "trash.empty", result: { error: "x" } },
                         { ok: true, capabilityId: "trash.empty" }, done("app.launch", "started"), done("", "x"), null, 5];
        compare(PlanText.message(run(true, "verified", { results: results })), "Window closed. (app.launch)");
    }

    function test_liveApply_data() {
        const write = hook => done("settings.write", { liveApplied: false, liveApplyHook: hook });
        return [
            { tag: "cursor", results: [write("cursor_live_apply")], text: cursorNote },
            { tag: "font", results: [write("font_live_apply")], text: fontNote },
            { tag: "other", results: [write("panel_live_apply")], text: otherNote },
            { tag: "no hook", results: [write(undefined)], text: otherNote },
            { tag: "constructor", results: [write("constructor")], text: otherNote },
            { tag: "each once", results: [write("font_live_apply"), write("a"), write("font_live_apply"), write("b"), write("cursor_live_apply")],
              text: fontNote + " " + otherNote + " " + cursorNote },
            { tag: "applied", results: [done("settings.write", { liveApplied: true })], text: "" },
            { tag: "unknown", results: [done("settings.write", {})], text: "" },
            { tag: "not exactly false", results: [done("settings.write", { liveApplied: 0 })], text: "" },
            { tag: "another capability", results: [done("settings.read", { liveApplied: false })], text: "" }
        ];
    }
    function test_liveApply(row) {
        compare(PlanText.liveApplyText(row.results), row.text);
    }

    function test_lightChrome_data() {
        return [
            { tag: "dark", results: [done("theme.apply", { applied: "Breeze DARK" })], light: false },
            { tag: "light", results: [done("theme.apply", { applied: "breeze" })], light: true },
            { tag: "preview", results: [done("theme.preview", { preview: "Breeze Light" })], light: true },
            { tag: "applied first", results: [done("theme.preview", { applied: "Dark", preview: "Breeze" })], light: false },
            { tag: "last counts", results: [done("theme.apply", { applied: "Dark" }), done("theme.apply", { applied: "Breeze" })], light: true },
            { tag: "other theme", results: [done("theme.apply", { applied: "Oxygen" })], light: undefined },
            { tag: "failed", results: [{ ok: false, capabilityId: "theme.apply", result: { applied: "Dark" } }], light: undefined },
            { tag: "other capability", results: [done("settings.write", { applied: "Dark" })], light: undefined },
            { tag: "wrong type", results: [done("theme.apply", { applied: ["dark"] }), done("theme.apply", "dark")], light: undefined }
        ];
    }
    function test_lightChrome(row) {
        compare(PlanText.lightChrome(row.results), row.light);
    }

    function test_wrongTypes_data() {
        const nothing = { "success": false, "actionId": "", "error": "", "results": [], "state": "", "details": [],
                          "verified": undefined, "total": undefined };
        return [undefined, null, 5, "text", [], {}, { "success": 1, "actionId": 5, "error": {}, "results": "no", "verificationSummary": "no" },
                { "results": [null, 1, "x"], "verificationSummary": { "state": 5, "details": [null, 5, ""] } },
                { "results": { "length": 3 }, "verificationSummary": { "details": "no" } }]
            .map(payload => ({ tag: JSON.stringify(payload) || "undefined", payload: payload, expected: nothing }));
    }
    function test_wrongTypes(row) {
        compare(PlanText.parseOutcome(row.payload), row.expected);
        compare(PlanText.message(PlanText.parseOutcome(row.payload)), "Failed: Execution failed");
    }

    function test_stepText_data() {
        return [
            { tag: "params", step: { capabilityId: "audio.volume.set", params: { level: 30 } }, text: "audio.volume.set {\"level\":30}" },
            { tag: "no keys", step: { capabilityId: "window.list", params: {} }, text: "window.list" },
            { tag: "no params", step: { capabilityId: "window.list" }, text: "window.list" },
            { tag: "params are no object", step: { capabilityId: "a", params: "x" }, text: "a" },
            { tag: "no id", step: { params: { a: 1 } }, text: "step {\"a\":1}" },
            { tag: "wrong id", step: { capabilityId: { a: 1 } }, text: "step" },
            { tag: "null", step: null, text: "step" },
            { tag: "number", step: 5, text: "step" },
            { tag: "several lines", step: { capabilityId: "a\n\n  b", params: { c: "d\ne" } }, text: "a b {\"c\":\"d\\ne\"}" },
            { tag: "direction", step: { capabilityId: "a\u202e", params: { b: "\u2066c\u061c" } }, text: "a\\u202e {\"b\":\"\\u2066c\\u061c\"}" }
        ];
    }
    function test_stepText(row) {
        compare(PlanText.stepText(row.step), row.text);
    }

    function test_planFields_data() {
        return [
            { tag: "all", plan: { plan: [1], summary: "go\n dark", riskLevel: "low" }, steps: 1, summary: "go dark", risk: "Risk: low" },
            { tag: "empty", plan: { plan: [], summary: "", riskLevel: "" }, steps: 0, summary: "", risk: "" },
            { tag: "wrong types", plan: { plan: { length: 3 }, summary: 5, riskLevel: ["high"] }, steps: 0, summary: "", risk: "" },
            { tag: "null", plan: null, steps: 0, summary: "", risk: "" },
            { tag: "text", plan: "plan", steps: 0, summary: "", risk: "" }
        ];
    }
    function test_planFields(row) {
        compare(PlanText.steps(row.plan).length, row.steps);
        compare(PlanText.summary(row.plan), row.summary);
        compare(PlanText.risk(row.plan), row.risk);
    }

    function test_cut_data() {
        return [
            { tag: "fits", text: "x".repeat(60), cut: "x".repeat(60) },
            { tag: "too long", text: "x".repeat(61), cut: "x".repeat(60) + "…" },
            { tag: "emoji at the end", text: "x".repeat(59) + "😀😀", cut: "x".repeat(59) + "…" }
        ];
    }
    function test_cut(row) {
        compare(PlanText.summaryLength, 60);
        compare(PlanText.cut(row.text, PlanText.summaryLength), row.cut);
    }

    function test_progress_data() {
        const step = (index, total, phase, more) => Object.assign({ done: false, label: "", index: index, total: total, capability: "theme.apply", phase: phase }, more);
        return [
            { tag: "no step", run: step(-1, 0, ""), text: "Applying…", part: 0 },
            { tag: "no total", run: step(0, 0, "start"), text: "Applying…", part: 0 },
            { tag: "no index", run: step(-1, 3, "start"), text: "Applying…", part: 0 },
            { tag: "start", run: step(0, 3, "start"), text: "Step 1/3: theme apply…", part: 1 / 3 },
            { tag: "done", run: step(1, 3, "done"), text: "Step 2/3: theme apply ✓", part: 2 / 3 },
            { tag: "failed", run: step(2, 3, "failed"), text: "Step 3/3: theme apply ✗", part: 1 },
            { tag: "another phase", run: step(0, 1, "executing"), text: "Step 1/1: theme apply", part: 1 },
            { tag: "constructor", run: step(0, 1, "constructor"), text: "Step 1/1: theme apply", part: 1 },
            { tag: "beyond the end", run: step(9, 3, "start"), text: "Step 10/3: theme apply…", part: 1 },
            { tag: "hostile", run: step(0, 1, "start", { capability: "{total}.$&" }), text: "Step 1/1: {total} $&…", part: 1 },
            { tag: "ended", run: step(0, 3, "start", { done: true }), text: "✓ Done", part: 1 },
            { tag: "ended with a label", run: step(-1, 0, "", { done: true, label: "✗ No such window" }), text: "✗ No such window", part: 1 }
        ];
    }
    function test_progress(row) {
        compare(PlanText.progressText(row.run), row.text);
        fuzzyCompare(PlanText.progress(row.run.done, row.run.index, row.run.total), row.part, 0.0001);
    }

    //! A megabyte in every field. A search that doesn't end soon runs into the test's timeout.
    function test_hugeFields_data() {
        return [{ tag: "word", text: "x".repeat(1 << 20) }, { tag: "spaces", text: " ".repeat(1 << 20) + "x" },
                { tag: "dotted I", text: "İ".repeat(1 << 20) }];
    }
    function test_hugeFields(row) {
        const plan = { "summary": row.text, "riskLevel": row.text, "plan": [{ "capabilityId": row.text, "params": { "a": row.text } }] };
        verify(PlanText.summary(plan).length <= PlanText.wholeLength + 1);
        verify(PlanText.risk(plan).length < 400);
        verify(PlanText.stepText(plan.plan[0]).length <= PlanText.wholeLength + PlanText.lineLength + 2);
        verify(PlanText.progressText({ "done": true, "label": row.text }).length <= PlanText.wholeLength + 1);
        compare(PlanText.lightChrome([done("theme.apply", { "applied": row.text })]), undefined);
        const run = PlanText.parseOutcome({ "results": new Array(100000).fill(done("window.close", {})), "success": true,
                                            "verificationSummary": { "state": "verified" } });
        compare(PlanText.message(run).length, 100000 * 15 - 1);
    }
}
