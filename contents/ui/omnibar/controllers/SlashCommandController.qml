// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../../../../components/logic/Native.js" as Native
import "../logic/SlashCommands.js" as SlashCommands

//! Local commands, which begin with a "/", and the menu that suggests them while the user types.
Controller {
    id: slashCommands

    //! The user is typing a command. The menu is shown if one matches.
    property bool slashMenuVisible: false
    property string slashFilter: ""
    property int slashMenuIndex: 0
    readonly property bool menuShown: slashMenuVisible && filteredSlashCommands().length > 0

    //! Keys of the input, see logic/KeyTable.js.
    readonly property var inputKeys: [
        { "key": Qt.Key_Down, "holds": () => menuShown, "act": () => moveTo(slashMenuIndex + 1) },
        { "key": Qt.Key_Up, "holds": () => menuShown, "act": () => moveTo(slashMenuIndex - 1) },
        { "key": Qt.Key_Tab, "holds": () => menuShown, "act": () => writeChosen() },
        { "key": Qt.Key_Escape, "holds": () => menuShown, "act": () => { slashMenuVisible = false; } }
    ]

    function filteredSlashCommands() {
        return SlashCommands.filtered(slashFilter);
    }

    function moveTo(index) {
        slashMenuIndex = Math.max(0, Math.min(filteredSlashCommands().length - 1, index));
    }

    //! The command that is selected in the open menu, otherwise "".
    function chosenSlashCommand() {
        if (!menuShown)
            return "";
        const command = filteredSlashCommands()[slashMenuIndex];
        return command ? command.name : "";
    }

    function writeChosen() {
        const command = chosenSlashCommand();
        if (command !== "")
            bar.inputField.text = "/" + command;
    }

    //! A click on a row of the menu.
    function runSlashCommandAt(index) {
        slashMenuIndex = index;
        writeChosen();
        bar.inputField.accepted();
    }

    //! Runs the text if it is a local command. @return whether it is one
    function tryHandleSlashCommand(text) {
        const found = SlashCommands.parse(text);
        if (!found)
            return false;
        found.command.run(slashCommands, found.argument);
        return true;
    }

    // ---- The commands that have no controller

    function showHelp() {
        bar.appendSystemMessage(SlashCommands.helpText(bar.tr));
    }

    function startSession() {
        if (!Native.offers(bar.sdk, "createSession")) {
            bar.appendSystemMessage(bar.tr("Cannot create session — SDK is not connected."));
            return;
        }
        bar.clearConversation();
        bar.sdk.createSession();
        bar.appendSystemMessage(bar.tr("New session started."));
    }

    function showAbout() {
        bar.appendSystemMessage(SlashCommands.aboutText({
            "version": Qt.application.version,
            "model": bar.currentModelId,
            "session": (bar.sdk && bar.sdk.currentSessionId) || (bar.bridge && bar.bridge.sessionId),
            "status": bar.bridge && bar.bridge.status
        }, bar.tr));
    }

    Connections {
        target: slashCommands.bar

        function onInputEdited() {
            const filter = SlashCommands.filterOf(slashCommands.bar.inputField.text);
            slashCommands.slashMenuVisible = filter !== null;
            if (filter === null)
                return;
            slashCommands.slashFilter = filter;
            slashCommands.slashMenuIndex = 0;
        }
    }
}
