// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../../components/logic/Translatable.js" as Translatable

//! How many sentences of the voice test were submitted.
Column {
    id: progress

    required property var bar
    required property var theme
    required property int submitted
    required property int total

    readonly property real share: total > 0 ? submitted / total : 0

    spacing: 4

    Item {
        width: parent.width
        height: count.implicitHeight

        PlainText {
            id: count
            objectName: "submittedCount"

            anchors.left: parent.left
            anchors.right: remaining.left
            anchors.rightMargin: 8
            text: Translatable.filled(progress.bar.tr("{count} of {total} submitted"), { "count": progress.submitted, "total": progress.total })
            color: progress.theme.uiTextMed
            font.pointSize: 9
        }

        PlainText {
            id: remaining
            objectName: "remainingCount"

            anchors.right: parent.right
            text: Translatable.filled(progress.bar.tr("{count} remaining"), { "count": progress.total - progress.submitted })
            color: progress.theme.uiTextSoft
            font.pointSize: 9
        }
    }

    Rectangle {
        objectName: "submittedBar"

        // Assistive technology reads the value and its range from these names.
        readonly property real value: progress.submitted
        readonly property real minimumValue: 0
        readonly property real maximumValue: progress.total

        width: parent.width
        height: 6
        radius: 3
        color: progress.theme.uiWellFillHi
        Accessible.role: Accessible.ProgressBar
        Accessible.name: count.text

        Rectangle {
            objectName: "submittedShare"

            anchors.left: parent.left
            width: progress.share * parent.width
            height: parent.height
            radius: 3
            color: progress.theme.progressFill
        }
    }
}
