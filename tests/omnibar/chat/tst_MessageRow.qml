// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar"
import "qrc:/org/kde/loomra/contents/ui/omnibar/chat"
import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"
import "../controllers"

//! Rows of the conversation in a list that creates only those in view, with a stand-in for the widgets of structured
//! replies.
Item {
    id: root

    width: 600
    height: 300

    OmniBarTheme {
        id: omniTheme
    }

    FakeBar {
        id: fakeBar

        function saveWidgetState(index, state) { conversation.saveWidgetState(index, state); }
        function copyMessage(index) { return conversation.copyMessage(index); }
        function voteMessage(index, vote) { conversation.voteMessage(index, vote); }
    }

    ConversationController {
        id: conversation
        bar: fakeBar
    }

    ListView {
        id: list

        anchors.fill: parent
        model: conversation.chatModel
        cacheBuffer: 0
        delegate: MessageRow {
            id: row

            width: list.width
            bar: fakeBar
            theme: omniTheme
            widgets: ({ "standIn": standIn })

            Component {
                id: standIn

                //! Counts its clicks, and starts again from what it saved.
                Rectangle {
                    objectName: "standIn"

                    readonly property int clicks: row.savedState.clicks || 0
                    readonly property string prompt: row.block.prompt || ""
                    readonly property bool light: row.theme.uiLight

                    implicitHeight: 40

                    MouseArea {
                        anchors.fill: parent
                        onClicked: row.saveState({ "clicks": parent.clicks + 1 })
                    }
                }
            }
        }
    }

    TestCase {
        name: "MessageRow"
        when: windowShown

        function init() {
            conversation.clear();
            omniTheme.uiLight = false;
        }

        function append(values) {
            conversation.appendAgentMessage("fallback");
            const last = conversation.chatModel.count - 1;
            Object.keys(values).forEach(name => conversation.chatModel.setProperty(last, name, values[name]));
            return last;
        }
        function appendWidget() {
            return append({ "messageType": "standIn", "payload": '{"prompt":"How many?"}' });
        }
        function rowItem(index) {
            list.positionViewAtIndex(index, ListView.Beginning);
            return list.itemAtIndex(index);
        }
        function widget(index) {
            return findChild(rowItem(index), "standIn");
        }
        function words(index) {
            const found = findChild(rowItem(index), "words");
            return found ? found.parent.content : undefined;
        }

        function test_contentByType_data() {
            return [
                { tag: "block", values: { "messageType": "standIn", "payload": "{}" }, isWidget: true },
                { tag: "broken payload", values: { "messageType": "standIn", "payload": "{" }, isWidget: true },
                { tag: "no payload", values: { "messageType": "standIn" }, isWidget: false, words: "fallback" },
                { tag: "user", values: { "messageType": "standIn", "payload": "{}", "role": "user" }, isWidget: false,
                  words: "fallback" },
                { tag: "system", values: { "messageType": "standIn", "payload": "{}", "role": "system" },
                  isWidget: false, words: "fallback" },
                { tag: "unknown type", values: { "messageType": "chart", "payload": '{"content":"a chart"}' },
                  isWidget: false, words: "a chart" },
                { tag: "name of JavaScript", values: { "messageType": "toString", "payload": "{}" }, isWidget: false,
                  words: "fallback" },
                { tag: "text", values: { "payload": '{"content":"the block"}' }, isWidget: false, words: "the block" }
            ];
        }
        function test_contentByType(row) {
            const index = append(row.values);
            compare(widget(index) !== null, row.isWidget);
            compare(words(index), row.words);
        }

        function test_structuredBubblesAreWider() {
            const plain = append({});
            const structured = appendWidget();
            compare(findChild(rowItem(plain), "messageBubble").width, 468); // 0.78 of 600
            compare(findChild(rowItem(structured), "messageBubble").width, 528); // 0.88 of 600
            compare(findChild(rowItem(structured), "messageBubble").height, 40 + 18);
            compare(widget(structured).width, 528);
        }

        function test_rowsWithoutContentAreEmptyBubbles() {
            const index = appendWidget();
            const content = findChild(rowItem(index), "messageContent");
            content.sourceComponent = null;
            compare(findChild(rowItem(index), "messageBubble").height, 30 + 18);
        }

        function test_widgetStateIsKeptWithTheRow() {
            const first = appendWidget();
            mouseClick(widget(first));
            mouseClick(widget(first));
            compare(widget(first).clicks, 2);

            // Far away, where the row is destroyed, and back.
            for (let i = 0; i < 50; ++i)
                conversation.appendUserMessage("row " + i);
            const second = appendWidget();
            compare(widget(second).clicks, 0);
            mouseClick(widget(second));
            tryVerify(() => list.itemAtIndex(first) === null);
            compare(widget(first).clicks, 2);
            compare(widget(second).clicks, 1);

            // A theme change keeps it too.
            omniTheme.uiLight = true;
            verify(widget(second).light);
            compare(widget(second).clicks, 1);
            compare(widget(second).prompt, "How many?");
        }
    }
}
