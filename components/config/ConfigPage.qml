// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "controllers"

//! The base of the pages of the settings: a column that scrolls, and dialogs above it. Without a controller the page
//! creates its own.
Item {
    id: page

    property ConfigController controller: null
    readonly property var configData: controller ? controller.configData : ({})
    default property alias content: column.data
    property alias dialogs: overlay.data
    readonly property alias pane: pane

    //! The user has changed something.
    signal configChanged()

    //! Replaces a section of the configuration.
    function push(section, value) {
        controller.push(section, value);
        configChanged();
    }

    Kirigami.Theme.inherit: false
    Kirigami.Theme.colorSet: Kirigami.Theme.Window
    Component.onCompleted: {
        if (!controller) {
            controller = ownController.createObject(page);
            controller.reload();
        }
    }

    Component {
        id: ownController

        ConfigController {}
    }

    ScrollPane {
        id: pane
        objectName: "configPane"

        anchors.fill: parent
        contentHeight: column.height + 2 * column.y
        thumbColor: Qt.rgba(Kirigami.Theme.textColor.r, Kirigami.Theme.textColor.g, Kirigami.Theme.textColor.b, 0.35)
        scrollBarName: Translation.tr("Scroll page")

        ColumnLayout {
            id: column

            anchors.left: parent.left
            anchors.leftMargin: Kirigami.Units.largeSpacing
            y: Kirigami.Units.largeSpacing
            // Beside the scroll bar.
            width: pane.width - 3 * Kirigami.Units.largeSpacing
            spacing: Kirigami.Units.largeSpacing
        }
    }

    Item {
        id: overlay

        anchors.fill: parent
        z: 1000
    }
}
