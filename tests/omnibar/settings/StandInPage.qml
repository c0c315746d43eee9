// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The page of a tab, with something to type into.
Item {
    required property var bar
    required property var theme
    required property QtObject tab

    property alias text: input.text

    objectName: "page of " + tab.objectName
    implicitHeight: tab.objectName === "tall" ? 500 : 20
    Component.onCompleted: bar.note("create", [tab.objectName])

    Connections {
        target: tab

        function onEntered() {
            bar.note("page", [tab.objectName]);
        }
    }

    TextInput {
        id: input
    }
}
