// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! The tab strip of the settings sheet and the page of the current tab.
Column {
    id: view

    required property var bar
    required property var theme
    //! SettingsTab objects. The list never changes, so that buttons and pages keep their state; titles may.
    required property var tabs
    //! Whether the sheet is open. Without it, no tab has a page.
    required property bool open
    //! Accessible name of the strip.
    required property string name

    property alias currentIndex: strip.currentIndex
    //! In pixels.
    readonly property int minimumPageHeight: 220

    //! Leaves the tab that was current and enters the one that is now. They may change the current tab again.
    function enterCurrentTab() {
        for (let i = 0; i < tabs.length; ++i) {
            if (tabs[i].current && i !== strip.currentIndex) {
                tabs[i].current = false;
                tabs[i].left();
            }
        }
        const tab = tabs[strip.currentIndex];
        if (tab && !tab.current) {
            tab.current = true;
            tab.entered();
        }
    }

    spacing: 12
    Component.onCompleted: enterCurrentTab()

    TabStrip {
        id: strip
        objectName: "settingsTabs"

        width: parent.width
        theme: view.theme
        tabs: view.tabs
        Accessible.name: view.name
        onCurrentIndexChanged: view.enterCurrentTab()
    }

    Item {
        objectName: "settingsPages"

        width: parent.width
        implicitHeight: Math.max(view.minimumPageHeight, childrenRect.height)

        Repeater {
            model: view.tabs.length

            LateLoader {
                required property int index

                readonly property SettingsTab tab: view.tabs[index]

                width: parent.width
                height: visible ? implicitHeight : 0
                visible: tab.current
                file: tab.file
                properties: ({ "bar": view.bar, "theme": view.theme, "tab": tab })
                wanted: tab.current && view.open
                kept: false
            }
        }
    }
}
