// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! The buttons of a reply: copy and two thumbs.
Row {
    id: actions

    required property var bar
    required property var theme
    required property int rowIndex
    //! "", "up" or "down".
    required property string vote
    //! Whether the buttons are in the tab order, which only those of the current row are.
    required property bool reachable

    spacing: 2

    RoundButton {
        objectName: "copyBtn"

        readonly property bool copied: copiedTimer.running

        implicitWidth: 24
        radius: 4
        focusPolicy: actions.reachable ? Qt.TabFocus : Qt.NoFocus
        label: copied ? actions.bar.tr("Copied") : actions.bar.tr("Copy")
        iconName: copied ? "checkmark" : "edit-copy"
        iconFallback: copied ? "dialog-ok" : ""
        iconSize: 14
        iconColor: copied ? "#4ade80" : actions.theme.uiIconMuted
        hoverFill: actions.theme.uiWellFillHi
        ring: actions.theme.focusRing
        onClicked: {
            if (actions.bar.copyMessage(actions.rowIndex))
                copiedTimer.restart();
        }

        Timer {
            id: copiedTimer
            objectName: "copiedTimer"
            interval: 1500
        }
    }

    ThumbButton {
        objectName: "thumbUpBtn"
        theme: actions.theme
        focusPolicy: actions.reachable ? Qt.TabFocus : Qt.NoFocus
        label: actions.bar.tr("Good reply")
        active: actions.vote === "up"
        activeColor: "#4ade80"
        activeFill: Qt.rgba(0.29, 0.85, 0.50, 0.18)
        onClicked: actions.bar.voteMessage(actions.rowIndex, "up")
    }

    ThumbButton {
        objectName: "thumbDownBtn"
        theme: actions.theme
        focusPolicy: actions.reachable ? Qt.TabFocus : Qt.NoFocus
        label: actions.bar.tr("Bad reply")
        pointsDown: true
        active: actions.vote === "down"
        activeColor: "#ef4444"
        activeFill: Qt.rgba(0.90, 0.22, 0.21, 0.18)
        onClicked: actions.bar.voteMessage(actions.rowIndex, "down")
    }
}
