// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

// Long, because all tests need the same controller and fakes.
TestCase {
    id: test
    name: "ConversationController"

    property FakeBar bar
    property FakeBridge bridge
    property ConversationController conversation

    Component { id: bars; FakeBar {} }
    Component { id: bridges; FakeBridge {} }
    Component { id: conversations; ConversationController {} }
    Component { id: spies; SignalSpy {} }

    Component {
        id: setterBridges

        FakeBridge {
            function setCurrentAgent(id) { note("setCurrentAgent", [id]); }
        }
    }

    Component {
        id: contextBridges

        FakeBridge {
            function sendIntentWithContext(prompt, context) { note("sendIntentWithContext", [prompt, context]); }
        }
    }

    Component {
        id: twoParameterBridges

        FakeBridge {
            property bool refuses: false

            function sendIntent(prompt, context) {
                note("sendIntent", [prompt, context]);
                if (refuses)
                    throw new Error("no context wanted");
            }
        }
    }

    function begin(component) {
        bridge = createTemporaryObject(component, test);
        bar = createTemporaryObject(bars, test, { "bridge": bridge });
        conversation = createTemporaryObject(conversations, test, { "bar": bar });
    }

    function init() {
        begin(bridges);
    }

    function row(index) {
        return conversation.chatModel.get(index);
    }

    function rowsAsText() {
        const list = [];
        for (let i = 0; i < conversation.chatModel.count; ++i)
            list.push(row(i).role + ": " + row(i).text);
        return list;
    }

    function submit(text) {
        bar.inputField.text = text;
        conversation.submitInput();
    }

    // ---- Initial values

    function test_firstValues() {
        compare(conversation.chatModel.count, 0);
        compare(conversation.contextWindowSize, 8);
        compare(conversation.lastInputMode, "text");
        compare(conversation.pendingUiJson, "");
        compare(conversation.sessionUsageInput, 0);
        compare(conversation.sessionUsageOutput, 0);
        compare(conversation.sessionUsageTotal, 0);
        compare(conversation.usageMax, 50000);
        compare(conversation.usageProgress, 0);
        compare(conversation.currentAgentId, "auto");
        compare(conversation.currentModelId, "");
    }

    function test_agentAndModelFollowTheBridge() {
        bridge.currentModel = "loomra/one";
        compare(conversation.currentModelId, "loomra/one");
        bridge.currentAgent = "planner";
        compare(conversation.currentAgentId, "planner");
        bridge.currentAgent = "";
        compare(conversation.currentAgentId, "auto");
    }

    function test_withoutABridge() {
        bar.bridge = null;
        compare(conversation.currentAgentId, "auto");
        compare(conversation.currentModelId, "");
        submit("hello");
        compare(rowsAsText(), ["user: hello"]);
        compare(conversation.copyMessage(0), false);
        conversation.voteMessage(0, "up");
        compare(row(0).feedbackVote, "up");
    }

    function test_availableAgents() {
        conversation.currentAgentId = "planner";
        conversation.loadAvailableAgents();
        compare(conversation.availableAgents, [{ "id": "auto", "name": "<Assistant>" }]);
        compare(conversation.currentAgentId, "auto");
        bridge.currentAgent = "chat";
        conversation.loadAvailableAgents();
        conversation.updateCurrentAgent();
        compare(conversation.currentAgentId, "chat");
    }

    // ---- Rows

    function test_rowFields() {
        const before = Date.now();
        conversation.appendUserMessage("hello");
        const fields = row(0);
        verify(fields.createdAt >= before && fields.createdAt <= Date.now());
        compare([fields.role, fields.text, fields.messageType, fields.payload, fields.fallbackText, fields.hasTool,
                 fields.toolStatus, fields.toolName, fields.feedbackVote],
                ["user", "hello", "text", "", "hello", false, "", "", ""]);
    }

    function test_toolTag_data() {
        return [
            { tag: "rest", text: "[TOOL: a.b] [STATUS: success] [RESULT: ok] It is done.",
              expected: [true, "a.b", "success", "It is done."] },
            { tag: "no rest", text: "[TOOL: x] [STATUS: success] [RESULT: ok]",
              expected: [true, "x", "success", "Action completed."] },
            { tag: "words before are lost", text: "Look: [TOOL:x] [STATUS:failed] [RESULT:] Rest",
              expected: [true, "x", "failed", "Rest"] },
            { tag: "no tag", text: "[TOOL: x] and no more", expected: [false, "", "", "[TOOL: x] and no more"] }
        ];
    }

    function test_toolTag(data) {
        conversation.appendAgentMessage(data.text);
        const fields = row(0);
        compare([fields.hasTool, fields.toolName, fields.toolStatus, fields.text], data.expected);
        compare(fields.fallbackText, fields.text);
    }

    function test_onlyAssistantRowsHaveTools() {
        conversation.appendUserMessage("[TOOL: x] [STATUS: success] [RESULT: ok] mine");
        conversation.appendSystemMessage("[TOOL: x] [STATUS: success] [RESULT: ok] yours");
        compare(rowsAsText(), ["user: [TOOL: x] [STATUS: success] [RESULT: ok] mine",
                               "system: [TOOL: x] [STATUS: success] [RESULT: ok] yours"]);
    }

    function test_latestTurnEndsAtTheFirstOtherRole() {
        compare(conversation.latestTurn(), []);
        conversation.appendAgentMessage("old");
        conversation.appendUserMessage("question");
        conversation.appendAgentMessage("one");
        conversation.appendAgentMessage("two");
        compare(conversation.latestTurn().map(entry => entry.text), ["question", "one", "two"]);
        conversation.appendSystemMessage("note");
        compare(conversation.latestTurn().map(entry => entry.text), ["note"]);
    }

    function test_lastText() {
        compare(conversation.lastText("user"), "");
        conversation.appendUserMessage("one");
        conversation.appendAgentMessage("two");
        conversation.appendUserMessage("three");
        compare(conversation.lastText("user"), "three");
        compare(conversation.lastText("assistant"), "two");
        conversation.chatModel.setProperty(2, "fallbackText", "read this");
        compare(conversation.lastText("user"), "read this");
    }

    function test_context() {
        compare(conversation.buildChatContext(), "");
        for (let i = 0; i < 5; ++i) {
            conversation.appendUserMessage("q" + i);
            conversation.appendAgentMessage("a" + i);
        }
        conversation.appendSystemMessage("note");
        conversation.chatModel.setProperty(9, "fallbackText", "");
        conversation.chatModel.setProperty(8, "fallbackText", "plain");
        compare(conversation.buildChatContext(),
                "Assistant: a1\nUser: q2\nAssistant: a2\nUser: q3\nAssistant: a3\nUser: plain\nAssistant: a4\n"
                + "Assistant: note");
    }

    function test_scrollsOncePerTurnAndOnlyWithRows() {
        const spy = createTemporaryObject(spies, test, { "target": conversation, "signalName": "scrollRequested" });
        conversation.scrollToBottom();
        wait(0);
        compare(spy.count, 0);
        conversation.appendUserMessage("one");
        conversation.scrollToBottom();
        conversation.scrollToBottom();
        compare(spy.count, 0);
        tryCompare(spy, "count", 1);
        wait(0);
        compare(spy.count, 1);
    }

    // ---- Submit

    function test_submitTrims() {
        bar.slashMenuVisible = true;
        submit("  hello there \n");
        compare(rowsAsText(), ["user: hello there"]);
        compare(bar.inputField.text, "");
        compare(bar.slashMenuVisible, false);
        compare(bridge.takeCalls(), ["inputMode = text", "sendIntent(hello there)"]);
    }

    function test_submitOfWhitespaceOnlyHidesTheMenu() {
        bar.slashMenuVisible = true;
        submit("  ");
        compare(conversation.chatModel.count, 0);
        compare(bar.slashMenuVisible, false);
        compare(bar.inputField.text, "  ");
        compare(bridge.takeCalls(), []);
        compare(bar.takeCalls(), []);
    }

    function test_submitWhileVoiceIsToBeConfirmed() {
        bar.voiceConfirmPending = true;
        bar.slashMenuVisible = true;
        submit("spoken words");
        compare(bar.takeCalls(), ["voiceConfirmSend()"]);
        compare(conversation.chatModel.count, 0);
        compare(bar.inputField.text, "spoken words");
        verify(bar.slashMenuVisible);
    }

    function test_submitOfASlashCommand() {
        bar.answers.chosenSlashCommand = "clear";
        bar.answers.tryHandleSlashCommand = true;
        bar.slashMenuVisible = true;
        submit("/cl");
        compare(bar.takeCalls(), ["tryHandleSlashCommand(/clear)"]);
        compare(bar.inputField.text, "");
        compare(bar.slashMenuVisible, false);
        compare(conversation.chatModel.count, 0);
        compare(bridge.takeCalls(), []);
    }

    function test_slashTextThatIsNoCommandGoesToChat() {
        submit("/unknown");
        compare(rowsAsText(), ["user: /unknown"]);
        compare(bridge.takeCalls(), ["inputMode = text", "sendIntent(/unknown)"]);
    }

    function test_submitWithFiles() {
        bar.answers.takeFileContext = "the files\n\n";
        submit("what is it?");
        compare(rowsAsText(), ["user: what is it?"]);
        compare(bridge.takeCalls(), ["inputMode = text", "sendIntent(the files\n\nUser question: what is it?)"]);
    }

    function test_submitResetsTheInputMode() {
        conversation.lastInputMode = "voice";
        submit("typed");
        compare(conversation.lastInputMode, "text");
    }

    function test_twoSubmitsAreTwoRequests() {
        submit("again");
        submit("again");
        compare(bridge.takeCalls(), ["inputMode = text", "sendIntent(again)", "sendIntent(again)"]);
        compare(conversation.chatModel.count, 2);
    }

    // ---- sendToBridge

    function test_writesBeforeTheChat() {
        conversation.currentAgentId = "planner";
        conversation.currentModelId = " loomra/one ";
        conversation.lastInputMode = "voice";
        conversation.sendToBridge("go");
        compare(bridge.takeCalls(),
                ["currentAgent = planner", "currentModel = loomra/one", "inputMode = voice", "sendIntent(go)"]);
    }

    function test_noAgentAndNoModelAreNotWritten() {
        conversation.currentAgentId = "";
        conversation.currentModelId = "  ";
        conversation.sendToBridge("go");
        compare(bridge.takeCalls(), ["inputMode = text", "sendIntent(go)"]);
        compare(bridge.currentAgent, "auto");
    }

    function test_theBridgesModelServesWhenNoneIsChosen() {
        conversation.currentModelId = "";
        bridge.currentModel = " loomra/two ";
        conversation.currentModelId = "";
        bridge.takeCalls();
        conversation.sendToBridge("go");
        compare(bridge.takeCalls(), ["currentModel = loomra/two", "inputMode = text", "sendIntent(go)"]);
    }

    function test_setCurrentAgentIsPreferred() {
        begin(setterBridges);
        conversation.currentAgentId = "planner";
        conversation.sendToBridge("go");
        compare(bridge.takeCalls(), ["setCurrentAgent(planner)", "inputMode = text", "sendIntent(go)"]);
        compare(bridge.currentAgent, "auto");
    }

    function test_sendIntentWithContextIsPreferred() {
        begin(contextBridges);
        conversation.appendAgentMessage("before");
        submit("go");
        compare(bridge.takeCalls(), ["inputMode = text", "sendIntentWithContext(go, Assistant: before\nUser: go)"]);
    }

    function test_sendIntentOfTwoParameters() {
        begin(twoParameterBridges);
        submit("go");
        compare(bridge.takeCalls(), ["inputMode = text", "sendIntent(go, User: go)"]);
    }

    function test_sendIntentOfTwoParametersThatFails() {
        begin(twoParameterBridges);
        bridge.refuses = true;
        ignoreWarning("[OmniBar] sendIntent with context failed: Error: no context wanted");
        submit("go");
        compare(bridge.takeCalls(), ["inputMode = text", "sendIntent(go, User: go)"]);
        compare(bar.inputField.text, "");
    }

    // ---- Replies

    function test_reply() {
        bridge.agentReplied("Here it is.");
        compare(rowsAsText(), ["assistant: Here it is."]);
        compare(bar.takeCalls(), ["refreshResponseSuggestions([])", "speakReply(Here it is.)"]);
    }

    function test_everyReplyIsARow() {
        bridge.agentReplied("same");
        bridge.agentReplied("same");
        compare(rowsAsText(), ["assistant: same", "assistant: same"]);
    }

    function test_structuredReply() {
        const ui = JSON.stringify({ "blocks": [{ "type": "text", "content": "A" }], "followUps": [{ "prompt": "more" }] });
        bridge.structuredReplyReceived(ui);
        compare(conversation.pendingUiJson, ui);
        compare(conversation.chatModel.count, 0);
        bridge.agentReplied("A");
        compare(rowsAsText(), ["assistant: A"]);
        compare(conversation.pendingUiJson, "");
        compare(bar.takeCalls(), ["refreshResponseSuggestions([{\"prompt\":\"more\"}])", "speakReply(A)"]);
    }

    function test_structureIsUsedForOneReply() {
        bridge.structuredReplyReceived("{\"followUps\":[{\"prompt\":\"more\"}]}");
        bridge.agentReplied("one");
        bar.takeCalls();
        bridge.agentReplied("two");
        compare(bar.takeCalls(), ["refreshResponseSuggestions([])", "speakReply(two)"]);
    }

    function test_emptyReplyKeepsTheStructure() {
        bridge.structuredReplyReceived("{\"followUps\":[{\"prompt\":\"more\"}]}");
        bridge.agentReplied("");
        compare(conversation.chatModel.count, 0);
        compare(bar.takeCalls(), []);
        bridge.agentReplied("text");
        compare(bar.takeCalls()[0], "refreshResponseSuggestions([{\"prompt\":\"more\"}])");
    }

    function test_errorClearsTheStructure() {
        bridge.structuredReplyReceived("{\"followUps\":[{\"prompt\":\"more\"}]}");
        bridge.errorOccurred("no luck");
        compare(conversation.pendingUiJson, "");
        compare(rowsAsText(), ["assistant: Error: no luck"]);
        compare(bar.takeCalls(), []);
    }

    function test_errorIsNoReply() {
        bridge.errorOccurred("[TOOL: x] [STATUS: success] [RESULT: ok] light applied");
        compare(row(0).text, "Error: [TOOL: x] [STATUS: success] [RESULT: ok] light applied");
        compare(row(0).hasTool, false);
        compare(bar.appearanceStore.lightChrome, false);
    }

    function test_malformedStructure_data() {
        return [
            { tag: "no JSON", ui: "{", warns: true },
            { tag: "null", ui: "null" },
            { tag: "array", ui: "[1]" },
            { tag: "follow-ups of another type", ui: "{\"followUps\":\"many\"}" }
        ];
    }

    function test_malformedStructure(data) {
        bridge.structuredReplyReceived(data.ui);
        if (data.warns)
            ignoreWarning(/^\[OmniBar\] structured reply can't be read: SyntaxError/);
        bridge.agentReplied("plain");
        compare(rowsAsText(), ["assistant: plain"]);
        compare(conversation.pendingUiJson, "");
        compare(bar.takeCalls()[0], "refreshResponseSuggestions([])");
    }

    // ---- Blocks

    function rowsOfBlocks() {
        const list = [];
        for (let i = 0; i < conversation.chatModel.count; ++i)
            list.push([row(i).role, row(i).messageType, row(i).text, row(i).payload]);
        return list;
    }

    function replyWith(ui, text) {
        bridge.structuredReplyReceived(JSON.stringify(ui));
        bridge.agentReplied(text);
    }

    function test_blocks() {
        const list = { "type": "list", "items": ["a"] };
        const callout = { "type": "callout", "content": "Careful" };
        replyWith({ "blocks": [list, callout], "followUps": [{ "prompt": "more" }] }, "One thing: a");
        compare(rowsOfBlocks(), [["assistant", "list", "One thing: a", JSON.stringify(list)],
                                 ["assistant", "callout", "Careful", JSON.stringify(callout)]]);
        compare([row(0).fallbackText, row(1).fallbackText, row(0).hasTool, row(0).toolStatus, row(0).toolName,
                 row(0).feedbackVote, row(0).widgetState], ["One thing: a", "Careful", false, "", "", "", ""]);
        verify(row(0).createdAt > 0);
        compare(conversation.pendingUiJson, "");
        compare(bar.takeCalls(), ["refreshResponseSuggestions([{\"prompt\":\"more\"}])", "speakReply(One thing: a)"]);
        compare(conversation.copyMessage(1), true);
        compare(bridge.takeCalls(), ["copyToClipboard(Careful)"]);
    }

    function test_blocksScroll() {
        const spy = createTemporaryObject(spies, test, { "target": conversation, "signalName": "scrollRequested" });
        replyWith({ "blocks": [{ "type": "list" }, { "type": "list" }] }, "reply");
        tryCompare(spy, "count", 1);
    }

    function test_oneTextBlockIsAnOrdinaryReply_data() {
        return [{ tag: "text", block: { "type": "text", "content": "the block" } },
                { tag: "no type", block: { "content": "the block" } }];
    }

    function test_oneTextBlockIsAnOrdinaryReply(data) {
        replyWith({ "blocks": [data.block], "followUps": [{ "prompt": "more" }] }, "[TOOL: x] [STATUS: ok] [RESULT: ok] done");
        compare(rowsOfBlocks(), [["assistant", "text", "done", ""]]);
        compare(row(0).hasTool, true);
        compare(bar.takeCalls(), ["refreshResponseSuggestions([{\"prompt\":\"more\"}])", "speakReply(done)"]);
    }

    function test_unknownBlocksShowTheReply() {
        const list = { "type": "list" };
        replyWith({ "blocks": [{ "type": "hologram" }, list, { "type": "hologram" }] }, "reply");
        compare(rowsOfBlocks(), [["assistant", "text", "reply", ""], ["assistant", "list", "reply", JSON.stringify(list)],
                                 ["assistant", "text", "reply", ""]]);
    }

    function test_badBlocksLeaveThePlainReply_data() {
        return [{ tag: "nothing usable", blocks: [null, 5, [], "list"] }, { tag: "empty", blocks: [] },
                { tag: "object", blocks: { "type": "list" } }, { tag: "string", blocks: "list" }, { tag: "null", blocks: null }];
    }

    function test_badBlocksLeaveThePlainReply(data) {
        replyWith({ "blocks": data.blocks }, "reply");
        compare(rowsOfBlocks(), [["assistant", "text", "reply", ""]]);
        compare(bar.takeCalls().filter(call => call.startsWith("speakReply")), ["speakReply(reply)"]);
    }

    //! Only the wording of plain replies changes the theme.
    function test_blocksDontChangeTheTheme() {
        replyWith({ "blocks": [{ "type": "list" }] }, "The light theme is applied.");
        compare(bar.appearanceStore.lightChrome, false);
    }

    function test_appendStructuredBlocksWithoutText() {
        conversation.appendStructuredBlocks([], "");
        conversation.appendStructuredBlocks("none", "reply");
        compare(rowsAsText(), ["assistant: (empty response)", "assistant: reply"]);
    }

    //! The list changes once, so that views and bindings aren't updated for each block.
    function test_manyBlocksAreOneChange() {
        const spy = createTemporaryObject(spies, test, { "target": conversation.chatModel, "signalName": "countChanged" });
        replyWith({ "blocks": Array.from({ length: 1000 }, () => ({ "type": "list" })) }, "reply");
        compare(conversation.chatModel.count, 1000);
        compare(spy.count, 1);
    }

    function test_widgetActions() {
        conversation.selectOption(3, "a", "Editor: all");
        conversation.submitSlider(4, 0.126, "set");
        conversation.submitSlider(4, 40, "");
        compare(bridge.takeCalls(), ["handleUiAction(option_selected, 3, a:Editor: all)",
                                     "handleUiAction(slider_submitted, 4, 0.126:set)",
                                     "handleUiAction(slider_submitted, 4, 40:)"]);
        bar.bridge = null;
        conversation.selectOption(3, "a", "Editor");
        conversation.submitSlider(4, 1, "set");
    }

    function test_widgetStateIsKeptInTheRow() {
        replyWith({ "blocks": [{ "type": "options" }, { "type": "options" }] }, "reply");
        conversation.saveWidgetState(1, { "selectedIndex": 2 });
        compare([row(0).widgetState, row(1).widgetState], ["", '{"selectedIndex":2}']);
    }

    function test_toolMarkupIsStripped() {
        bridge.agentReplied("<tool_call>{\"name\":\"x\"}</tool_call>");
        bridge.agentReplied("Before\n\n\n\n<invoke name=\"x\">y</invoke>after");
        compare(rowsAsText(), ["assistant: Done.", "assistant: Before\n\nafter"]);
        compare(bar.takeCalls().filter(call => call.startsWith("speakReply")),
                ["speakReply(Done.)", "speakReply(Before\n\nafter)"]);
    }

    function test_whatTheRowShowsIsSpoken_data() {
        return [
            { tag: "tool and words", reply: "[TOOL: x] [STATUS: success] [RESULT: ok] It is open.", spoken: "It is open." },
            { tag: "tool alone", reply: "[TOOL: x] [STATUS: success] [RESULT: ok]", spoken: "Action completed." },
            { tag: "structured", ui: { "blocks": [{ "type": "list", "items": ["a"] }, { "type": "text", "content": "b" }] },
              reply: "One thing: a", spoken: "One thing: a" }
        ];
    }

    function test_whatTheRowShowsIsSpoken(data) {
        if (data.ui)
            bridge.structuredReplyReceived(JSON.stringify(data.ui));
        bridge.agentReplied(data.reply);
        compare(row(0).text, data.spoken);
        compare(bar.takeCalls().filter(call => call.startsWith("speakReply")), ["speakReply(" + data.spoken + ")"]);
    }

    function test_themeByWording_data() {
        return [
            { tag: "light", before: false, text: "The LIGHT theme is Applied.", after: true },
            { tag: "dark", before: true, text: "Applied Breeze Dark", after: false },
            { tag: "both are dark", before: true, text: "applied: light to dark", after: false },
            { tag: "neither", before: true, text: "Applied the theme", after: true },
            { tag: "not applied", before: false, text: "Do you like light?", after: false },
            { tag: "inside other words", before: false, text: "Highlighting was reapplied", after: true }
        ];
    }

    function test_themeByWording(data) {
        bar.appearanceStore.lightChrome = data.before;
        bridge.agentReplied(data.text);
        compare(bar.appearanceStore.lightChrome, data.after);
    }

    function test_usage() {
        bridge.usageReported(100, 20);
        bridge.usageReported(3, 0);
        compare(conversation.sessionUsageInput, 103);
        compare(conversation.sessionUsageOutput, 20);
        compare(conversation.sessionUsageTotal, 123);
        compare(conversation.usageProgress, 123 / 50000);
        bridge.usageReported(60000, 0);
        compare(conversation.usageProgress, 1);
        conversation.clear();
        compare(conversation.sessionUsageTotal, 60123);
    }

    function test_actions_data() {
        return [
            { tag: "launch", action: "kde_launch_app", collapses: true },
            { tag: "hyphens and capitals", action: "KDE-Set-Volume", collapses: true },
            { tag: "mixed", action: "kde-daemon_x", collapses: true },
            { tag: "prefix", action: "kde_set_wallpaper_all", collapses: true },
            { tag: "not at the start", action: "my_kde_launch", collapses: false },
            { tag: "another", action: "kde_get_volume", collapses: false },
            { tag: "none", action: "", collapses: false }
        ];
    }

    function test_actions(data) {
        bridge.actionStarted(data.action);
        compare(bar.takeCalls(), data.collapses ? ["collapseForAction()"] : []);
    }

    // ---- Feedback

    function test_votes() {
        submit("first question");
        bridge.agentReplied("first");
        bridge.agentReplied("second");
        bridge.takeCalls();

        conversation.voteMessage(2, "up");
        compare(row(2).feedbackVote, "up");
        compare(bridge.takeCalls(), ["sendMessageFeedback(up, 2, second, first question)"]);

        conversation.voteMessage(2, "down");
        compare(row(2).feedbackVote, "down");
        compare(bridge.takeCalls(), ["sendMessageFeedback(down, 2, second, first question)"]);

        conversation.voteMessage(2, "down");
        compare(row(2).feedbackVote, "");
        compare(bridge.takeCalls(), []);
        compare(row(1).feedbackVote, "");
    }

    function test_voteWithoutAQuestion() {
        bridge.agentReplied("hello");
        conversation.voteMessage(0, "down");
        compare(bridge.takeCalls(), ["sendMessageFeedback(down, 0, hello, )"]);
    }

    function test_voteSendsThePlainText() {
        bridge.agentReplied("drawn");
        conversation.chatModel.setProperty(0, "fallbackText", "read");
        conversation.voteMessage(0, "up");
        compare(bridge.takeCalls(), ["sendMessageFeedback(up, 0, read, )"]);
    }

    function test_copy() {
        bridge.agentReplied("drawn");
        compare(conversation.copyMessage(0), true);
        conversation.chatModel.setProperty(0, "fallbackText", "read");
        compare(conversation.copyMessage(0), true);
        compare(bridge.takeCalls(), ["copyToClipboard(drawn)", "copyToClipboard(read)"]);
        conversation.chatModel.setProperty(0, "fallbackText", "");
        conversation.chatModel.setProperty(0, "text", "");
        compare(conversation.copyMessage(0), false);
        compare(bridge.takeCalls(), []);
    }

    function test_clearKeepsEverythingElse() {
        bridge.structuredReplyReceived("{}");
        bridge.usageReported(5, 0);
        conversation.appendUserMessage("one");
        conversation.lastInputMode = "voice";
        conversation.clear();
        compare(conversation.chatModel.count, 0);
        compare(conversation.pendingUiJson, "{}");
        compare(conversation.sessionUsageTotal, 5);
        compare(conversation.lastInputMode, "voice");
        compare(bridge.takeCalls(), []);
    }
}
