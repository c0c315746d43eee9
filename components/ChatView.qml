// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "mainwindow/chat"
import "mainwindow/controllers"

//! The chat of the main window: model and agent, the messages, and the input.
FocusScope {
    id: view
    objectName: "chatView"

    //! A ChatModel with the messages.
    property var chatModel: null

    readonly property var sdk: typeof loomraSDK !== "undefined" ? loomraSDK : null
    readonly property var config: typeof configManager !== "undefined" ? configManager : null
    readonly property bool ready: Boolean(sdk && sdk.ready)

    property alias modelsList: choices.modelsList
    property alias agentsList: choices.agentsList
    property alias configAgentsList: choices.configAgentsList
    property alias currentAgentName: choices.currentAgentName
    property alias lastLoadedSessionId: conversation.lastLoadedSessionId
    property alias lastAssistantResponse: conversation.lastAssistantResponse
    property alias isLoadingHistory: conversation.isLoadingHistory
    property alias lastMessageCount: conversation.lastMessageCount
    property alias isNewSession: conversation.isNewSession
    property alias hasRenamedSession: conversation.hasRenamedSession
    property alias isSendingMessage: conversation.isSendingMessage
    property alias loadedMessageHashes: conversation.loadedMessageHashes
    property alias lastResponseTimestamp: conversation.lastResponseTimestamp
    property alias responseCooldownMs: conversation.responseCooldownMs

    function convertConfigAgents(agents) { return choices.convertConfigAgents(agents); }
    //! A function, because a binding may be older than the signal whose handler asks.
    function isReady() { return Boolean(sdk && sdk.ready); }
    function send(prompt) { return conversation.send(prompt); }

    Accessible.role: Accessible.Pane
    Accessible.name: Translation.tr("Chat")

    ChatController {
        id: conversation
        chatView: view
    }

    ChoicesController {
        id: choices
        chatView: view
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Kirigami.Units.smallSpacing
        spacing: Kirigami.Units.smallSpacing

        RowLayout {
            spacing: Kirigami.Units.smallSpacing

            PlainText {
                text: Translation.tr("Model:")
                color: Kirigami.Theme.textColor
                elide: Text.ElideNone
            }
            ChoiceButton {
                objectName: "modelButton"
                Layout.fillWidth: true
                Layout.minimumWidth: 150
                Layout.preferredWidth: 200
                Layout.maximumWidth: 200
                name: Translation.tr("Model")
                caption: choices.modelText
                rows: choices.modelsList
                currentIndex: choices.modelIndex
                menuWidth: 350
                onChosen: choices.chooseModel(index)
            }
            PlainText {
                text: Translation.tr("Agent:")
                color: Kirigami.Theme.textColor
                elide: Text.ElideNone
            }
            ChoiceButton {
                id: agentButton
                objectName: "agentButton"
                Layout.fillWidth: true
                Layout.minimumWidth: 150
                Layout.preferredWidth: 200
                Layout.maximumWidth: 300
                name: Translation.tr("Agent")
                caption: choices.agentText
                rows: choices.agentsList
                currentIndex: choices.agentIndex
                menuWidth: Math.max(300, agentButton.width + 50)
                onChosen: choices.chooseAgent(index)
            }
            Item {
                Layout.fillWidth: true
                Layout.preferredWidth: 0
            }
        }

        MessageList {
            Layout.fillWidth: true
            Layout.fillHeight: true
            chatModel: view.chatModel
        }

        PromptRow {
            Layout.fillWidth: true
            focus: true
            chatView: view
        }
    }
}
