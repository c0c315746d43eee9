// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/SuggestionNotice.js" as SuggestionNotice

TestCase {
    name: "SuggestionNotice"

    readonly property string sent: "Desktop notification sent."
    readonly property string plasma: "System notification (Plasma) with actions. Set LOOMRA_WORKSPACE_NOTIFY_INAPP=1 to also show the in-app dialog."

    function tr(text) { return "<" + text + ">"; }

    function test_statusText_data() {
        return [
            { tag: "actions", payload: { "notified": true, "notificationChannel": "freedesktop-actions" }, text: plasma },
            { tag: "other channel", payload: { "notified": true, "notificationChannel": "client" }, text: sent },
            { tag: "no channel", payload: { "notified": true }, text: sent },
            { tag: "channel without a notification", payload: { "notified": false, "notificationChannel": "freedesktop-actions" }, text: "" },
            { tag: "text as notified", payload: { "notified": "true" }, text: "" },
            { tag: "no suggestions", payload: { "reason": "no_suggestions" },
              text: "No suggestions right now (run observation / analysis first)." },
            { tag: "low confidence", payload: { "reason": "low_confidence" }, text: "Top suggestion is below the confidence threshold." },
            { tag: "do not disturb", payload: { "reason": "dnd" }, text: "Do Not Disturb is on; notification skipped." },
            { tag: "failure", payload: { "reason": "notification_failed", "notificationError": "no server" },
              text: "Could not show notification: no server" },
            { tag: "failure without an error", payload: { "reason": "notification_failed" }, text: "Could not show notification: " },
            { tag: "dry run", payload: { "reason": "dry_run" }, text: "Dry run — would notify." },
            { tag: "dry run that notified", payload: { "notified": true, "reason": "dry_run" }, text: sent + " — Dry run — would notify." },
            { tag: "unknown reason", payload: { "reason": "toString" }, text: "" },
            { tag: "nothing", payload: {}, text: "" },
            { tag: "title", payload: { "topSuggestion": { "title": "Prepare?" } }, text: "Prepare?" },
            { tag: "empty title", payload: { "notified": true, "topSuggestion": { "title": "" } }, text: sent },
            { tag: "object as title", payload: { "notified": true, "topSuggestion": { "title": {} } }, text: sent },
            { tag: "null as suggestion", payload: { "notified": true, "topSuggestion": null }, text: sent },
            { tag: "both counts", payload: { "analysis": { "clustersCreated": 2, "candidatesDetected": 0 } },
              text: "Δ clusters 2, candidates 0" },
            { tag: "clusters alone", payload: { "analysis": { "clustersCreated": 2 } }, text: "Δ clusters 2, candidates ?" },
            { tag: "candidates alone", payload: { "analysis": { "candidatesDetected": 2 } }, text: "Δ clusters ?, candidates 2" },
            { tag: "null as count", payload: { "analysis": { "clustersCreated": null, "candidatesDetected": 2 } },
              text: "Δ clusters ?, candidates 2" },
            { tag: "object as count", payload: { "analysis": { "clustersCreated": {} } }, text: "Δ clusters ?, candidates ?" },
            { tag: "no counts", payload: { "analysis": {} }, text: "" },
            { tag: "null as analysis", payload: { "analysis": null }, text: "" },
            { tag: "all", payload: { "notified": true, "reason": "", "topSuggestion": { "title": "Prepare?" },
                                     "analysis": { "clustersCreated": 1, "candidatesDetected": 2 } },
              text: sent + " — Prepare? — Δ clusters 1, candidates 2" }
        ];
    }
    function test_statusText(data) {
        compare(SuggestionNotice.statusText(data.payload), data.text);
    }

    function test_partsAreTranslated() {
        compare(SuggestionNotice.statusText({ "notified": true, "topSuggestion": { "title": "Prepare?" } }, tr), "<" + sent + "> — Prepare?");
    }

    function test_barLine_data() {
        return [
            { tag: "130", text: "x".repeat(130), line: "x".repeat(130) },
            { tag: "131", text: "x".repeat(131), line: "x".repeat(127) + "…" },
            { tag: "many", text: "x".repeat(100000), line: "x".repeat(127) + "…" },
            { tag: "half an emoji", text: "x".repeat(126) + "😀".repeat(10), line: "x".repeat(126) + "…" },
            { tag: "empty", text: "", line: "" }
        ];
    }
    function test_barLine(data) {
        compare(SuggestionNotice.barLine(data.text), data.line);
    }

    function test_parsed_data() {
        return [
            { tag: "object", json: '{"title":"a"}', isValid: true },
            { tag: "broken", json: '{"title":"a"', isValid: false },
            { tag: "null", json: "null", isValid: false },
            { tag: "number", json: "5", isValid: false },
            { tag: "text", json: '"a"', isValid: false },
            { tag: "no JSON", json: "hello", isValid: false }
        ];
    }
    function test_parsed(data) {
        let isValid = true;
        try {
            compare(SuggestionNotice.parsed(data.json), JSON.parse(data.json));
        } catch (error) {
            isValid = false;
        }
        compare(isValid, data.isValid);
    }

    function test_titleAndBody_data() {
        return [
            { tag: "texts", content: { "title": "a", "body": "b\nc" }, title: "a", body: "b\nc" },
            { tag: "missing", content: {}, title: "", body: "" },
            { tag: "wrong types", content: { "title": {}, "body": [] }, title: "", body: "" },
            { tag: "lines in the title", content: { "title": "a\nb" }, title: "a\ufffdb", body: "" },
            { tag: "huge", content: { "title": "x".repeat(100000), "body": "x".repeat(100000) }, title: "x".repeat(200) + "…",
              body: "x".repeat(10000) + "…" }
        ];
    }
    function test_titleAndBody(data) {
        compare(SuggestionNotice.title(data.content), data.title);
        compare(SuggestionNotice.body(data.content), data.body);
    }

    function test_actions_data() {
        const action = (id, label) => ({ "id": id, "label": label });
        return [
            { tag: "two", list: [action("prepare", "Prepare now"), action("dismiss", "Not now")],
              actions: [action("prepare", "Prepare now"), action("dismiss", "Not now")] },
            { tag: "no label", list: [{ "id": "prepare" }], actions: [action("prepare", "prepare")] },
            { tag: "empty label", list: [action("prepare", "")], actions: [action("prepare", "prepare")] },
            { tag: "object as label", list: [action("prepare", {})], actions: [action("prepare", "prepare")] },
            { tag: "no id", list: [{ "label": "Prepare" }, action("", "a"), action({}, "b")], actions: [] },
            { tag: "strangers", list: [null, 5, "prepare", []], actions: [] },
            { tag: "too many", list: Array(100).fill(action("a", "b")), actions: Array(8).fill(action("a", "b")) },
            { tag: "label of several lines", list: [action("a\nb", "c\nd")], actions: [action("a\nb", "c\ufffdd")] },
            { tag: "no list", list: { "length": 1 }, actions: [] },
            { tag: "missing", list: undefined, actions: [] }
        ];
    }
    function test_actions(data) {
        compare(SuggestionNotice.actions({ "actions": data.list }), data.actions);
    }
}
