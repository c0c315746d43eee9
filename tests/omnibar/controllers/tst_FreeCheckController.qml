// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

TestCase {
    id: test
    name: "FreeCheckController"

    property FakeBar bar
    property FakeSdk sdk
    property FreeCheckController check

    readonly property var result: ({
        "results": [{ "model": "p/a", "ok": true, "responseMs": 5 }, { "model": "p/b", "ok": false }],
        "recommended": { "model": "p/a", "ok": true }
    })

    Component { id: bars; FakeBar {} }
    Component { id: clients; FakeSdk {} }
    Component { id: controllers; FreeCheckController {} }

    function init() {
        bar = createTemporaryObject(bars, test);
        sdk = createTemporaryObject(clients, test);
        bar.sdk = sdk;
        check = createTemporaryObject(controllers, test, { "bar": bar });
    }

    function test_notReady_data() {
        return [{ tag: "no client", client: false }, { tag: "not ready", client: true }];
    }
    function test_notReady(data) {
        if (data.client)
            sdk.ready = false;
        else
            bar.sdk = null;
        check.checkFreeProviders();
        compare([check.freeCheckRunning, check.freeCheckStatus], [false, "<SDK is connecting...>"]);
        compare(sdk.calls, []);
    }

    function test_start() {
        sdk.freeProvidersChecked(result);
        check.checkFreeProviders();
        compare([check.freeCheckRunning, check.freeCheckResults.length, check.recommendedModel], [true, 0, ""]);
        compare(check.freeCheckStatus, "<Testing free models (this may take a minute)...>");
        compare(sdk.calls, ["checkFreeProviders()"]);
    }

    function test_result() {
        check.checkFreeProviders();
        sdk.freeProvidersChecked(result);
        compare([check.freeCheckRunning, check.freeCheckStatus], [false, "<1 of 2 free model(s) responded.>"]);
        compare(check.freeCheckResults.map(row => row.model), ["p/a", "p/b"]);
        compare([check.freeCheckRecommended.model, check.recommendedModel], ["p/a", "p/a"]);
    }

    function test_noResult_data() {
        return [{ tag: "null", result: null }, { tag: "empty", result: {} }];
    }
    function test_noResult(data) {
        check.checkFreeProviders();
        sdk.freeProvidersChecked(data.result);
        compare([check.freeCheckRunning, check.freeCheckStatus], [false, "<Check failed — no result from bridge.>"]);
    }

    function test_recommendation_data() {
        return [
            { tag: "missing", recommended: undefined, model: "" },
            { tag: "null", recommended: null, model: "" },
            { tag: "not ok", recommended: { "model": "p/a", "ok": false }, model: "" },
            { tag: "wrong types", recommended: { "model": 7, "ok": true }, model: "" },
            { tag: "good", recommended: { "model": "p/a", "ok": true }, model: "p/a" }
        ];
    }
    function test_recommendation(data) {
        sdk.freeProvidersChecked({ "results": [], "recommended": data.recommended });
        compare(check.recommendedModel, data.model);
        check.applyRecommendedModel();
        compare(bar.calls, data.model === "" ? [] : ["selectSettingsModel(p/a)"]);
        compare(check.freeCheckStatus, data.model === "" ? "<No free models found.>" : "<Default model set to: p/a>");
    }

    function test_failureEndsTheRun_data() {
        return [
            { tag: "error", fail: () => sdk.error("no server"), status: "no server" },
            { tag: "error without a text", fail: () => sdk.error(""), status: "<Request failed>" },
            { tag: "error of the connection", fail: () => sdk.error("WebSocket error: 1"), status: "<SDK is connecting...>" },
            { tag: "lost connection", fail: () => { sdk.ready = false; }, status: "<SDK is connecting...>" }
        ];
    }
    function test_failureEndsTheRun(data) {
        check.checkFreeProviders();
        data.fail();
        compare([check.freeCheckRunning, check.freeCheckStatus], [false, data.status]);
    }

    function test_otherErrorsAreNotIts() {
        sdk.freeProvidersChecked(result);
        sdk.error("another");
        sdk.ready = false;
        compare(check.freeCheckStatus, "<1 of 2 free model(s) responded.>");
    }
}
