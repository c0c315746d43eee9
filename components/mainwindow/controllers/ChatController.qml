// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../../logic/Native.js" as Native
import "../../logic/Untrusted.js" as Untrusted
import "../logic/History.js" as History

//! The conversation of the main window: sends prompts, adds each reply once and loads the history of a session.
QtObject {
    id: conversation

    //! The ChatView, or a fake in tests.
    required property var chatView

    //! The session whose history was loaded, and the number of its messages.
    property string lastLoadedSessionId: ""
    property int lastMessageCount: 0
    //! The last reply that was added.
    property string lastAssistantResponse: ""
    //! When it was added, in ms since 1970; 0 if there is none.
    property real lastResponseTimestamp: 0
    //! A history that arrives so soon after a reply is ignored, because it may lack the reply. In ms.
    property int responseCooldownMs: 5000
    //! Another session was chosen, and its messages are awaited.
    property bool isLoadingHistory: false
    //! A new session is named after its first prompt.
    property bool isNewSession: false
    property bool hasRenamedSession: false
    //! A reply is awaited. Intentional: no timeout ends it, because the reply could still arrive after that.
    property bool isSendingMessage: false
    //! What identifies the rows that are shown, see History.js.
    property var loadedMessageHashes: []
    //! The session that was created last.
    property string createdSessionId: ""

    //! In ms since 1970. Tests replace it.
    property var now: () => Date.now()

    readonly property Connections sdkConnections: Connections {
        target: conversation.chatView.sdk

        function onChatResponse(response) {
            conversation.addReply(response);
        }
        function onMessagesLoaded(messages) {
            conversation.showHistory(messages);
        }
        function onSessionCreated(id) {
            conversation.createdSessionId = id;
            conversation.forgetSession();
            conversation.isNewSession = true;
        }
        function onSessionSwitched(id) {
            conversation.forgetSession();
            conversation.isLoadingHistory = true;
            // The window switches to a session that it has created, which is still new then.
            conversation.isNewSession = id !== "" && id === conversation.createdSessionId;
        }
    }

    function sessionId() {
        return chatView.sdk ? Untrusted.textOf(chatView.sdk.currentSessionId) : "";
    }

    //! Sends a prompt. @return false if it is empty or can't be sent, and stays with the user
    function send(prompt) {
        const text = prompt.trim();
        if (text === "" || !chatView.isReady())
            return false;
        isSendingMessage = true;
        isLoadingHistory = false;
        nameSession(text);
        Native.call(chatView.chatModel, "addUserMessage", text);
        remember(History.rowHash("user", text));
        Native.call(chatView.sdk, "sendChatMessage", text);
        return true;
    }

    function nameSession(prompt) {
        if (!isNewSession || hasRenamedSession || sessionId() === "")
            return;
        Native.call(chatView.sdk, "renameSession", sessionId(), History.sessionName(prompt));
        hasRenamedSession = true;
        isNewSession = false;
    }

    function addReply(response) {
        if (response !== "" && response !== lastAssistantResponse && !isLoadingHistory && !isShown(response)) {
            Native.call(chatView.chatModel, "addAssistantMessage", response, chatView.currentAgentName);
            lastAssistantResponse = response;
            remember(History.replyHash(response));
            lastResponseTimestamp = now();
        }
        isSendingMessage = false;
    }

    function isShown(response) {
        return loadedMessageHashes.includes(History.replyHash(response))
            || Native.call(chatView.chatModel, "getLastAssistantMessage") === response;
    }

    function remember(hash) {
        if (!loadedMessageHashes.includes(hash))
            loadedMessageHashes = loadedMessageHashes.concat(hash);
    }

    function showHistory(messages) {
        const state = {
            isSendingMessage: isSendingMessage,
            lastResponseTimestamp: lastResponseTimestamp,
            responseCooldownMs: responseCooldownMs,
            isLoadingHistory: isLoadingHistory,
            lastLoadedSessionId: lastLoadedSessionId,
            sessionId: sessionId(),
            shownCount: chatView.chatModel ? chatView.chatModel.count : 0,
            messageCount: messages.length,
            now: now()
        };
        if (History.refusal(state) !== "")
            return;
        if (History.isNewer(state))
            replaceRows(History.rows(Array.from(messages)));
        lastLoadedSessionId = state.sessionId;
        lastMessageCount = messages.length;
        isLoadingHistory = false;
        if (messages.length > 0) {
            isNewSession = false;
            hasRenamedSession = true;
        }
    }

    function replaceRows(history) {
        const model = chatView.chatModel;
        Native.call(model, "clear");
        history.rows.forEach(row => {
            if (row.role === "user")
                Native.call(model, "addUserMessage", row.content);
            else
                Native.call(model, "addAssistantMessage", row.content, "");
        });
        lastAssistantResponse = history.lastReply;
        loadedMessageHashes = history.hashes;
    }

    //! Another session becomes the current one. A reply that is awaited belongs to the old one.
    function forgetSession() {
        Native.call(chatView.chatModel, "clear");
        lastLoadedSessionId = "";
        lastMessageCount = 0;
        lastAssistantResponse = "";
        lastResponseTimestamp = 0;
        loadedMessageHashes = [];
        isLoadingHistory = false;
        isSendingMessage = false;
        isNewSession = false;
        hasRenamedSession = false;
    }
}
