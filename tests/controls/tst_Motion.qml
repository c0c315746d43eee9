// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15
import org.kde.plasma.core 2.0 as PlasmaCore

import org.kde.loomra.components.controls 1.0
import "../../components/controls/Motion.js" as Motion

//! The animation speed of the desktop.
Item {
    id: root

    width: 200
    height: 100

    Component {
        id: switches

        PlainSwitch {
            label: "Switch"
            textColor: "black"
            onColor: "green"
            offColor: "gray"
            borderColor: "black"
            ringColor: "blue"
        }
    }
    Component {
        id: buttons

        RoundButton { label: "Button" }
    }

    TestCase {
        name: "Motion"
        when: windowShown

        function test_scaled_data() {
            return [
                { "tag": "off", "longDuration": 0, "duration": 0 },
                { "tag": "off, as some versions report it", "longDuration": 1, "duration": 0 },
                { "tag": "fast", "longDuration": 100, "duration": 60 },
                { "tag": "normal", "longDuration": 200, "duration": 120 },
                { "tag": "slow", "longDuration": 400, "duration": 240 }
            ];
        }
        function test_scaled(data) {
            compare(Motion.scaled(120, data.longDuration), data.duration);
        }

        function test_buttonFollowsTheDesktop() {
            compare(createTemporaryObject(buttons, root).hoverDuration,
                    Motion.scaled(120, PlasmaCore.Units.longDuration));
        }

        function test_withoutMotion() {
            const control = createTemporaryObject(switches, root, { "slideDuration": 0 });
            const knob = control.indicator.children[0];
            const before = knob.x;
            control.toggle();
            verify(knob.x > before + 10); // at once
        }
    }
}
