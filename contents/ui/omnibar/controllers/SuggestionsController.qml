// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Suggestions.js" as Suggestions

//! The cards below a reply: the follow-ups from the bridge, filled up with suggestions that match the conversation.
Controller {
    id: suggestions

    //! Up to 4 cards, with the roles title, subtitle, prompt, iconName, iconColor, iconBg.
    readonly property ListModel responseSuggestionsModel: ListModel {
        objectName: "responseSuggestionsModel"
    }
    //! Message types that offer a choice themselves. Suggestions would distract from it.
    readonly property var choiceTypes: ["options", "list", "slider", "table"]
    readonly property bool shown: bar.chatModel.count > 0 && bar.bridgeStatus !== "thinking"
                                  && responseSuggestionsModel.count > 0
                                  && !bar.latestTurn().some(row => choiceTypes.includes(row.messageType))

    function refreshResponseSuggestions(bridgeFollowUps) {
        responseSuggestionsModel.clear();
        Suggestions.cards(bridgeFollowUps, bar.lastText("user"), bar.lastText("assistant"), bar.tr)
            .forEach(card => responseSuggestionsModel.append(card));
    }

    function initResponseSuggestions() {
        refreshResponseSuggestions([]);
    }

    //! A click on a card. Keeps the input mode because the user neither typed nor spoke.
    function activateResponseSuggestion(prompt) {
        bar.appendUserMessage(prompt);
        bar.scrollToBottom();
        bar.sendToBridge(prompt);
    }
}
