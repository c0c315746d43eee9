// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "logic/Native.js" as Native
import "panels"
import "panels/PanelText.js" as PanelText

//! What the bridge knows about the desktop.
SdkPanel {
    id: inspector

    property var desktopState: ({})
    readonly property var lines: [
        qsTr("Windows: %1").arg(PanelText.countOf(PanelText.field(desktopState, "windows"), "windows")),
        qsTr("Panels: %1").arg(PanelText.countOf(PanelText.field(desktopState, "panels"), "panels")),
        qsTr("Theme: %1").arg(PanelText.themeOf(desktopState, qsTr("—")))
    ]

    function reload() {
        Native.call(sdk, "getDesktopState");
    }

    title: qsTr("Desktop Inspector")
    onRefreshRequested: reload()
    Component.onCompleted: reload()

    Connections {
        target: inspector.sdk
        ignoreUnknownSignals: true

        function onDesktopStateReceived(state) {
            inspector.desktopState = state;
        }
    }

    Repeater {
        model: inspector.lines

        PlainText {
            objectName: "desktopLine"

            required property string modelData

            Layout.fillWidth: true
            text: modelData
            color: Kirigami.Theme.textColor
            font: Kirigami.Theme.defaultFont
            wrapMode: Text.Wrap
            maximumLineCount: 3
        }
    }

    Item {
        Layout.fillHeight: true
    }
}
