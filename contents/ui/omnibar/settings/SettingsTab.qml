// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! A tab of the settings sheet. Its page is created when the tab is first entered, and kept.
QtObject {
    id: tab

    //! Translated; may change at any time.
    property string title
    //! The page, whose properties "bar", "theme" and "tab" are set.
    property url file
    //! Whether this is the current tab; maintained by SettingsTabs.
    property bool current: false

    signal entered()
    signal left()

    onCurrentChanged: {
        if (current)
            entered();
        else
            left();
    }
}
