// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/WorkspaceTemplates.js" as WorkspaceTemplates

TestCase {
    name: "WorkspaceTemplates"

    readonly property var rows: WorkspaceTemplates.base()

    function never() { return false; }
    function always() { return true; }
    function tr(text) { return "<" + text + ">"; }

    //! A workspace that belongs to "meeting".
    function meeting(values) {
        return Object.assign({ "id": 2, "status": "active", "behaviorRules": { "slug": "meeting" } }, values);
    }

    function test_base() {
        compare(rows, [
            { "id": "focus-dev", "name": "Focus — Development", "description": "Editor, terminal, and docs for focused development.",
              "enabled": false, "workspaceId": 0 },
            { "id": "meeting", "name": "Meeting", "description": "Video or chat with notes for meetings.", "enabled": false, "workspaceId": 0 },
            { "id": "research", "name": "Research", "description": "Browser and notes for reading and capture.", "enabled": false,
              "workspaceId": 0 }
        ]);
        compare(WorkspaceTemplates.base(tr)[1].name, "<Meeting>");
    }

    function test_preferred() {
        const preferred = WorkspaceTemplates.preferred(rows, id => id === "research");
        compare(preferred.map(row => row.enabled), [false, false, true]);
        compare(rows.map(row => row.enabled), [false, false, false]); // a copy
    }

    function test_slugOf_data() {
        return [
            { tag: "object", workspace: { "behaviorRules": { "slug": "meeting" } }, slug: "meeting" },
            { tag: "JSON", workspace: { "behaviorRules": '{"slug":"meeting"}' }, slug: "meeting" },
            { tag: "other key", workspace: { "behavior_rules": { "slug": "meeting" } }, slug: "meeting" },
            { tag: "JSON under the other key", workspace: { "behavior_rules": '{"slug":"meeting"}' }, slug: "meeting" },
            { tag: "both", workspace: { "behaviorRules": { "slug": "a" }, "behavior_rules": { "slug": "b" } }, slug: "a" },
            { tag: "first one empty", workspace: { "behaviorRules": "", "behavior_rules": { "slug": "b" } }, slug: "b" },
            { tag: "broken JSON", workspace: { "behaviorRules": '{"slug":"meeting"' }, slug: "" },
            { tag: "broken JSON before another", workspace: { "behaviorRules": "{", "behavior_rules": { "slug": "b" } }, slug: "" },
            { tag: "JSON null", workspace: { "behaviorRules": "null" }, slug: "" },
            { tag: "JSON number", workspace: { "behaviorRules": "5" }, slug: "" },
            { tag: "deep JSON", workspace: { "behaviorRules": "[".repeat(100000) }, slug: "" },
            { tag: "number as slug", workspace: { "behaviorRules": { "slug": 5 } }, slug: "" },
            { tag: "list as rules", workspace: { "behaviorRules": ["slug"] }, slug: "" },
            { tag: "no rules", workspace: { "id": 1, "slug": "meeting" }, slug: "" },
            { tag: "no workspace", workspace: null, slug: "" },
            { tag: "text", workspace: "meeting", slug: "" }
        ];
    }
    function test_slugOf(data) {
        compare(WorkspaceTemplates.slugOf(data.workspace), data.slug);
    }

    function test_merged_data() {
        const row = { "id": "meeting", "name": "Meeting", "description": "Video or chat with notes for meetings.", "enabled": true,
                      "workspaceId": 2 };
        const with_ = values => Object.assign({}, row, values);
        const unmatched = with_({ "workspaceId": 0 });
        return [
            { tag: "bare", workspaces: [meeting({})], row: row },
            { tag: "name and goal", workspaces: [meeting({ "name": "Standup", "goal": "Be short." })],
              row: with_({ "name": "Standup", "description": "Be short." }) },
            { tag: "empty name and goal", workspaces: [meeting({ "name": "", "goal": "" })], row: row },
            { tag: "wrong types", workspaces: [meeting({ "name": 5, "goal": {} })], row: row },
            { tag: "paused", workspaces: [meeting({ "status": "paused" })], row: with_({ "enabled": false }) },
            { tag: "no status", workspaces: [meeting({ "status": undefined })], row: with_({ "enabled": false }) },
            { tag: "other letters", workspaces: [meeting({ "status": "Active" })], row: with_({ "enabled": false }) },
            { tag: "true as status", workspaces: [meeting({ "status": true })], row: with_({ "enabled": false }) },
            { tag: "id 0", workspaces: [meeting({ "id": 0 })], row: unmatched },
            { tag: "negative id", workspaces: [meeting({ "id": -2 })], row: unmatched },
            { tag: "fraction as id", workspaces: [meeting({ "id": 1.5 })], row: unmatched },
            { tag: "id too large", workspaces: [meeting({ "id": 2147483648 })], row: unmatched },
            { tag: "largest id", workspaces: [meeting({ "id": 2147483647 })], row: with_({ "workspaceId": 2147483647 }) },
            { tag: "text as id", workspaces: [meeting({ "id": "2" })], row: unmatched },
            { tag: "two for one row", workspaces: [meeting({ "id": 5 }), meeting({})], row: row },
            { tag: "others", workspaces: [null, 5, "meeting", {}, meeting({}), { "id": 3, "behaviorRules": { "slug": "__proto__" } }], row: row },
            { tag: "none", workspaces: [], row: unmatched }
        ];
    }
    function test_merged(data) {
        const merged = WorkspaceTemplates.merged(rows, data.workspaces, always);
        compare(merged.map(row => row.id), ["focus-dev", "meeting", "research"]);
        compare(merged[1], data.row);
        compare(merged[0], Object.assign({}, rows[0], { "enabled": true }));
    }

    function test_brokenRulesNeverMatch() {
        const merged = WorkspaceTemplates.merged(rows, [meeting({ "name": "Hidden", "behaviorRules": '{"slug":"meeting"' })], never);
        compare(merged, rows);
    }

    function test_toEnable_data() {
        return [
            { tag: "wanted and off", row: { "enabled": false, "workspaceId": 2 }, preferred: true, count: 1 },
            { tag: "not wanted", row: { "enabled": false, "workspaceId": 2 }, preferred: false, count: 0 },
            { tag: "on already", row: { "enabled": true, "workspaceId": 2 }, preferred: true, count: 0 },
            { tag: "on and not wanted", row: { "enabled": true, "workspaceId": 2 }, preferred: false, count: 0 },
            { tag: "no workspace", row: { "enabled": false, "workspaceId": 0 }, preferred: true, count: 0 }
        ];
    }
    function test_toEnable(data) {
        compare(WorkspaceTemplates.toEnable([Object.assign({ "id": "meeting" }, data.row)], () => data.preferred).length, data.count);
    }

    function test_refusal_data() {
        const texts = ["Enable the template first.", "Workspace templates require LOOMRA_WORKSPACE_INTEL=1 on the bridge.",
                       "Turn on desktop actions to prepare this template.",
                       "Template not ready yet — enable WI and restart the bridge.", ""];
        // Each condition fails in turn; those before it hold, and so do those after it or not.
        return [0, 1, 2, 3, 4].map(failing => ({ tag: texts[failing] || "none", failing: failing, text: texts[failing] }));
    }
    function test_refusal(data) {
        for (const later of [true, false]) {
            const holds = index => index < data.failing || (index > data.failing && later);
            const row = { "enabled": holds(0), "workspaceId": holds(3) ? 1 : 0 };
            const state = { "available": holds(1), "toolsEnabled": holds(2) };
            compare(WorkspaceTemplates.refusal(row, state), data.text);
        }
    }

    function test_preparing() {
        compare(WorkspaceTemplates.preparingText(rows[0]), "Preparing Focus — Development…");
        compare(WorkspaceTemplates.preparingText({ "name": "{name} $&" }, tr), "<Preparing {name} $&…>");
    }

    function test_preparedText_data() {
        return [
            { tag: "name", result: { "ok": true, "workspace": { "name": "Meeting" } }, text: "Prepared Meeting." },
            { tag: "no name", result: { "ok": true, "workspace": {} }, text: "Prepared workspace." },
            { tag: "number as name", result: { "ok": true, "workspace": { "name": 5 } }, text: "Prepared workspace." },
            { tag: "no workspace", result: { "ok": true }, text: "Prepared workspace." },
            { tag: "null as workspace", result: { "ok": true, "workspace": null }, text: "Prepared workspace." },
            { tag: "error", result: { "ok": false, "error": "no app", "workspace": { "name": "Meeting" } }, text: "no app" },
            { tag: "error alone", result: { "error": "no app" }, text: "no app" },
            { tag: "ok with an error", result: { "ok": true, "error": "no app" }, text: "Prepared workspace." },
            { tag: "text as ok", result: { "ok": "false", "error": "no app" }, text: "no app" },
            { tag: "object as error", result: { "error": {} }, text: "" },
            { tag: "nothing", result: {}, text: "" }
        ];
    }
    function test_preparedText(data) {
        compare(WorkspaceTemplates.preparedText(data.result), data.text);
    }
}
