// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

TestCase {
    id: test
    name: "TokenController"

    Component { id: bars; FakeBar {} }
    Component { id: clients; FakeSdk {} }
    Component { id: controllers; TokenController {} }

    function test_tokens_data() {
        return [
            { tag: "status", provider: "p", token: "", act: "refreshTokenStatus", calls: ["getTokenStatus(p)"], status: "" },
            { tag: "status without a provider", provider: " ", token: "", act: "refreshTokenStatus", calls: [], status: "<Provider not detected yet.>" },
            { tag: "save", provider: "p", token: "t", act: "saveProviderToken", calls: ["setProviderToken(p, t)"], status: "<Saving token...>" },
            { tag: "save without a token", provider: "p", token: " ", act: "saveProviderToken", calls: [], status: "<Enter a token first.>" },
            { tag: "save without anything", provider: "", token: "", act: "saveProviderToken", calls: [], status: "<Provider not detected yet.>" }
        ];
    }
    function test_tokens(data) {
        const bar = createTemporaryObject(bars, test);
        bar.sdk = createTemporaryObject(clients, test);
        const tokens = createTemporaryObject(controllers, test, { "bar": bar, "tokenProvider": data.provider, "tokenInput": data.token });
        tokens[data.act]();
        compare(bar.sdk.calls, data.calls);
        compare(tokens.tokenStatusMessage, data.status);
    }
}
