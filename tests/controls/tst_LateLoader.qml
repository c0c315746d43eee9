// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import org.kde.loomra.components.controls 1.0

Item {
    id: root

    property int length: 10
    property Item other: null

    Component {
        id: factory

        LateLoader {
            file: Qt.resolvedUrl("StandInPart.qml")
        }
    }

    TestCase {
        name: "LateLoader"

        function init() {
            root.length = 10;
            root.other = null;
        }
        function make(properties) {
            return createTemporaryObject(factory, root, properties);
        }

        function test_loadsWhenItIsWanted() {
            const loader = make({});
            verify(!loader.item);
            loader.wanted = true;
            verify(loader.item);
            const part = loader.item;
            loader.wanted = false;
            compare(loader.item, part);
        }

        function test_mayLetItsPartGo() {
            const loader = make({ kept: false, wanted: true });
            verify(loader.item);
            loader.wanted = false;
            verify(!loader.item);
            loader.wanted = true;
            verify(loader.item);
        }

        function test_objectsAndBindings() {
            const loader = make({
                properties: { "owner": root, "length": () => root.length, "other": () => root.other },
                wanted: true
            });
            compare(loader.item.owner, root);
            compare(loader.item.length, 10);
            compare(loader.item.other, null);
            root.length = 20;
            root.other = loader;
            compare(loader.item.length, 20);
            compare(loader.item.other, loader);
        }

        function test_bindingsOfAPartThatIsLoadedAhead() {
            const loader = make({ properties: { "length": () => root.length }, wanted: true, ahead: true });
            root.length = 30;
            tryVerify(() => loader.item);
            compare(loader.item.length, 30);
            root.length = 40;
            compare(loader.item.length, 40);
        }

        function test_snapshotsAreRefused_data() {
            return [
                { tag: "number", value: 10 }, { tag: "text", value: "a" }, { tag: "null", value: null },
                { tag: "array", value: [1] }, { tag: "plain object", value: {} }
            ];
        }
        function test_snapshotsAreRefused(row) {
            const loader = make({ properties: { "length": row.value } });
            try {
                loader.boundProperties();
            } catch (error) {
                verify(error.message.includes("length"));
                return;
            }
            fail("was accepted");
        }

        function test_focusIsPassedOn() {
            const loader = make({});
            loader.forceActiveFocus();
            loader.wanted = true;
            verify(loader.item.focus);
        }
    }
}
