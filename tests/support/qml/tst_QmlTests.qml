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
}
