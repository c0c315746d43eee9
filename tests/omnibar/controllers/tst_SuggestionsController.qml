// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

TestCase {
    id: test
    name: "SuggestionsController"

    property FakeBar bar
    property SuggestionsController suggestions

    Component { id: bars; FakeBar { bridgeStatus: "idle" } }
    Component { id: controllers; SuggestionsController {} }

    function init() {
        bar = createTemporaryObject(bars, test);
        suggestions = createTemporaryObject(controllers, test, { "bar": bar });
    }

    function fields(name) {
        const list = [];
        for (let i = 0; i < suggestions.responseSuggestionsModel.count; ++i)
            list.push(suggestions.responseSuggestionsModel.get(i)[name]);
        return list;
    }

    function test_initialSuggestionsAreGeneral() {
        compare(suggestions.responseSuggestionsModel.count, 0);
        suggestions.initResponseSuggestions();
        compare(fields("title"), ["<Tell me more>", "<Run again>", "<What else?>", "<Simplify>"]);
        compare(fields("subtitle"), ["<Go deeper on the last answer.>", "<Repeat the last task.>",
                                     "<See related KDE actions.>", "<Shorter summary.>"]);
        compare(fields("prompt"), ["Tell me more about that", "Run that again", "What else can you help me with?",
                                   "Summarize that in one short paragraph"]);
        compare(fields("iconName"), ["dialog-information", "system-run", "view-list-details", "text-summarize"]);
        compare(fields("iconColor"), ["#a855f7", "#eab308", "#ec4899", "#3b82f6"]);
        compare(fields("iconBg"), ["0.4,0.2,0.8", "0.8,0.5,0.1", "0.8,0.2,0.4", "0.2,0.4,0.8"]);
    }

    function test_suggestionsMatchTheLastQueryAndReply() {
        bar.answers.lastText = { "user": "Which WINDOWS are open?", "assistant": "The cpu is busy." };
        suggestions.refreshResponseSuggestions([]);
        compare(fields("prompt"), ["List my open windows", "Show my current system status",
                                   "Focus the most recently used window", "Show top processes by CPU and memory"]);
    }

    function test_followUpsComeFirst() {
        suggestions.initResponseSuggestions();
        suggestions.refreshResponseSuggestions([{ "prompt": "Do it", "title": "Do", "description": "now",
                                                  "icon": "system-run", "iconColor": "#ff0000", "iconBg": "1,0,0" }, {}]);
        compare(fields("title"), ["Do", "<Tell me more>", "<Run again>", "<What else?>"]);
        const first = suggestions.responseSuggestionsModel.get(0);
        compare([first.subtitle, first.prompt, first.iconName, first.iconColor, first.iconBg],
                ["now", "Do it", "system-run", "#ff0000", "1,0,0"]);
    }

    function test_maximumIsFour() {
        suggestions.refreshResponseSuggestions([1, 2, 3, 4, 5].map(n => ({ "prompt": "p" + n })));
        compare(fields("prompt"), ["p1", "p2", "p3", "p4"]);
    }

    function test_noFollowUps_data() {
        return [{ tag: "undefined", value: undefined }, { tag: "null", value: null }, { tag: "a text", value: "four" }];
    }

    function test_noFollowUps(data) {
        suggestions.refreshResponseSuggestions(data.value);
        compare(suggestions.responseSuggestionsModel.count, 4);
    }

    function test_shown() {
        suggestions.initResponseSuggestions();
        compare(suggestions.shown, false);
        bar.chatModel.append({ "role": "user" });
        compare(suggestions.shown, true);
        bar.bridgeStatus = "thinking";
        compare(suggestions.shown, false);
        bar.bridgeStatus = "error";
        compare(suggestions.shown, true);
        suggestions.responseSuggestionsModel.clear();
        compare(suggestions.shown, false);
    }

    function test_hiddenWhileTheLatestTurnOffersAChoice_data() {
        return ["options", "list", "slider", "table", "text", "code", "callout"]
            .map((type, index) => ({ tag: type, type: type, shown: index > 3 }));
    }

    function test_hiddenWhileTheLatestTurnOffersAChoice(data) {
        suggestions.initResponseSuggestions();
        bar.answers.latestTurn = [{ "role": "user", "messageType": "text" },
                                  { "role": "assistant", "messageType": data.type },
                                  { "role": "assistant", "messageType": "text" }];
        bar.chatModel.append({ "role": "assistant" });
        compare(suggestions.shown, data.shown);
    }

    function test_clickKeepsTheInputMode() {
        bar.lastInputMode = "voice";
        suggestions.activateResponseSuggestion("Run that again");
        compare(bar.takeCalls(), ["appendUserMessage(Run that again)", "scrollToBottom()", "sendToBridge(Run that again)"]);
        compare(bar.lastInputMode, "voice");
    }
}
