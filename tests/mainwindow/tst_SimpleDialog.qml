// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import QtTest 1.15

import org.kde.loomra 1.0
import org.kde.loomra.components.controls 1.0

Item {
    id: root
    width: 800
    height: 600

    QQC2.Button {
        id: behind
        y: 560
        text: "behind"
        onClicked: test.clicksBehind += 1
    }

    SimpleDialog {
        id: dialog
        title: "A <b>title</b>"
        onClosed: test.closings += 1

        QQC2.TextField {
            id: first
        }
        QQC2.TextField {
            id: second
        }
        PlainText {
            id: wrapped
            Layout.fillWidth: true
            visible: text !== ""
            wrapMode: Text.Wrap
        }
        buttons: QQC2.Button {
            id: button
            text: "OK"
        }
    }

    SimpleDialog {
        id: tall

        Rectangle {
            implicitWidth: 2000
            implicitHeight: 2000
        }
        buttons: QQC2.Button {
            id: tallButton
            text: "OK"
        }
    }

    TestCase {
        id: test
        name: "SimpleDialog"
        when: windowShown

        property int closings: 0
        property int clicksBehind: 0

        function child(name) { return findChild(dialog, name); }

        function init() {
            closings = 0;
            clicksBehind = 0;
            behind.forceActiveFocus();
            dialog.open();
        }

        function cleanup() {
            dialog.close();
            tall.close();
        }

        function test_itIsClosedAtFirst() {
            dialog.close();
            verify(!dialog.visible);
            closings = 0;
            dialog.close();
            compare(closings, 0);
        }

        function test_look() {
            compare(dialog.z, 1000);
            compare(Qt.colorEqual(child("dialogShade").color, Qt.rgba(0, 0, 0, 0.5)), true);
            compare([child("dialogShade").width, child("dialogShade").height], [800, 600]);
            const box = child("dialogBox");
            compare(box.width, 500);
            compare([box.x + box.width / 2, Math.round(box.y + box.height / 2)], [400, 300]);
            root.width = 400;
            compare(box.width, 360);
            root.width = 800;
            compare(child("dialogTitle").text, "A <b>title</b>");
            compare(child("dialogTitle").textFormat, Text.PlainText);
        }

        function test_closing_data() {
            return [
                { tag: "a click outside", act: () => mouseClick(root, 20, 20), closes: true },
                { tag: "a click on the button behind", act: () => mouseClick(behind), closes: true },
                { tag: "a click in the box", act: () => mouseClick(child("dialogBox"), 5, 5), closes: false },
                { tag: "Escape", act: () => keyClick(Qt.Key_Escape), closes: true }
            ];
        }

        function test_closing(data) {
            data.act();
            compare(dialog.visible, !data.closes);
            compare(closings, data.closes ? 1 : 0);
            compare(clicksBehind, 0);
            if (data.closes)
                verify(behind.activeFocus);
        }

        function test_tabStaysInside() {
            verify(first.activeFocus);
            for (const item of [second, button, first]) {
                keyClick(Qt.Key_Tab);
                tryVerify(() => item.activeFocus);
            }
            for (const item of [button, second, first, button]) {
                keyClick(Qt.Key_Tab, Qt.ShiftModifier);
                tryVerify(() => item.activeFocus);
            }
        }

        //! A message that appears later. A binding loop would fail the test.
        function test_theBoxGrowsWithItsContent() {
            const before = child("dialogBox").height;
            wrapped.text = "a long text ".repeat(20);
            tryVerify(() => child("dialogBox").height > before + wrapped.font.pixelSize);
            wrapped.text = "";
            tryCompare(child("dialogBox"), "height", before);
        }

        function test_aTallDialogScrolls() {
            dialog.close();
            tall.open();
            const box = findChild(tall, "dialogBox");
            compare(box.height, 540);
            const place = tallButton.mapToItem(root, 0, 0);
            verify(place.y + tallButton.height < 570 && place.y > 450);
            verify(tallButton.activeFocus);
            const bar = findChild(tall, "paneScrollBar");
            verify(bar.visible);
            verify(bar.mapToItem(root, 0, 0).x >= place.x + tallButton.width);
        }
    }
}
