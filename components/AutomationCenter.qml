// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15

import "logic/Native.js" as Native
import "panels"
import "panels/PanelText.js" as PanelText

//! The stored automations, which can be paused and deleted.
SdkPanel {
    id: center

    //! Objects with id, enabled and lastRun.
    property var automations: []

    function reload() {
        Native.call(sdk, "automationList");
    }

    title: qsTr("Automation Center")
    onRefreshRequested: reload()
    Component.onCompleted: reload()

    Connections {
        target: center.sdk
        ignoreUnknownSignals: true

        function onAutomationListed(automations) {
            center.automations = PanelText.listOf(automations);
        }
        function onAutomationDeleted() { center.reload(); }
        function onAutomationUpdated() { center.reload(); }
    }

    RecordList {
        objectName: "automationList"

        Layout.fillWidth: true
        Layout.fillHeight: true
        name: center.title
        records: PanelText.automationRows(center.automations, qsTr("Never"), qsTr("—"))
        emptyText: qsTr("No automations")

        delegate: RecordRow {
            id: row

            required property bool isEnabled
            required property string ran

            detail: qsTr("Last run: %1").arg(ran)

            buttons: [
                RecordButton {
                    objectName: "pauseButton"

                    row: row
                    label: row.isEnabled ? qsTr("Pause") : qsTr("Resume")
                    onClicked: Native.call(center.sdk, "automationPause", row.recordId, row.isEnabled)
                },
                // Intentional: there is no confirmation.
                RecordButton {
                    objectName: "deleteButton"

                    row: row
                    label: qsTr("Delete")
                    onClicked: Native.call(center.sdk, "automationDelete", row.recordId)
                }
            ]
        }
    }
}
