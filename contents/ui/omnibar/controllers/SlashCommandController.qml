// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Local commands. None exists yet: text after "/" is a prompt like any other.
Controller {
    id: slashCommands

    property bool slashMenuVisible: false
    property string slashFilter: ""
    property int slashMenuIndex: 0
    property bool slashSessionPopupVisible: false

    function filteredSlashCommands() {
        return [];
    }

    //! The command that Enter accepts from the menu, or nothing.
    function chosenSlashCommand() {
        if (!slashMenuVisible)
            return "";
        const command = filteredSlashCommands()[slashMenuIndex];
        return command ? command.name : "";
    }

    //! @return whether the text was a local command, which then has run
    function tryHandleSlashCommand(text) {
        return false;
    }

    //! Escape in the input closes what lies nearest, menu before popup. @return whether something was open
    function closeNearest() {
        if (slashMenuVisible) {
            slashMenuVisible = false;
            return true;
        }
        if (slashSessionPopupVisible) {
            slashSessionPopupVisible = false;
            return true;
        }
        return false;
    }
}
