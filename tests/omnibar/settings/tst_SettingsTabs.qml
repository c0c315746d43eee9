// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar"
import "qrc:/org/kde/loomra/contents/ui/omnibar/settings"
import "../controllers"

Item {
    id: root

    property string lastTitle: "Last"

    width: 600
    height: 400

    CallRecorder {
        id: recorder
    }

    OmniBarTheme {
        id: omniTheme
    }

    Component {
        id: factory

        SettingsTabs {
            id: view

            readonly property list<SettingsTab> threeTabs: [
                SettingsTab {
                    objectName: "first"; title: "First"; file: Qt.resolvedUrl("StandInPage.qml")
                    onEntered: recorder.note("enter", ["first"])
                    onLeft: recorder.note("leave", ["first"])
                },
                SettingsTab {
                    objectName: "tall"; title: "Tall"; file: Qt.resolvedUrl("StandInPage.qml")
                    onEntered: recorder.note("enter", ["tall"])
                    onLeft: recorder.note("leave", ["tall"])
                },
                SettingsTab {
                    objectName: "last"; title: root.lastTitle; file: Qt.resolvedUrl("StandInPage.qml")
                    onEntered: recorder.note("enter", ["last"])
                    onLeft: recorder.note("leave", ["last"])
                }
            ]

            width: 600
            bar: recorder
            theme: omniTheme
            tabs: threeTabs
            open: true
            name: "Settings"
        }
    }

    TestCase {
        name: "SettingsTabs"
        when: windowShown

        property Item view

        function init() {
            recorder.calls = [];
            root.lastTitle = "Last";
            view = createTemporaryObject(factory, root);
            verify(view);
        }
        function button(index) {
            return findChild(view, "settingsTabs").itemAt(index);
        }
        function page(name) {
            return findChild(view, "page of " + name);
        }

        function test_firstTabIsOpenAtTheStart() {
            compare(view.currentIndex, 0);
            compare(recorder.calls, ["create(first)", "enter(first)", "page(first)"]);
            verify(page("first").visible);
            verify(!page("tall"));
        }

        function test_enteringAndLeaving() {
            recorder.calls = [];
            mouseClick(button(1));
            compare(recorder.calls, ["leave(first)", "create(tall)", "enter(tall)", "page(tall)"]);
            verify(page("tall").visible);
            tryVerify(() => !page("first"));
            recorder.calls = [];
            mouseClick(button(1));
            compare(recorder.calls, []);
            mouseClick(button(0));
            compare(recorder.calls, ["leave(tall)", "create(first)", "enter(first)", "page(first)"]);
        }

        function test_tabMaySwitchToAnother_data() {
            return [{ tag: "when it is entered", signalName: "entered", of: 1 }, { tag: "when it is left", signalName: "left", of: 0 }];
        }
        function test_tabMaySwitchToAnother(data) {
            const switching = () => { view.currentIndex = 2; };
            view.tabs[data.of][data.signalName].connect(switching);
            view.currentIndex = 1;
            compare(view.currentIndex, 2);
            compare([view.tabs[0].current, view.tabs[1].current, view.tabs[2].current], [false, false, true]);
            verify(page("last").visible);
        }

        function test_closedSheetHasNoPage() {
            view.currentIndex = 1;
            recorder.calls = [];
            view.open = false;
            tryVerify(() => !page("tall"));
            compare(view.currentIndex, 1);
            view.open = true;
            verify(page("tall").visible);
            // The tab was the current one all the time.
            compare(recorder.calls, ["create(tall)"]);
        }

        function test_heightIsThatOfTheCurrentPage() {
            const pages = findChild(view, "settingsPages");
            compare(pages.implicitHeight, 220);
            view.currentIndex = 1;
            compare(pages.implicitHeight, 500);
            view.currentIndex = 2;
            compare(pages.implicitHeight, 220);
        }

        function test_newTitleChangesNothingElse() {
            const last = button(2);
            mouseClick(last);
            last.forceActiveFocus(Qt.TabFocusReason);
            recorder.calls = [];
            root.lastTitle = "Last ●";
            compare(button(2), last);
            compare(last.contentItem.text, "Last ●");
            compare(last.Accessible.name, "Last ●");
            verify(last.activeFocus);
            compare(view.currentIndex, 2);
            root.lastTitle = "Last";
            compare(last.contentItem.text, "Last");
            compare(recorder.calls, []);
        }

        function test_nothingMovesAfterASwitch() {
            const list = findChild(view, "settingsTabs").contentItem;
            view.currentIndex = 2;
            verify(list.currentItem.x > 300);
            tryCompare(list.highlightItem, "x", list.currentItem.x, 200);
        }

        function test_arrowKeys() {
            button(0).forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right);
            compare(view.currentIndex, 1);
            verify(button(1).activeFocus);
            verify(button(1).visualFocus);
            verify(!button(0).visualFocus);
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Right);
            compare(view.currentIndex, 2);
            keyClick(Qt.Key_Left);
            compare(view.currentIndex, 1);
            verify(button(1).activeFocus);
        }
    }
}
