// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15

import "logic/Native.js" as Native
import "panels"
import "panels/PanelText.js" as PanelText

//! The latest actions on the desktop, which can be undone.
SdkPanel {
    id: center

    //! Objects with id and at.
    property var actions: []

    function reload() {
        Native.call(sdk, "auditListRecent", 50);
    }

    title: qsTr("Undo Center")
    onRefreshRequested: reload()
    Component.onCompleted: reload()

    Connections {
        target: center.sdk
        ignoreUnknownSignals: true

        function onAuditRecentListed(actions) {
            center.actions = PanelText.listOf(actions);
        }
    }

    RecordList {
        objectName: "actionList"

        Layout.fillWidth: true
        Layout.fillHeight: true
        name: center.title
        records: PanelText.actionRows(center.actions)
        emptyText: qsTr("No actions")

        delegate: RecordRow {
            id: row

            required property string at

            detail: at

            // Intentional: the list isn't loaded again after this.
            buttons: RecordButton {
                objectName: "revertButton"

                row: row
                label: qsTr("Revert")
                onClicked: Native.call(center.sdk, "auditRevert", row.recordId)
            }
        }
    }
}
