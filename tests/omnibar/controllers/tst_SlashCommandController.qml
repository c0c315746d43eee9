// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"
import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/KeyTable.js" as KeyTable
import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/SlashCommands.js" as SlashCommands

TestCase {
    id: test
    name: "SlashCommandController"

    property FakeBar bar
    property SlashCommandController slash

    Component { id: bars; FakeBar {} }
    Component { id: bridges; FakeBridge {} }
    Component { id: controllers; SlashCommandController {} }

    Component {
        id: clients

        CallRecorder {
            property string currentSessionId: ""

            function createSession() { note("createSession", []); }
        }
    }

    SignalSpy {
        id: accepted
        signalName: "accepted"
    }

    function init() {
        bar = createTemporaryObject(bars, test);
        slash = createTemporaryObject(controllers, test, { "bar": bar });
        accepted.target = bar.inputField;
        accepted.clear();
    }

    //! As if the user had changed the text in the input.
    function edit(text) {
        bar.inputField.text = text;
        bar.inputEdited();
    }

    //! @return whether the key belongs to the menu
    function press(key) {
        const row = KeyTable.find(slash.inputKeys, key, Qt.NoModifier);
        if (row)
            row.act();
        return row !== null;
    }

    function shownNames() {
        return slash.menuShown ? slash.filteredSlashCommands().map(row => row.name) : [];
    }

    // ---- The menu

    function test_initialState() {
        compare([slash.slashMenuVisible, slash.slashFilter, slash.slashMenuIndex, slash.menuShown], [false, "", 0, false]);
    }

    function test_edits_data() {
        return [
            { tag: "slash", text: "/", wanted: true, filter: "", names: ["help", "new", "clear", "session", "attach", "detach", "about"] },
            { tag: "beginning", text: "/a", wanted: true, filter: "a", names: ["attach", "about"] },
            { tag: "any case", text: "/AT", wanted: true, filter: "AT", names: ["attach"] },
            { tag: "whitespace around", text: "  /at ", wanted: true, filter: "at", names: ["attach"] },
            { tag: "no match", text: "/x", wanted: true, filter: "x", names: [] },
            { tag: "argument", text: "/session abc", wanted: true, filter: "session abc", names: [] },
            { tag: "prompt", text: "hello", wanted: false, filter: "", names: [] },
            { tag: "nothing", text: "", wanted: false, filter: "", names: [] }
        ];
    }
    function test_edits(row) {
        edit(row.text);
        compare([slash.slashMenuVisible, slash.slashFilter, slash.menuShown], [row.wanted, row.filter, row.names.length > 0]);
        compare(shownNames(), row.names);
    }

    function test_otherTextHidesTheMenu() {
        edit("/a");
        edit("a");
        compare(slash.menuShown, false);
        edit("/");
        compare(slash.menuShown, true);
    }

    function test_textOfTheProgramIsNoEdit() {
        bar.inputField.text = "/help";
        compare(slash.slashMenuVisible, false);
    }

    function test_anEditBeginsAtTheFirstRow() {
        edit("/");
        slash.slashMenuIndex = 3;
        edit("/a");
        compare(slash.slashMenuIndex, 0);
    }

    function test_upAndDownStayInside() {
        edit("/a");
        verify(press(Qt.Key_Up));
        compare(slash.slashMenuIndex, 0);
        verify(press(Qt.Key_Down));
        compare(slash.slashMenuIndex, 1);
        verify(press(Qt.Key_Down));
        compare(slash.slashMenuIndex, 1);
        verify(press(Qt.Key_Up));
        compare(slash.slashMenuIndex, 0);
    }

    function test_tabWritesTheCommand() {
        edit("/a");
        press(Qt.Key_Down);
        verify(press(Qt.Key_Tab));
        compare(bar.inputField.text, "/about");
        compare([slash.menuShown, slash.slashMenuIndex], [true, 1]);
        compare(accepted.count, 0);
        compare(slash.chosenSlashCommand(), "about");
    }

    function test_escapeHides() {
        edit("/a");
        verify(press(Qt.Key_Escape));
        compare(slash.menuShown, false);
        verify(!press(Qt.Key_Escape));
    }

    function test_keysWithoutAMenuAreNotTheirs_data() {
        return [
            { tag: "prompt", text: "hello" },
            { tag: "no match", text: "/session abc" }
        ];
    }
    function test_keysWithoutAMenuAreNotTheirs(row) {
        edit(row.text);
        [Qt.Key_Down, Qt.Key_Up, Qt.Key_Tab, Qt.Key_Escape].forEach(key => verify(!press(key)));
        compare(slash.chosenSlashCommand(), "");
    }

    function test_chosenCommand() {
        edit("/");
        compare(slash.chosenSlashCommand(), "help");
        slash.slashMenuIndex = 2;
        compare(slash.chosenSlashCommand(), "clear");
        slash.slashMenuIndex = 99;
        compare(slash.chosenSlashCommand(), "");
        slash.slashMenuVisible = false;
        compare(slash.chosenSlashCommand(), "");
    }

    function test_clickRunsTheCommand() {
        edit("/");
        slash.runSlashCommandAt(4);
        compare([bar.inputField.text, slash.slashMenuIndex, accepted.count], ["/attach", 4, 1]);
    }

    // ---- Running commands

    function test_takenTexts_data() {
        return [
            { tag: "command", text: "/clear", taken: true, calls: ["clearConversation()"] },
            { tag: "any case", text: "/CLEAR", taken: true, calls: ["clearConversation()"] },
            { tag: "whitespace around", text: " /clear ", taken: true, calls: ["clearConversation()"] },
            { tag: "needless argument", text: "/clear all", taken: true, calls: ["clearConversation()"] },
            { tag: "session", text: "/session", taken: true, calls: ["openSessions()"] },
            { tag: "named session", text: "/session my  chat", taken: true, calls: ["openSessions(my chat)"] },
            { tag: "attach", text: "/attach", taken: true, calls: ["chooseFile()"] },
            { tag: "detach", text: "/detach", taken: true, calls: ["detachFiles()"] },
            { tag: "unknown", text: "/helpme", taken: false, calls: [] },
            { tag: "slash", text: "/", taken: false, calls: [] },
            { tag: "prompt", text: "clear", taken: false, calls: [] }
        ];
    }
    function test_takenTexts(row) {
        compare(slash.tryHandleSlashCommand(row.text), row.taken);
        compare(bar.takeCalls(), row.calls);
    }

    function test_everyCommandRuns() {
        SlashCommands.filtered("").forEach(row => {
            verify(slash.tryHandleSlashCommand("/" + row.name));
            verify(bar.takeCalls().length > 0, row.name);
        });
    }

    function test_help() {
        slash.tryHandleSlashCommand("/HELP");
        compare(bar.takeCalls(), ["appendSystemMessage(" + SlashCommands.helpText(bar.tr) + ")"]);
    }

    function test_newWithoutAClient_data() {
        return [
            { tag: "no client", sdk: null },
            { tag: "no function", sdk: {} }
        ];
    }
    function test_newWithoutAClient(row) {
        bar.sdk = row.sdk;
        slash.tryHandleSlashCommand("/new");
        compare(bar.takeCalls(), ["appendSystemMessage(<Cannot create session — SDK is not connected.>)"]);
    }

    function test_new() {
        bar.sdk = createTemporaryObject(clients, test);
        slash.tryHandleSlashCommand("/new");
        compare(bar.takeCalls(), ["clearConversation()", "appendSystemMessage(<New session started.>)"]);
        compare(bar.sdk.takeCalls(), ["createSession()"]);
    }

    function test_about_data() {
        const bridge = { "status": "idle" };
        return [
            { tag: "nothing", bridge: null, model: "", session: "",
              facts: { "version": "0.3.2", "model": "", "session": "", "status": "" } },
            { tag: "everything", bridge: bridge, model: "loomra/one", session: "ses_0123456789",
              facts: { "version": "0.3.2", "model": "loomra/one", "session": "ses_0123456789", "status": "idle" } }
        ];
    }
    function test_about(row) {
        bar.bridge = row.bridge && createTemporaryObject(bridges, test, row.bridge);
        bar.sdk = createTemporaryObject(clients, test, { "currentSessionId": row.session });
        bar.currentModelId = row.model;
        slash.tryHandleSlashCommand("/about");
        compare(bar.takeCalls(), ["appendSystemMessage(" + SlashCommands.aboutText(row.facts, bar.tr) + ")"]);
    }

    function test_aboutTakesTheSessionOfTheChatClient() {
        bar.bridge = { "status": "idle", "sessionId": "abc" };
        slash.tryHandleSlashCommand("/about");
        verify(bar.takeCalls()[0].includes("abc…"));
    }
}
