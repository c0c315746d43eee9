// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

//! Tests the runner: about data, expected warnings and the loopback listener.
TestCase {
    id: test
    name: "QmlTests"

    Component { id: wrong; QtObject { Component.onCompleted: nothingOfThisName() } }
    Component { id: images; Image {} }
    Component {
        id: pictures

        Rectangle {
            width: 10
            color: "red"

            Rectangle {
                id: named
                objectName: "twin"
                border.color: "blue"
                gradient: Gradient {
                    GradientStop { position: 0; color: "red" }
                    GradientStop { position: 1; color: "blue" }
                }
                Behavior on x { NumberAnimation { duration: 120; easing.type: Easing.OutCubic } }
                Behavior on border.color { ColorAnimation { duration: 30 } }
            }
            Item {
                property Item held: Item { objectName: "heldItem"; height: 5 }

                objectName: "twin"
            }
        }
    }

    function test_aboutData() {
        compare(Qt.application.name, "loomra-kde");
        compare(Qt.application.domain, "kde.org");
    }

    function test_expectedWarningIsNoFailure() {
        qmlWarnings.expect("ReferenceError: nothingOfThisName is not defined");
        createTemporaryObject(wrong, test);
    }

    //! Otherwise tests that expect no connection would be meaningless.
    function test_listenerSeesAFetch() {
        const before = loopbackListener.connections;
        verify(loopbackListener.address.startsWith("http://127.0.0.1:"));
        qmlWarnings.expect("QML Image: Error transferring " + loopbackListener.address);
        const image = createTemporaryObject(images, test, { "source": loopbackListener.address + "/x.png" });
        tryCompare(loopbackListener, "connections", before + 1);
        tryCompare(image, "status", Image.Error);
    }

    function test_drawnValues_data() {
        return [
            { tag: "number", table: { "": { "width": 10 } }, found: [] },
            { tag: "other number", table: { "": { "width": 11 } }, found: [": width is 10 instead of 11"] },
            { tag: "color", table: { "": { "color": "#ff0000" } }, found: [] },
            { tag: "color by its parts", table: { "": { "color": Qt.rgba(1, 0.001, 0, 1) } }, found: [] },
            { tag: "other color", table: { "": { "color": Qt.rgba(1, 0.01, 0, 1) } },
              found: [": color is #ffff0000 instead of #ffff0300"] },
            { tag: "other opacity", table: { "": { "color": Qt.rgba(1, 0, 0, 0.99) } },
              found: [": color is #ffff0000 instead of #fcff0000"] },
            { tag: "id", table: { "named": { "border.color": "blue" } }, found: [] },
            { tag: "type", table: { "Rectangle": { "border.color": "blue" } }, found: [] },
            { tag: "all of a name", table: { "twin": { "width": 1 } },
              found: ["twin: width is 0 instead of 1", "twin: width is 0 instead of 1"] },
            { tag: "one of a name", table: { "twin[1]": { "width": 1 } }, found: ["twin[1]: width is 0 instead of 1"] },
            { tag: "held object", table: { "twin[1].held": { "height": 5, "objectName": "heldItem" } }, found: [] },
            { tag: "no object", table: { "": { "parent.parent": null } }, found: [] },
            { tag: "no part", table: { "nobody": { "width": 1 } }, found: ["nobody: no such part"] },
            { tag: "no such index", table: { "twin[2]": {} }, found: ["twin[2]: no such part"] },
            { tag: "no property", table: { "": { "nothing": 1 } }, found: [": nothing is no property instead of 1"] },
            { tag: "stops", table: { "named": { "stops": [[0, "red"], [1, "blue"]] } }, found: [] },
            { tag: "other stops", table: { "named": { "stops": [[0, "red"], [0.5, "blue"]] } },
              found: ["named: stops is 0 #ffff0000, 1 #ff0000ff instead of 0 #ffff0000, 0.5 #ff0000ff"] },
            { tag: "no stops", table: { "": { "stops": [[0, "red"]] } }, found: [": stops is none instead of 0 #ffff0000"] },
            { tag: "direction", table: { "named": { "gradient.orientation": Gradient.Vertical } }, found: [] },
            { tag: "other direction", table: { "named": { "gradient.orientation": Gradient.Horizontal } },
              found: ["named: gradient.orientation is 2 instead of 1"] },
            { tag: "animation", table: { "named": { "Behavior on x": "120 OutCubic", "Behavior on border.color": "30 Linear" } },
              found: [] },
            { tag: "other animation", table: { "named": { "Behavior on x": "121 OutCubic" } },
              found: ["named: Behavior on x is 120 OutCubic instead of 121 OutCubic"] },
            { tag: "no animation", table: { "named": { "Behavior on y": "120 OutCubic" } },
              found: ["named: Behavior on y is none instead of 120 OutCubic"] }
        ];
    }

    function test_drawnValues(data) {
        const picture = createTemporaryObject(pictures, test);
        compare(drawn.differences(picture, data.table), data.found);
    }

    function test_drawnObjects() {
        const picture = createTemporaryObject(pictures, test);
        const held = drawn.part(picture, "heldItem");
        compare(held.height, 5);
        compare(drawn.part(picture, "nobody"), null);
        compare(drawn.differences(picture, { "twin[1]": { "held": held } }), []);
        compare(drawn.differences(picture, { "twin[1]": { "held": null } }).length, 1);
        compare(drawn.differences(picture, { "twin[1]": { "held": picture } }).length, 1);
    }
}
