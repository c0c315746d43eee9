// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import org.kde.loomra.components.controls 1.0

Item {
    id: root

    width: 300
    height: 200

    PlainButton {
        id: outside
        label: "outside"
    }

    //! 20 buttons, then a list with 20 buttons, then one button.
    ScrollPane {
        id: pane

        y: 40
        width: 300
        height: 120
        contentHeight: column.height
        thumbColor: "grey"
        scrollBarName: "Scroll"

        Column {
            id: column

            Repeater {
                id: buttons

                model: 20

                PlainButton {
                    required property int index

                    objectName: "button" + index
                    width: 200
                    height: 30
                    focusPolicy: Qt.StrongFocus
                }
            }

            ListView {
                id: list

                width: 200
                height: 60
                clip: true
                model: 20
                cacheBuffer: 1000
                delegate: PlainButton {
                    required property int index

                    objectName: "entry" + index
                    width: 200
                    height: 30
                    activeFocusOnTab: true
                }
            }

            PlainButton {
                objectName: "last"
                width: 200
                height: 30
            }
        }
    }

    TestCase {
        id: test
        name: "ScrollPane"
        when: windowShown

        function init() {
            outside.forceActiveFocus();
            pane.contentY = 0;
            list.contentY = 0;
        }

        function isWithin(item, view) {
            const top = item.mapToItem(view, 0, 0).y;
            return top >= 0 && top + item.height <= view.height;
        }

        function test_everyControlIsVisibleWhenTabReachesIt() {
            for (let i = 0; i < 20; ++i) {
                keyClick(Qt.Key_Tab);
                const button = findChild(pane, "button" + i);
                verify(button.activeFocus, "button" + i);
                tryVerify(() => isWithin(button, pane), 5000, "button" + i);
            }
            for (let i = 19; i > 0; --i) {
                keyClick(Qt.Key_Backtab);
                const button = findChild(pane, "button" + (i - 1));
                verify(button.activeFocus);
                tryVerify(() => isWithin(button, pane), 5000, "back to button" + (i - 1));
            }
            tryCompare(pane, "contentY", 0);
        }

        function test_listsInsideScrollToo() {
            ["entry7", "entry19", "entry0"].forEach(name => {
                const entry = findChild(list, name);
                entry.forceActiveFocus(Qt.TabFocusReason);
                tryVerify(() => isWithin(entry, list) && isWithin(entry, pane), 5000, name);
            });
            verify(pane.contentY > 400);
            findChild(pane, "last").forceActiveFocus(Qt.TabFocusReason);
            tryCompare(pane, "contentY", pane.contentHeight - pane.height);
        }

        function test_clickedControlStaysWhereItIs() {
            const button = findChild(pane, "button3");
            verify(!isWithin(button, pane) || button.mapToItem(pane, 0, 0).y + 30 > pane.height - pane.revealMargin);
            mouseClick(button, 10, 2);
            verify(button.activeFocus);
            waitForRendering(root);
            compare(pane.contentY, 0);
        }

        function test_focusOutsideScrollsNothing() {
            findChild(pane, "button19").forceActiveFocus(Qt.TabFocusReason);
            tryVerify(() => pane.contentY > 0);
            const position = pane.contentY;
            outside.forceActiveFocus(Qt.TabFocusReason);
            waitForRendering(root);
            compare(pane.contentY, position);
        }

        function test_focusStaysInViewWhenThePaneGetsLower() {
            const button = findChild(pane, "button3");
            button.forceActiveFocus(Qt.TabFocusReason);
            tryVerify(() => isWithin(button, pane));
            pane.height = 60;
            tryVerify(() => isWithin(button, pane));
            pane.height = 120;
        }

        function test_contentThatFitsIsNotClipped() {
            verify(pane.clip);
            pane.height = 2000;
            verify(!pane.clip);
            verify(!pane.interactive);
            pane.height = 120;
        }
    }
}
