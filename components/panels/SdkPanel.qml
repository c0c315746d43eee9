// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami

import "../common"

//! The base of the panels that show what the bridge does on the desktop: a heading and the content below.
ColumnLayout {
    id: panel

    //! The SDK client. Without it the panel is idle.
    property QtObject sdk: typeof loomraSDK !== "undefined" ? loomraSDK : null
    required property string title
    property int headingLevel: 1
    //! Whether there is a button "Refresh".
    property bool refreshes: true

    signal refreshRequested()

    spacing: Kirigami.Units.smallSpacing

    RowLayout {
        Layout.fillWidth: true
        spacing: Kirigami.Units.smallSpacing

        Kirigami.Heading {
            objectName: "panelHeading"

            Layout.fillWidth: true
            level: panel.headingLevel
            text: panel.title
            color: Kirigami.Theme.textColor // in every style
            textFormat: Text.PlainText
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        TextButton {
            objectName: "refreshButton"

            visible: panel.refreshes
            label: qsTr("Refresh")
            icon.name: "view-refresh"
            onClicked: panel.refreshRequested()
        }
    }
}
