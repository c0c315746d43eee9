// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! A tab of the settings sheet. Its page exists while the tab is the current one of an open sheet; what has to outlive
//! that belongs to a controller.
QtObject {
    //! Translated; may change at any time.
    property string title
    //! The page, whose properties "bar", "theme" and "tab" are set.
    property url file
    //! Whether this is the current tab; maintained by SettingsTabs.
    property bool current: false

    //! This became the current tab, and its page exists. Not emitted when the sheet is opened or closed.
    signal entered()
    //! Another tab is going to be the current one.
    signal left()
}
