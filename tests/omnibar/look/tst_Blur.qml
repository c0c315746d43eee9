// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui"

//! When the OmniBar asks the compositor for blur: at startup and on each change of its size.
Item {
    id: root

    QtObject {
        id: effects

        //! The arguments of each call, and the size of the window then.
        property var calls: []

        function blurBehind(window, enabled) {
            calls = calls.concat({ "window": window, "enabled": enabled, "size": window.width + "x" + window.height });
        }
    }

    Component {
        id: windows
        OmniBar {}
    }

    TestCase {
        name: "Blur"

        function open() {
            effects.calls = [];
            const bar = createTemporaryObject(windows, root, { "windowEffects": effects });
            verify(bar);
            return bar;
        }

        function test_atStartup() {
            const bar = open();
            verify(effects.calls.length > 0);
            verify(effects.calls.every(call => call.window === bar && call.enabled === true));
        }

        function test_onEachChangeOfSize_data() {
            return [
                { tag: "width", change: bar => { bar.width = 500; }, size: "500x" },
                { tag: "height", change: bar => { bar.height = 400; }, size: "x400" }
            ];
        }

        function test_onEachChangeOfSize(data) {
            const bar = open();
            effects.calls = [];
            let changes = 0;
            const count = () => { ++changes; };
            bar.widthChanged.connect(count);
            bar.heightChanged.connect(count);
            data.change(bar);
            tryVerify(() => (bar.width + "x" + bar.height).includes(data.size));
            verify(changes > 0);
            compare(effects.calls.length, changes);
            compare(effects.calls[changes - 1].size, bar.width + "x" + bar.height);
        }

        //! Intentional: the blur stays as it is.
        function test_notIfOpaque() {
            const bar = open();
            bar.appearanceStore.translucentBackground = false;
            effects.calls = [];
            bar.width = 500;
            tryCompare(bar, "width", 500);
            compare(effects.calls, []);
            bar.appearanceStore.translucentBackground = true;
            compare(effects.calls, []);
            bar.width = 600;
            tryCompare(bar, "width", 600);
            verify(effects.calls.length > 0);
        }
    }
}
