// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../logic/DashboardText.js" as DashboardText

//! The number of errors and warnings, their trend, and the time of the last error.
Item {
    id: counts
    objectName: "logCounts"

    required property var bar
    required property var theme

    implicitHeight: row.height

    Row {
        id: row

        anchors.left: parent.left
        spacing: 18

        PlainText {
            objectName: "errorCount"

            text: DashboardText.counted(counts.bar.tr("{count} errors"), counts.bar.dashErrorTotal) + " " + DashboardText.arrow(counts.bar.dashErrorDir)
            color: counts.bar.dashErrorTotal > 0 ? counts.theme.dangerText : counts.theme.uiTextMed
            font.pointSize: 10
        }

        PlainText {
            objectName: "warningCount"

            text: DashboardText.counted(counts.bar.tr("{count} warnings"), counts.bar.dashWarnTotal) + " " + DashboardText.arrow(counts.bar.dashWarnDir)
            color: counts.bar.dashWarnTotal > 0 ? counts.theme.warningText : counts.theme.uiTextMed
            font.pointSize: 10
        }
    }

    PlainText {
        objectName: "lastError"

        anchors.left: row.right
        anchors.leftMargin: 18
        anchors.right: parent.right
        anchors.verticalCenter: row.verticalCenter
        horizontalAlignment: Text.AlignRight
        visible: text !== ""
        text: DashboardText.lastError(counts.bar.appLastErrorTs, counts.bar.dashNow, counts.bar.tr)
        color: counts.theme.uiTextCaption
        font.pointSize: 9
    }
}
