// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../components/logic/Translatable.js" as Translatable

//! Offers to undo the last plan, for some seconds.
Rectangle {
    id: undoBar
    objectName: "undoBar"

    required property var bar
    required property var theme

    implicitHeight: 36
    height: implicitHeight
    radius: 8
    color: theme.uiUndoBarBg
    border.width: 1
    border.color: theme.uiUndoBarBorder
    Accessible.role: Accessible.Grouping
    Accessible.name: message.text

    PlainText {
        id: message

        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.right: undo.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        text: undoBar.bar.tr("Action applied successfully.")
        color: undoBar.theme.uiTextMed
        font.pointSize: 10
        maximumLineCount: 1
    }

    PlanButton {
        id: undo
        objectName: "undoBtn"

        anchors.right: dismiss.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        // A longer text of another language needs more.
        implicitWidth: Math.max(64, contentItem.implicitWidth + 8)
        implicitHeight: 26
        theme: undoBar.theme
        label: Translatable.filled(undoBar.bar.tr("Undo {seconds}s"), { "seconds": undoBar.bar.undoSecondsLeft })
        onClicked: undoBar.bar.undoLastAction()
    }

    RoundButton {
        id: dismiss
        objectName: "undoDismissBtn"

        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: 22
        label: undoBar.bar.tr("Dismiss")
        glyph: "\u2715"
        glyphSize: 11
        iconColor: undoBar.theme.uiTextSoft
        hoverFill: undoBar.theme.uiWellFillHi
        ring: undoBar.theme.focusRing
        onClicked: undoBar.bar.dismissUndo()
    }

    Rectangle {
        id: strip
        objectName: "undoStrip"

        readonly property real part: undoBar.bar.undoSecondsLeft / undoBar.bar.undoSeconds
        //! The part that is drawn, which follows in a movement while it shrinks. It is full at once.
        property real drawnPart: 1
        property bool shrinks: false

        onPartChanged: {
            shrinks = part < drawnPart;
            drawnPart = part;
        }

        // Inside the round corners.
        anchors.left: parent.left
        anchors.leftMargin: undoBar.radius
        anchors.bottom: parent.bottom
        width: (undoBar.width - 2 * undoBar.radius) * drawnPart
        height: 2
        radius: 1
        color: Qt.rgba(0.9, 0.5, 0.2, 0.7)

        Behavior on drawnPart {
            enabled: strip.shrinks
            NumberAnimation {
                duration: 900
            }
        }
    }
}
