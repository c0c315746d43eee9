// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import org.kde.loomra.components.controls 1.0

//! A text with an "&" is no shortcut.
Item {
    id: root

    width: 200
    height: 100

    SignalSpy {
        id: clicks
    }

    Component {
        id: plainButtons

        PlainButton { label: "R&D" }
    }
    Component {
        id: roundButtons

        RoundButton { label: "R&D" }
    }
    Component {
        id: switches

        PlainSwitch {
            label: "R&D"
            textColor: "black"
            onColor: "blue"
            offColor: "grey"
            borderColor: "grey"
            ringColor: "blue"
        }
    }

    TestCase {
        name: "Mnemonics"
        when: windowShown

        function test_textIsRefused_data() {
            return test_ampersandIsText_data();
        }
        function test_textIsRefused(row) {
            const control = createTemporaryObject(row.component, root);
            ignoreWarning(/use label instead of text/);
            control.text = "E&F";
            compare(control.text, "");
            control.forceActiveFocus();
            clicks.target = control;
            clicks.signalName = "clicked";
            clicks.clear();
            keyClick(Qt.Key_F, Qt.AltModifier);
            compare(clicks.count, 0);
        }

        function test_ampersandIsText_data() {
            return [
                { tag: "PlainButton", component: plainButtons },
                { tag: "RoundButton", component: roundButtons },
                { tag: "PlainSwitch", component: switches }
            ];
        }
        function test_ampersandIsText(row) {
            const control = createTemporaryObject(row.component, root);
            control.forceActiveFocus();
            clicks.target = control;
            clicks.signalName = "clicked";
            clicks.clear();
            keyClick(Qt.Key_D, Qt.AltModifier);
            compare(clicks.count, 0);
            compare(control.Accessible.name, "R&D");
            keyClick(Qt.Key_Space);
            compare(clicks.count, 1);
        }
    }
}
