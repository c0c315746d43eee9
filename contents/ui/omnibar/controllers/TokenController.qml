// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../../../../components/logic/Native.js" as Native

//! Tokens of model providers. Intentional: no control of the sheet uses this, and the bridge's replies are not shown.
Controller {
    property string tokenProvider: ""
    property string tokenInput: ""
    property string tokenStatusMessage: ""

    function refreshTokenStatus() {
        if (hasProvider())
            Native.call(bar.sdk, "getTokenStatus", tokenProvider);
    }

    function saveProviderToken() {
        if (!hasProvider())
            return;
        if (tokenInput.trim() === "") {
            tokenStatusMessage = bar.tr("Enter a token first.");
            return;
        }
        tokenStatusMessage = bar.tr("Saving token...");
        Native.call(bar.sdk, "setProviderToken", tokenProvider, tokenInput);
    }

    //! Explains in the status if there is no provider.
    function hasProvider() {
        if (tokenProvider.trim() !== "")
            return true;
        tokenStatusMessage = bar.tr("Provider not detected yet.");
        return false;
    }
}
