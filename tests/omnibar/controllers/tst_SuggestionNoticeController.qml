// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

TestCase {
    id: test
    name: "SuggestionNoticeController"

    property FakeBar bar
    property FakeSdk sdk
    property SuggestionNoticeController notice

    readonly property string json: '{"title":"Prepare?","actions":[{"id":"prepare","label":"Prepare now"}]}'

    Component { id: bars; FakeBar {} }
    Component { id: sdks; FakeSdk {} }
    Component { id: controllers; SuggestionNoticeController {} }

    function init() {
        sdk = createTemporaryObject(sdks, test);
        bar = createTemporaryObject(bars, test, { "sdk": sdk });
        notice = createTemporaryObject(controllers, test, { "bar": bar });
    }

    function test_firstValues() {
        compare(notice.wiSuggestionNotifyStatus, "");
        compare(notice.wiNotifyBarLine, "");
        compare(notice.workspaceSuggestionDialogJson, "");
        compare(notice.workspaceSuggestionDialogData, {});
        compare(notice.workspaceSuggestionDialogOpen, false);
        compare(notice.wiNotifyBarClearTimer.interval, 15000);
        compare(notice.wiNotifyBarClearTimer.repeat, false);
        compare(notice.wiNotifyBarClearTimer.running, false);
    }

    function test_withoutAClient() {
        bar.sdk = null;
        notice.checkWorkspaceSuggestion();
        notice.resetDismissedSuggestions();
        notice.applyWorkspaceSuggestion("prepare");
        compare(notice.workspaceSuggestionDialogOpen, false);
    }

    function test_check() {
        notice.checkWorkspaceSuggestion();
        compare(notice.wiSuggestionNotifyStatus, "<Running analysis…>");
        compare(sdk.takeCalls(), ["checkWorkspaceSuggestionNotify()"]);
    }

    function test_reset() {
        notice.resetDismissedSuggestions();
        compare(notice.wiSuggestionNotifyStatus, "<Dismissed prompts cleared — try Check workspace suggestion again.>");
        compare(sdk.takeCalls(), ["clearAiRuntimeDismissedSuggestions()"]);
    }

    function test_failureEndsTheCheck_data() {
        return [
            { tag: "error", fail: () => sdk.error("no server"), status: "no server" },
            { tag: "error without a text", fail: () => sdk.error(""), status: "<Request failed>" },
            { tag: "error of the connection", fail: () => sdk.error("WebSocket error: 1"), status: "<SDK is connecting...>" },
            { tag: "lost connection", fail: () => { sdk.ready = false; }, status: "<SDK is connecting...>" }
        ];
    }
    function test_failureEndsTheCheck(data) {
        notice.checkWorkspaceSuggestion();
        data.fail();
        compare(notice.wiSuggestionNotifyStatus, data.status);
        // The connection that comes back is not a second failure, nor is another request's error.
        sdk.ready = true;
        sdk.error("another");
        compare(notice.wiSuggestionNotifyStatus, data.status);
    }

    function test_refusedRequests_data() {
        return [
            { tag: "check", request: () => notice.checkWorkspaceSuggestion() },
            { tag: "reset", request: () => notice.resetDismissedSuggestions() }
        ];
    }
    function test_refusedRequests(data) {
        sdk.answers.refusal = "not ready";
        data.request();
        compare(notice.wiSuggestionNotifyStatus, "not ready");
    }

    function test_otherErrorsAreNotTheirs_data() {
        return [
            { tag: "after the result", before: () => {
                notice.checkWorkspaceSuggestion();
                sdk.workspaceSuggestionNotifyResult({ "reason": "dry_run" });
            } },
            { tag: "after the reset", before: () => notice.resetDismissedSuggestions() }
        ];
    }
    function test_otherErrorsAreNotTheirs(data) {
        data.before();
        const status = notice.wiSuggestionNotifyStatus;
        sdk.error("another");
        sdk.ready = false;
        compare(notice.wiSuggestionNotifyStatus, status);
    }

    function test_result() {
        sdk.workspaceSuggestionNotifyResult({ "notified": true, "topSuggestion": { "title": "Prepare?" } });
        compare(notice.wiSuggestionNotifyStatus, "<Desktop notification sent.> — Prepare?");
        compare(notice.wiNotifyBarLine, notice.wiSuggestionNotifyStatus);
        compare(notice.wiNotifyBarClearTimer.running, true);
    }

    function test_longResult() {
        const title = "x".repeat(131);
        sdk.workspaceSuggestionNotifyResult({ "topSuggestion": { "title": title } });
        compare(notice.wiSuggestionNotifyStatus, title);
        compare(notice.wiNotifyBarLine, "x".repeat(127) + "…");
    }

    function test_lineIsCleared() {
        notice.wiNotifyBarClearTimer.interval = 10;
        sdk.workspaceSuggestionNotifyResult({ "reason": "dnd" });
        compare(notice.wiNotifyBarLine, "<Do Not Disturb is on; notification skipped.>");
        tryCompare(notice, "wiNotifyBarLine", "");
        compare(notice.wiSuggestionNotifyStatus, "<Do Not Disturb is on; notification skipped.>");
        compare(notice.wiNotifyBarClearTimer.running, false);
    }

    function test_newLineIsShownAsLong() {
        notice.wiNotifyBarClearTimer.interval = 100000;
        sdk.workspaceSuggestionNotifyResult({ "reason": "dnd" });
        const restarts = [];
        notice.wiNotifyBarClearTimer.runningChanged.connect(() => restarts.push(notice.wiNotifyBarClearTimer.running));
        sdk.workspaceSuggestionNotifyResult({ "reason": "dry_run" });
        compare(restarts, [false, true]);
    }

    function test_userChoice_data() {
        return [
            { tag: "review", payload: { "action": "review", "suggestionId": "a" }, opens: true },
            { tag: "other", payload: { "action": "prepare" }, opens: false },
            { tag: "nothing", payload: {}, opens: false }
        ];
    }
    function test_userChoice(data) {
        sdk.workspaceSuggestionUserChoice(data.payload);
        compare(bar.settingsPanelOpen, data.opens);
        compare(notice.wiSuggestionNotifyStatus, data.opens ? "<Review this suggestion in Settings → Workspace learning.>" : "");
        compare(bar.takeCalls(), []); // queued
        wait(0);
        compare(bar.takeCalls(), data.opens ? ["refreshRuntimePanels()"] : []);
    }

    function test_dialog() {
        sdk.workspaceSuggestionShowInAppDialog(json);
        compare(notice.workspaceSuggestionDialogOpen, true);
        compare(notice.workspaceSuggestionDialogJson, json);
        compare(notice.workspaceSuggestionDialogData.title, "Prepare?");
        notice.applyWorkspaceSuggestion("prepare");
        compare(sdk.takeCalls(), ["applyWorkspaceSuggestionAction(prepare, " + json + ")"]);
        compare(notice.workspaceSuggestionDialogOpen, false);
    }

    function test_dialogIsClosed() {
        sdk.workspaceSuggestionShowInAppDialog(json);
        notice.closeWorkspaceSuggestionDialog();
        compare(notice.workspaceSuggestionDialogOpen, false);
        compare(sdk.takeCalls(), []);
    }

    function test_invalidDialog_data() {
        return [
            { tag: "empty", json: "", warns: false },
            { tag: "broken", json: "{", warns: true },
            { tag: "no object", json: "null", warns: true }
        ];
    }
    function test_invalidDialog(data) {
        if (data.warns)
            ignoreWarning(/^\[OmniBar\] workspace suggestion dialog JSON parse failed: /);
        sdk.workspaceSuggestionShowInAppDialog(data.json);
        compare(notice.workspaceSuggestionDialogOpen, false);
        compare([notice.workspaceSuggestionDialogJson, notice.workspaceSuggestionDialogData], ["", {}]);
        // One that is open stays.
        sdk.workspaceSuggestionShowInAppDialog(json);
        if (data.warns)
            ignoreWarning(/^\[OmniBar\] workspace suggestion dialog JSON parse failed: /);
        sdk.workspaceSuggestionShowInAppDialog(data.json);
        compare([notice.workspaceSuggestionDialogOpen, notice.workspaceSuggestionDialogJson], [true, json]);
    }
}
