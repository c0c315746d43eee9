// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import org.kde.loomra.components.controls 1.0

//! The program's tests check that its announcements leave the process.
Item {
    id: root

    Component {
        id: factory

        Announcer {}
    }

    TestCase {
        name: "Announcer"

        function make() {
            const announcer = createTemporaryObject(factory, root);
            compare(shown(announcer).length, 0);
            return announcer;
        }
        //! The announcements that a screen reader can find now.
        function shown(announcer) {
            return Array.from(announcer.children).filter(item => item.objectName === "announcement" && item.visible);
        }

        function test_isANotification() {
            const announcer = make();
            announcer.announce("Listening");
            const items = shown(announcer);
            compare(items.length, 1);
            compare(items[0].Accessible.role, Accessible.Notification);
            compare(items[0].Accessible.name, "Listening");
        }

        //! A screen reader asks for the name after it has received the event.
        function test_keepsTheNamesOfTheLatestThree() {
            const announcer = make();
            const items = ["one", "two", "three"].map(text => {
                announcer.announce(text);
                compare(shown(announcer).length, 1);
                return shown(announcer)[0];
            });
            compare(items.map(item => item.Accessible.name), ["one", "two", "three"]);
            announcer.announce("four");
            verify(shown(announcer)[0] === items[0]);
            compare(items.map(item => item.Accessible.name), ["four", "two", "three"]);
        }

        function test_sameTextAppearsAgain() {
            const announcer = make();
            announcer.announce("Listening");
            const first = shown(announcer)[0];
            announcer.announce("Listening");
            verify(shown(announcer)[0] !== first);
            compare(shown(announcer)[0].Accessible.name, "Listening");
        }

        function test_nothingToSay() {
            const announcer = make();
            announcer.announce("Listening");
            announcer.announce("");
            compare(shown(announcer).length, 0);
        }
    }
}
