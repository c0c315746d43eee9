// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/ChatContext.js" as ChatContext
import "../logic/CollapseRule.js" as CollapseRule
import "../logic/Feedback.js" as Feedback
import "../../../../components/logic/Native.js" as Native
import "../logic/ReplyText.js" as ReplyText
import "../logic/StructuredReply.js" as StructuredReply

//! The conversation: sends prompts and turns replies into rows. It is not stored on disk.
Controller {
    id: conversation

    //! The rows of the chat, with the roles role, text, messageType, payload, fallbackText, hasTool, toolStatus,
    //! toolName, createdAt (ms since 1970), feedbackVote, widgetState (JSON, see saveWidgetState()). They exist as long
    //! as the window.
    readonly property ListModel chatModel: ListModel {
        objectName: "chatModel"
    }
    //! Number of rows in a context, counted from the end.
    readonly property int contextWindowSize: 8
    property string lastInputMode: "text"
    //! A structured reply (JSON) whose text has not arrived yet.
    property string pendingUiJson: ""

    property var availableAgents: []
    property string currentAgentId: (bar.bridge && bar.bridge.currentAgent) || "auto"
    property string currentModelId: (bar.bridge && bar.bridge.currentModel) || ""

    property int sessionUsageInput: 0
    property int sessionUsageOutput: 0
    readonly property int sessionUsageTotal: sessionUsageInput + sessionUsageOutput
    readonly property int usageMax: 50000
    readonly property real usageProgress: Math.min(1.0, sessionUsageTotal / Math.max(1, usageMax))

    //! Keys of the input, see logic/KeyTable.js.
    readonly property var inputKeys: [
        { "key": Qt.Key_L, "modifiers": Qt.ControlModifier, "act": () => clear() }
    ]

    //! Emitted when new rows should be scrolled into view.
    signal scrollRequested()

    // ---- Rows

    //! A row without tool or block.
    function plainRow(role, text) {
        return {
            "role": role,
            "text": text,
            "messageType": "text",
            "payload": "",
            "fallbackText": text,
            "hasTool": false,
            "toolStatus": "",
            "toolName": "",
            "createdAt": Date.now(),
            "feedbackVote": "",
            "widgetState": ""
        };
    }

    function appendRow(role, text, more) {
        chatModel.append(Object.assign(plainRow(role, text), more));
    }

    function appendUserMessage(msg) {
        appendRow("user", String(msg));
    }

    function appendAgentMessage(msg) {
        const tool = ReplyText.parseToolTag(String(msg));
        appendRow("assistant", tool.text, tool);
    }

    //! Appends a row for each block of a structured reply. @p fallback is the text of the reply, shown in place of blocks
    //! that can't be shown.
    function appendStructuredBlocks(blocks, fallback) {
        // All at once, because views and bindings follow each change of the list.
        chatModel.append(StructuredReply.rowsOf(blocks, fallback)
            .map(row => Object.assign(plainRow("assistant", row.text), row)));
    }

    //! A row of the assistant that quotes untrusted text: a tool tag in it is no tag.
    function appendAssistantText(text) {
        appendRow("assistant", text);
    }

    function appendSystemMessage(msg) {
        appendRow("system", String(msg));
        scrollToBottom();
    }

    function clear() {
        chatModel.clear();
    }

    function rowAt(index) {
        const row = chatModel.get(index);
        return { "role": row.role, "text": row.text, "fallbackText": row.fallbackText, "messageType": row.messageType };
    }

    //! Up to @p maximum rows from the end of the list, oldest first.
    function lastRows(maximum) {
        const list = [];
        for (let i = Math.max(0, chatModel.count - maximum); i < chatModel.count; ++i)
            list.push(rowAt(i));
        return list;
    }

    //! The rows from the last one that isn't the assistant's, normally the user's message, to the end.
    function latestTurn() {
        const list = [];
        for (let i = chatModel.count - 1; i >= 0; --i) {
            list.unshift(rowAt(i));
            if (list[0].role !== "assistant")
                break;
        }
        return list;
    }

    //! The text of the last row with this role, "" if there is none.
    function lastText(role) {
        for (let i = chatModel.count - 1; i >= 0; --i) {
            if (chatModel.get(i).role === role)
                return plainTextOf(i);
        }
        return "";
    }

    //! The text of a row for copy and feedback.
    function plainTextOf(index) {
        const row = chatModel.get(index);
        return row.fallbackText || row.text;
    }

    function emitScroll() {
        if (chatModel.count > 0)
            scrollRequested();
    }

    //! Deferred because a new row has no height yet. Several calls in one event loop iteration scroll once.
    function scrollToBottom() {
        Qt.callLater(emitScroll);
    }

    // ---- Prompts

    //! Called for Enter in the input field.
    function submitInput() {
        const input = bar.inputField;
        if (bar.voiceConfirmPending) {
            bar.voiceConfirmSend();
            return;
        }
        const command = bar.chosenSlashCommand();
        if (command) {
            input.text = "/" + command;
            bar.slashMenuVisible = false;
        }
        const text = input.text.trim();
        if (text !== "") {
            if (!bar.tryHandleSlashCommand(text))
                submitPrompt(text);
            input.text = "";
        }
        bar.slashMenuVisible = false;
    }

    function submitPrompt(text) {
        lastInputMode = "text";
        appendUserMessage(text);
        scrollToBottom();
        const context = bar.takeFileContext();
        // The row shows only the typed text; the bridge also gets the contents of the files.
        sendToBridge(context === "" ? text : context + "User question: " + text);
    }

    function sendToBridge(prompt) {
        const target = typeof agentBridge !== "undefined" && agentBridge ? agentBridge : bar.bridge;
        if (!target)
            return;
        if (currentAgentId !== "") {
            if (typeof target.setCurrentAgent === "function")
                target.setCurrentAgent(currentAgentId);
            else
                target.currentAgent = currentAgentId;
        }
        const model = currentModelId.trim() || String(target.currentModel || "").trim();
        if (model !== "")
            target.currentModel = model;
        target.inputMode = lastInputMode;
        // Other clients may accept a context. AgentBridge takes only the prompt because the bridge's session remembers
        // the conversation.
        if (typeof target.sendIntentWithContext === "function") {
            target.sendIntentWithContext(prompt, buildChatContext());
        } else if (target.sendIntent.length >= 2) {
            try {
                target.sendIntent(prompt, buildChatContext());
            } catch (error) {
                console.warn("[OmniBar] sendIntent with context failed:", error);
            }
        } else {
            target.sendIntent(prompt);
        }
    }

    function buildChatContext() {
        return ChatContext.chatContext(lastRows(contextWindowSize), contextWindowSize);
    }

    // ---- Agents. The bridge routes between them, and the user sees only one

    function loadAvailableAgents() {
        availableAgents = [{ "id": "auto", "name": bar.tr("Assistant") }];
        currentAgentId = "auto";
    }

    function updateCurrentAgent() {
        currentAgentId = (bar.bridge && bar.bridge.currentAgent) || "auto";
    }

    // ---- Replies

    //! The structured reply that came before the text: {blocks, followUps}, both arrays. Forgets it.
    function takeStructuredReply() {
        let ui = null;
        if (pendingUiJson !== "") {
            try {
                ui = JSON.parse(pendingUiJson);
            } catch (error) {
                console.warn("[OmniBar] structured reply can't be read:", error);
            }
        }
        pendingUiJson = "";
        return {
            "blocks": ui && Array.isArray(ui.blocks) ? ui.blocks : [],
            "followUps": ui && Array.isArray(ui.followUps) ? ui.followUps : []
        };
    }

    function handleReply(response) {
        const reply = String(response);
        if (reply === "")
            return; // the structured reply belongs to a text that is still to come
        const structured = takeStructuredReply();
        if (StructuredReply.needsBlocks(structured.blocks)) {
            appendStructuredBlocks(structured.blocks, reply);
            showReply(structured.followUps, reply);
            return;
        }
        const text = ReplyText.holdsToolMarkup(reply) ? ReplyText.stripToolMarkup(reply) : reply;
        syncThemeWith(text);
        appendAgentMessage(text);
        // The text of the row has no tool tag.
        showReply(structured.followUps, plainTextOf(chatModel.count - 1));
    }

    //! Called after the rows of a reply were appended.
    function showReply(followUps, spokenText) {
        scrollToBottom();
        bar.refreshResponseSuggestions(followUps);
        bar.speakReply(spokenText);
    }

    //! Follows a reply that says that a dark or light theme was applied. Intentional: the test of the wording is loose,
    //! and also matches a chat about themes, because there is no other notification of a theme change.
    function syncThemeWith(text) {
        const light = ReplyText.lightChromeFromWording(text);
        if (light !== undefined)
            bar.appearanceStore.lightChrome = light;
    }

    function handleError(error) {
        pendingUiJson = "";
        appendRow("assistant", "Error: " + error);
        scrollToBottom();
    }

    // ---- Feedback

    //! A click on a thumb. A second click clears the vote, but nothing is sent for that.
    function voteMessage(index, vote) {
        const row = chatModel.get(index);
        if (row.feedbackVote === vote) {
            chatModel.setProperty(index, "feedbackVote", "");
            return;
        }
        chatModel.setProperty(index, "feedbackVote", vote);
        sendChatFeedback(vote, index, plainTextOf(index));
    }

    function sendChatFeedback(vote, messageIndex, assistantText) {
        Native.call(bar.bridge, "sendMessageFeedback", vote, messageIndex, assistantText,
                    Feedback.nearestUserQuery(lastRows(chatModel.count), messageIndex));
    }

    // ---- Widgets

    //! A click on a choice. The bridge replies to it as to a prompt.
    function selectOption(messageIndex, choiceId, choiceLabel) {
        Native.call(bar.bridge, "handleUiAction", "option_selected", messageIndex, choiceId + ":" + choiceLabel);
    }

    function submitSlider(messageIndex, value, action) {
        Native.call(bar.bridge, "handleUiAction", "slider_submitted", messageIndex, String(value) + ":" + action);
    }

    //! Keeps what the user did in the widget of a row, as an object, for the next time that the widget is created.
    function saveWidgetState(index, state) {
        chatModel.setProperty(index, "widgetState", JSON.stringify(state));
    }

    //! @return whether text was copied
    function copyMessage(index) {
        const text = plainTextOf(index);
        if (text === "" || !Native.offers(bar.bridge, "copyToClipboard"))
            return false;
        Native.call(bar.bridge, "copyToClipboard", text);
        return true;
    }

    Connections {
        target: conversation.bar.bridge

        function onStructuredReplyReceived(uiJson) {
            conversation.pendingUiJson = uiJson;
        }
        function onAgentReplied(response) {
            conversation.handleReply(response);
        }
        function onErrorOccurred(error) {
            conversation.handleError(error);
        }
        function onUsageReported(inputTokens, outputTokens) {
            conversation.sessionUsageInput += inputTokens;
            conversation.sessionUsageOutput += outputTokens;
        }
        function onCurrentAgentChanged() {
            conversation.updateCurrentAgent();
        }
        function onActionStarted(actionName) {
            if (CollapseRule.collapsesWindow(actionName))
                conversation.bar.collapseForAction();
        }
    }
}
