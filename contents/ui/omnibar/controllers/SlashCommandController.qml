// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Local commands. There are none yet, so text after "/" is sent as a prompt.
Controller {
    id: slashCommands

    property bool slashMenuVisible: false
    property string slashFilter: ""
    property int slashMenuIndex: 0
    property bool slashSessionPopupVisible: false
    //! Keys of the input, see logic/KeyTable.js.
    readonly property var inputKeys: [
        { "key": Qt.Key_Escape, "holds": () => slashMenuVisible, "act": () => { slashMenuVisible = false; } },
        { "key": Qt.Key_Escape, "holds": () => slashSessionPopupVisible, "act": () => { slashSessionPopupVisible = false; } }
    ]

    function filteredSlashCommands() {
        return [];
    }

    //! The command that is selected in the open menu, otherwise "".
    function chosenSlashCommand() {
        if (!slashMenuVisible)
            return "";
        const command = filteredSlashCommands()[slashMenuIndex];
        return command ? command.name : "";
    }

    //! Runs the text if it is a local command. @return whether it is one
    function tryHandleSlashCommand(text) {
        return false;
    }
}
