// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra 1.0

//! A window with the settings above another page, which records what it would show.
Kirigami.ApplicationWindow {
    id: window

    property var notices: []
    readonly property int depth: pageStack.depth

    function showPassiveNotification(text, duration) {
        notices = notices.concat(text + " " + duration);
    }

    visible: true
    pageStack.initialPage: [first, settings]
    pageStack.defaultColumnWidth: 10000
    pageStack.globalToolBar.style: Kirigami.ApplicationHeaderStyle.None

    Component {
        id: first

        Kirigami.Page {}
    }

    Component {
        id: settings

        SettingsPage {
            objectName: "settingsPage"
        }
    }
}
