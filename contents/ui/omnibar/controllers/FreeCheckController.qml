// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Models.js" as Models
import "../../../../components/logic/Native.js" as Native
import "../../../../components/logic/Translatable.js" as Translatable

//! The check which of the free models respond.
Controller {
    id: check

    property bool freeCheckRunning: false
    //! Rows with model, displayName, ok, responseMs, response and error.
    property var freeCheckResults: []
    //! The bridge's recommendation, like a row; null if there is none.
    property var freeCheckRecommended: null
    property string freeCheckStatus: ""

    readonly property string recommendedModel: {
        const row = freeCheckRecommended;
        return row && row.ok === true && typeof row.model === "string" ? row.model : "";
    }

    function checkFreeProviders() {
        if (!isReady()) {
            freeCheckStatus = bar.tr("SDK is connecting...");
            return;
        }
        freeCheckRunning = true;
        freeCheckResults = [];
        freeCheckRecommended = null;
        freeCheckStatus = bar.tr("Testing free models (this may take a minute)...");
        Native.call(bar.sdk, "checkFreeProviders");
    }

    function take(result) {
        freeCheckRunning = false;
        if (!Models.isCheckResult(result)) {
            freeCheckStatus = bar.tr("Check failed — no result from bridge.");
            return;
        }
        freeCheckResults = Models.checkRows(result);
        freeCheckRecommended = result.recommended || null;
        freeCheckStatus = Models.checkStatus(freeCheckResults, bar.tr);
    }

    function applyRecommendedModel() {
        if (recommendedModel === "")
            return;
        bar.selectSettingsModel({ "fullId": recommendedModel });
        freeCheckStatus = Translatable.filled(bar.tr("Default model set to: {id}"), { "id": recommendedModel });
    }

    function giveUp(text) {
        if (!freeCheckRunning)
            return;
        freeCheckRunning = false;
        freeCheckStatus = text;
    }

    Connections {
        target: check.bar.sdk

        function onFreeProvidersChecked(result) {
            check.take(result);
        }
        // Without this the button would stay disabled. If the error belongs to another request, the result still comes.
        function onError(error) {
            check.giveUp(check.errorText(error, check.bar.tr("SDK is connecting...")));
        }
        function onReadyChanged() {
            // A lost connection takes the open request with it.
            check.giveUp(check.bar.tr("SDK is connecting..."));
        }
    }
}
