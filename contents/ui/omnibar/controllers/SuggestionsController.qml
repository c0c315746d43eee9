// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Suggestions.js" as Suggestions

//! The cards under a reply: what the bridge proposes, filled up by what goes with the words of the conversation.
Controller {
    id: suggestions

    //! At most 4 cards: title, subtitle, prompt, iconName, iconColor, iconBg.
    readonly property ListModel responseSuggestionsModel: ListModel {
        objectName: "responseSuggestionsModel"
    }
    //! Rows that offer something to choose, from which cards would only distract.
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

    //! A click on a card. The input mode stays what it was, as nobody typed or spoke.
    function activateResponseSuggestion(prompt) {
        bar.appendUserMessage(prompt);
        bar.scrollToBottom();
        bar.sendToBridge(prompt);
    }
}
