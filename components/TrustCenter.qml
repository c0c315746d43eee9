// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami

import "logic/Native.js" as Native
import "common"
import "panels"

//! Stops what the bridge does on the desktop, and undoes what it has done.
SdkPanel {
    id: center

    title: qsTr("Trust Center")
    refreshes: false

    SectionHeading {
        text: qsTr("Emergency stop")
    }

    Flow {
        Layout.fillWidth: true
        spacing: Kirigami.Units.smallSpacing

        TextButton {
            objectName: "stopButton"

            label: qsTr("Pause executor & scheduler")
            icon.name: "media-playback-pause"
            onClicked: Native.call(center.sdk, "emergencyStop")
        }

        TextButton {
            objectName: "resumeButton"

            label: qsTr("Resume")
            icon.name: "media-playback-start"
            onClicked: Native.call(center.sdk, "emergencyResume")
        }
    }

    SectionHeading {
        text: qsTr("Permissions (denied capabilities)")
    }

    // Intentional: the answer isn't shown.
    TextButton {
        objectName: "deniedButton"

        label: qsTr("Refresh denied list")
        onClicked: Native.call(center.sdk, "getDeniedPermissions")
    }

    // Its heading is that of this section.
    Loader {
        objectName: "undoLoader"

        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.topMargin: Kirigami.Units.largeSpacing
        Accessible.ignored: true
        sourceComponent: UndoCenter {
            sdk: center.sdk
            headingLevel: 3
        }
    }
}
