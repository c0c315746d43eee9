// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! A switch for a state that is kept elsewhere and may refuse to change: after each toggle the switch shows that state.
SettingsSwitch {
    id: control

    required property bool on

    //! The user has toggled it. @param on what they want
    signal switched(bool on)

    checked: control.on
    onToggled: {
        switched(checked);
        checked = Qt.binding(() => control.on);
    }
}
