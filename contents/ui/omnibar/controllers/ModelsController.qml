// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Native.js" as Native

//! The list of models, as the settings sheet shows it.
Controller {
    id: models

    property bool modelsLoading: false
    property string modelsStatusMessage: ""

    function refreshModels() {
        if (!bar.sdk)
            return;
        if (!bar.sdk.ready) {
            modelsStatusMessage = bar.tr("SDK is connecting...");
            return;
        }
        modelsLoading = true;
        modelsStatusMessage = "";
        Native.call(bar.sdk, "listModels");
    }

    //! Shows the current model in the sheet's list. Without the client there is no list to show it in.
    function syncSettingsCombos() {
        if (!bar.sdk)
            return;
    }
}
