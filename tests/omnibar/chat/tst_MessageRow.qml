// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar"
import "qrc:/org/kde/loomra/contents/ui/omnibar/chat"
import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"
import "../controllers"

//! Rows of the conversation in a list that creates only those in view.
Item {
    id: root

    width: 600
    height: 300

    OmniBarTheme {
        id: omniTheme
    }

    FakeBridge {
        id: fakeBridge
    }

    FakeBar {
        id: fakeBar

        bridge: fakeBridge

        function saveWidgetState(index, state) { conversation.saveWidgetState(index, state); }
        function selectOption(messageIndex, choiceId, choiceLabel) { conversation.selectOption(messageIndex, choiceId, choiceLabel); }
        function submitSlider(messageIndex, value, action) { conversation.submitSlider(messageIndex, value, action); }
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
        currentIndex: -1 // the current row would never be destroyed
        delegate: MessageRow {
            width: list.width
            bar: fakeBar
            theme: omniTheme
        }
    }

    TestCase {
        name: "MessageRow"
        when: windowShown

        function init() {
            conversation.clear();
            list.currentIndex = -1;
            omniTheme.uiLight = false;
            fakeBridge.takeCalls();
        }

        readonly property var options: ({
            "type": "options",
            "prompt": "Which?",
            "choices": [{ "id": "a", "label": "A" }, { "id": "b", "label": "B" }]
        })
        readonly property var slider: ({ "type": "slider", "label": "Light", "value": 40, "action": "set" })

        //! Appends a row with these fields. @return its index
        function append(values) {
            conversation.appendAgentMessage("fallback");
            const last = conversation.chatModel.count - 1;
            Object.keys(values).forEach(name => conversation.chatModel.setProperty(last, name, values[name]));
            return last;
        }
        function appendBlock(block) {
            conversation.appendStructuredBlocks([block], "fallback");
            return conversation.chatModel.count - 1;
        }
        function rowItem(index) {
            list.positionViewAtIndex(index, ListView.Beginning);
            list.forceLayout();
            return list.itemAtIndex(index);
        }
        //! The widget or text bubble of a row, null if there is none.
        function content(index) {
            return findChild(rowItem(index), "messageContent").item;
        }
        function part(index, name) {
            return findChild(rowItem(index), name);
        }
        function typeOf(item) {
            return item ? String(item).split("_")[0] : "";
        }
        function words(index) {
            const found = findChild(rowItem(index), "words");
            return found ? found.parent.content : undefined;
        }
        function scrollAway(index) {
            for (let i = 0; i < 50; ++i)
                conversation.appendUserMessage("row " + i);
            list.currentIndex = -1;
            list.positionViewAtEnd();
            tryVerify(() => list.itemAtIndex(index) === null);
        }

        function test_contentByType_data() {
            const types = { "list": "BotListWidget", "table": "BotTableWidget", "options": "BotOptionsWidget",
                            "slider": "BotSliderWidget" };
            return Object.keys(types).map(type => ({
                tag: type, values: { "messageType": type, "payload": "{}" }, type: types[type]
            })).concat([
                { tag: "broken payload", values: { "messageType": "list", "payload": "{" }, type: "BotListWidget" },
                { tag: "no payload", values: { "messageType": "list" }, type: "BotTextBubble", words: "fallback" },
                { tag: "user", values: { "messageType": "list", "payload": "{}", "role": "user" }, type: "BotTextBubble",
                  words: "fallback" },
                { tag: "system", values: { "messageType": "list", "payload": "{}", "role": "system" },
                  type: "BotTextBubble", words: "fallback" },
                { tag: "code of the user", values: { "messageType": "code", "payload": "{}", "role": "user" },
                  type: "BotTextBubble", words: "fallback" },
                { tag: "unknown type", values: { "messageType": "chart", "payload": '{"content":"a chart"}' },
                  type: "BotTextBubble", words: "a chart" },
                { tag: "name of JavaScript", values: { "messageType": "toString", "payload": "{}" }, type: "BotTextBubble",
                  words: "fallback" },
                { tag: "text", values: { "payload": '{"content":"the block"}' }, type: "BotTextBubble", words: "the block" },
                { tag: "nothing", values: { "messageType": "chart", "payload": "{}", "text": "", "fallbackText": "" },
                  type: "BotTextBubble", words: "<(unsupported block)>" }
            ]);
        }
        function test_contentByType(row) {
            const index = append(row.values);
            compare(typeOf(content(index)), row.type);
            compare(words(index), row.words);
        }

        function test_widgetsKnowTheirRow_data() {
            return [{ tag: "list" }, { tag: "table" }, { tag: "options" }, { tag: "slider" }];
        }
        function test_widgetsKnowTheirRow(row) {
            append({});
            const index = appendBlock({ "type": row.tag, "title": "a" });
            compare(content(index).messageIndex, 1);
            compare(content(index).payload, { "type": row.tag, "title": "a" });
            compare(content(index).freeCorner, Qt.size(92, 32));
            compare(content(index).tr("a"), "<a>");
            verify(!content(index).lightChrome);
            omniTheme.uiLight = true;
            verify(content(index).lightChrome);
        }

        function test_structuredBubblesAreWider() {
            const plain = append({});
            const structured = appendBlock(slider);
            compare(part(plain, "messageBubble").width, 468); // 0.78 of 600
            compare(part(structured, "messageBubble").width, 528); // 0.88 of 600
            compare(content(structured).width, 528);
            compare(part(structured, "messageBubble").height, content(structured).implicitHeight + 18);
        }

        //! The bubbles are empty, but copying and feedback work.
        function test_codeAndCallouts_data() {
            return [{ tag: "code", component: "botCodeComponent" }, { tag: "callout", component: "botCalloutComponent" }];
        }
        function test_codeAndCallouts(row) {
            qmlWarnings.expect("ReferenceError: " + row.component + " is not defined");
            const index = appendBlock({ "type": row.tag, "content": "the block" });
            compare(content(index), null);
            compare(part(index, "messageBubble").width, 528);
            compare(part(index, "messageBubble").height, 48);
            waitForRendering(list);
            mouseClick(part(index, "copyBtn"));
            mouseClick(part(index, "thumbUpBtn"));
            compare(fakeBridge.takeCalls(), ["copyToClipboard(the block)", "sendMessageFeedback(up, 0, the block, )"]);
        }

        function test_choices() {
            const first = appendBlock(options);
            append({});
            const second = appendBlock(options);
            rowItem(second);
            waitForRendering(list);
            mouseClick(findChild(content(second), "caption").parent);
            compare(fakeBridge.takeCalls(), ["handleUiAction(option_selected, 2, a:A)"]);
            content(second).select(1);
            compare(fakeBridge.takeCalls(), ["handleUiAction(option_selected, 2, b:B)"]);

            // Far away, where the row is destroyed, and back.
            scrollAway(second);
            compare(content(second).selectedIndex, 1);
            compare(content(first).selectedIndex, -1);
            compare(fakeBridge.takeCalls(), []);
            // A later click sends again.
            content(second).select(1);
            compare(fakeBridge.takeCalls(), ["handleUiAction(option_selected, 2, b:B)"]);
            omniTheme.uiLight = true;
            compare(content(second).selectedIndex, 1);
        }

        function test_movedSlider() {
            const index = appendBlock(slider);
            part(index, "slider").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Up);
            compare(content(index).value, 42);
            compare(fakeBridge.takeCalls(), []);
            root.forceActiveFocus();
            scrollAway(index);
            compare(content(index).value, 42);
            omniTheme.uiLight = true;
            compare(content(index).value, 42);
            verify(!content(index).submitted);
        }

        function test_sliderIsSubmittedOnce() {
            const index = appendBlock(slider);
            waitForRendering(list);
            mouseClick(part(index, "confirmBtn"));
            compare(fakeBridge.takeCalls(), ["handleUiAction(slider_submitted, 0, 40:set)"]);
            scrollAway(index);
            verify(content(index).submitted);
            verify(!part(index, "confirmBtn").visible);
            verify(!part(index, "slider").enabled);
            content(index).submit();
            compare(fakeBridge.takeCalls(), []);
            compare(content(index).value, 40);
        }

        //! The button that had the focus is hidden.
        function test_confirmByKeyboardLeavesTheFocusToTheRow() {
            const index = appendBlock(slider);
            part(index, "confirmBtn").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return);
            compare(fakeBridge.takeCalls(), ["handleUiAction(slider_submitted, 0, 40:set)"]);
            verify(rowItem(index).activeFocus);
        }

        function test_onlyTheCurrentRowIsInTheTabOrder() {
            conversation.appendStructuredBlocks([options, slider], "reply");
            const inOrder = (index, name) => {
                const item = part(index, name);
                return (name === "caption" ? item.parent : item).activeFocusOnTab;
            };
            const check = current => {
                compare([inOrder(0, "caption"), inOrder(0, "copyBtn"), inOrder(0, "thumbUpBtn"), inOrder(1, "slider"),
                         inOrder(1, "confirmBtn"), inOrder(1, "copyBtn")],
                        [0, 0, 0, 1, 1, 1].map(index => index === current));
            };
            // Also rows that have never been the current one.
            check(-1);
            list.currentIndex = 1;
            check(1);
            list.currentIndex = 0;
            check(0);
        }
    }
}
