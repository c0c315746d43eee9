// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components/mainwindow/controllers"

TestCase {
    id: test
    name: "ChatController"

    property var sdk: null
    property var view: null
    property var conversation: null
    property double time: 0

    Component {
        id: sdkComponent
        FakeMainSdk {}
    }
    Component {
        id: modelComponent
        // Like ChatModel, which tests of the window use.
        QtObject {
            property var rows: []
            readonly property int count: rows.length
            function addUserMessage(text) { rows = rows.concat("user: " + text); }
            function addAssistantMessage(text, agent) { rows = rows.concat("assistant(" + agent + "): " + text); }
            function clear() { rows = []; }
            function getLastAssistantMessage() {
                const last = rows.filter(row => row.startsWith("assistant")).pop() || "";
                return last.substring(last.indexOf(": ") + 2);
            }
        }
    }
    Component {
        id: viewComponent
        FakeChatView {}
    }
    Component {
        id: controllerComponent
        ChatController {}
    }

    function init() {
        sdk = createTemporaryObject(sdkComponent, test);
        view = createTemporaryObject(viewComponent, test, { sdk: sdk, chatModel: createTemporaryObject(modelComponent, test) });
        conversation = createTemporaryObject(controllerComponent, test, { chatView: view });
        time = 1000000;
        conversation.now = () => time;
    }

    function switchTo(id) {
        sdk.currentSessionId = id;
        sdk.sessionSwitched(id);
    }

    function user(text) { return { role: "user", content: text }; }
    function assistant(text) { return { role: "assistant", content: text }; }

    function test_initialState() {
        compare([conversation.lastLoadedSessionId, conversation.lastAssistantResponse, conversation.isLoadingHistory, conversation.lastMessageCount,
                 conversation.isNewSession, conversation.hasRenamedSession, conversation.isSendingMessage, conversation.loadedMessageHashes,
                 conversation.lastResponseTimestamp, conversation.responseCooldownMs],
                ["", "", false, 0, false, false, false, [], 0, 5000]);
    }

    function test_send() {
        conversation.isLoadingHistory = true;
        verify(conversation.send("  Hello \n"));
        compare(view.chatModel.rows, ["user: Hello"]);
        compare(sdk.takeCalls(), ["sendChatMessage(Hello)"]);
        compare([conversation.isSendingMessage, conversation.isLoadingHistory], [true, false]);
        compare(conversation.loadedMessageHashes, ["user|Hello"]);
        verify(conversation.send("Hello"));
        compare(conversation.loadedMessageHashes, ["user|Hello"]);
        compare(view.chatModel.count, 2);
    }

    function test_nothingIsSent_data() {
        return [{ tag: "empty", text: "", ready: true }, { tag: "whitespace", text: " \n\t", ready: true }, { tag: "not ready", text: "x", ready: false }];
    }

    function test_nothingIsSent(data) {
        sdk.ready = data.ready;
        verify(!conversation.send(data.text));
        compare(sdk.calls, []);
        compare([view.chatModel.count, conversation.isSendingMessage], [0, false]);
    }

    function test_reply() {
        conversation.send("Hello");
        sdk.chatResponse("Hi");
        compare(view.chatModel.rows, ["user: Hello", "assistant(Builder): Hi"]);
        compare([conversation.isSendingMessage, conversation.lastAssistantResponse, conversation.lastResponseTimestamp], [false, "Hi", time]);
        compare(conversation.loadedMessageHashes, ["user|Hello", "assistant|2|Hi"]);
    }

    function test_theSameReplyTwiceIsOneRow() {
        conversation.send("Hello");
        sdk.chatResponse("Hi");
        sdk.chatResponse("Hi");
        compare(view.chatModel.count, 2);
    }

    function test_duplicates_data() {
        const longText = "x".repeat(200);
        return [
            { tag: "an older reply", before: ["one", "two"], reply: "one", added: false },
            { tag: "the same beginning and length", before: [longText + "1"], reply: longText + "2", added: false },
            { tag: "the same beginning, longer", before: [longText + "1"], reply: longText + "22", added: true },
            { tag: "empty", before: [], reply: "", added: false },
            { tag: "new", before: ["one"], reply: "two", added: true }
        ];
    }

    function test_duplicates(data) {
        data.before.forEach(reply => sdk.chatResponse(reply));
        const count = view.chatModel.count;
        conversation.isSendingMessage = true;
        sdk.chatResponse(data.reply);
        compare(view.chatModel.count, count + (data.added ? 1 : 0));
        verify(!conversation.isSendingMessage);
    }

    function test_theLastReplyOfTheModelIsADuplicate() {
        view.chatModel.addAssistantMessage("Hi", "");
        sdk.chatResponse("Hi");
        compare(view.chatModel.count, 1);
    }

    function test_noReplyWhileAHistoryIsLoaded() {
        switchTo("a");
        sdk.chatResponse("late");
        compare(view.chatModel.count, 0);
        verify(conversation.isLoadingHistory);
    }

    function test_history() {
        switchTo("a");
        verify(conversation.isLoadingHistory);
        sdk.messagesLoaded([user("q"), assistant("r"), { role: "system", content: "s" }]);
        compare(view.chatModel.rows, ["user: q", "assistant(): r"]);
        compare([conversation.lastLoadedSessionId, conversation.lastMessageCount, conversation.isLoadingHistory, conversation.lastAssistantResponse,
                 conversation.isNewSession, conversation.hasRenamedSession], ["a", 3, false, "r", false, true]);
        compare(conversation.loadedMessageHashes, ["user|q", "assistant|r", "system|s"]);
    }

    function test_aBackgroundHistoryIsIgnored_data() {
        return [
            { tag: "during a chat", prepare: () => conversation.send("next") },
            { tag: "after a reply", prepare: () => { sdk.chatResponse("new"); time += 4999; } },
            { tag: "not requested", prepare: () => { sdk.chatResponse("new"); time += 5000; } }
        ];
    }

    function test_aBackgroundHistoryIsIgnored(data) {
        switchTo("a");
        sdk.messagesLoaded([user("q")]);
        data.prepare();
        const rows = view.chatModel.rows;
        sdk.messagesLoaded([user("other"), user("messages"), user("here"), user("!")]);
        compare(view.chatModel.rows, rows);
    }

    function test_aRequestedHistoryIsRefusedWhileSending() {
        switchTo("a");
        conversation.isSendingMessage = true;
        sdk.messagesLoaded([user("q")]);
        compare(view.chatModel.count, 0);
        verify(conversation.isLoadingHistory);
    }

    function test_switchingSoonAfterAReplyLoadsTheHistory() {
        sdk.chatResponse("new");
        switchTo("b");
        sdk.messagesLoaded([user("q")]);
        compare(view.chatModel.rows, ["user: q"]);
    }

    function test_anEmptyHistoryLeavesTheSessionNew() {
        sdk.sessionCreated("a");
        switchTo("a");
        sdk.messagesLoaded([]);
        compare([conversation.isNewSession, conversation.hasRenamedSession, conversation.isLoadingHistory], [true, false, false]);
    }

    function test_otherSessionsForgetEverything_data() {
        return [
            { tag: "created", act: () => sdk.sessionCreated("b"), isNew: true, loading: false },
            { tag: "switched", act: () => switchTo("b"), isNew: false, loading: true }
        ];
    }

    function test_otherSessionsForgetEverything(data) {
        switchTo("a");
        sdk.messagesLoaded([user("q"), assistant("r")]);
        conversation.send("more");
        data.act();
        compare(view.chatModel.count, 0);
        compare([conversation.lastLoadedSessionId, conversation.lastMessageCount, conversation.lastAssistantResponse, conversation.lastResponseTimestamp,
                 conversation.loadedMessageHashes, conversation.isSendingMessage, conversation.hasRenamedSession], ["", 0, "", 0, [], false, false]);
        compare([conversation.isNewSession, conversation.isLoadingHistory], [data.isNew, data.loading]);
    }

    function test_firstPromptNamesANewSession_data() {
        const text = "abcdefghij".repeat(6);
        return [
            { tag: "50 characters", prompt: text.substring(0, 50), name: text.substring(0, 50) },
            { tag: "51 characters", prompt: text.substring(0, 51), name: text.substring(0, 47) + "..." }
        ];
    }

    function test_firstPromptNamesANewSession(data) {
        sdk.currentSessionId = "a";
        sdk.sessionCreated("a");
        conversation.send(data.prompt);
        compare(sdk.takeCalls(), ["renameSession(a, " + data.name + ")", "sendChatMessage(" + data.prompt + ")"]);
        compare([conversation.isNewSession, conversation.hasRenamedSession], [false, true]);
        conversation.send("second");
        compare(sdk.takeCalls(), ["sendChatMessage(second)"]);
    }

    function test_aCreatedSessionThatTheWindowSwitchesToIsNew() {
        sdk.currentSessionId = "a";
        sdk.sessionCreated("a");
        switchTo("a");
        sdk.messagesLoaded([]);
        conversation.send("first");
        compare(sdk.takeCalls(), ["renameSession(a, first)", "sendChatMessage(first)"]);
    }

    function test_noNameWithoutASession() {
        sdk.sessionCreated("");
        conversation.send("first");
        compare(sdk.takeCalls(), ["sendChatMessage(first)"]);
        verify(conversation.isNewSession);
    }

    function test_missingObjects_data() {
        return [{ tag: "no client", sdk: false, model: true }, { tag: "no model", sdk: true, model: false }, { tag: "neither", sdk: false, model: false }];
    }

    function test_missingObjects(data) {
        if (!data.sdk)
            view.sdk = null;
        if (!data.model)
            view.chatModel = null;
        compare(conversation.send("x"), data.sdk);
        conversation.addReply("y");
        conversation.isLoadingHistory = true;
        conversation.showHistory([user("z")]);
        conversation.forgetSession();
    }
}
