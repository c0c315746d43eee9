// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../../voice/sttSentenceScoring.js" as Scoring
import "../../common"
import "../../../../../components/logic/ListSync.js" as ListSync
import "../../../../../components/logic/LiteralText.js" as LiteralText
import "../../../../../components/logic/Translatable.js" as Translatable
import "../../logic/VoiceTabText.js" as VoiceTabText
import "../common"

//! The submitted sentences with their scores.
SettingsList {
    id: list
    objectName: "testResultList"

    required property var bar
    //! See VoiceTestPanel.
    required property var results
    property var listedRows: []

    visible: count > 0
    name: bar.tr("Test results")
    scrollBarName: bar.tr("Scroll test results")
    count: rowModel.count
    rowHeight: 28
    rowSpacing: 0
    // Enough for all sentences, so that nothing scrolls within the sheet.
    maximumHeight: 10 * rowHeight + 2 * framePadding
    model: rowModel
    onResultsChanged: {
        const rows = VoiceTabText.resultRows(results);
        ListSync.update(rowModel, listedRows, rows, "rid");
        listedRows = rows;
    }

    delegate: Item {
        id: row
        objectName: "testResultRow"

        required property int index
        required property string rid
        required property string rhypothesis
        required property real raccuracy
        required property int rlatency
        readonly property bool visualFocus: activeFocus
        readonly property color tone: Scoring.isGood(raccuracy) ? list.theme.positiveText : list.theme.warningText

        x: list.rowX
        width: list.rowWidth
        height: list.rowHeight
        activeFocusOnTab: ListView.isCurrentItem || activeFocus
        Accessible.role: Accessible.ListItem
        Accessible.name: [rid, percentage.text, latency.text, heard.text].join(", ")

        PlainText {
            id: idText

            anchors.left: parent.left
            anchors.leftMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            width: 36
            horizontalAlignment: Text.AlignLeft
            text: row.rid
            color: row.tone
            font.family: "monospace"
            font.pointSize: 9
            Accessible.ignored: true
        }

        ShortText {
            id: heard
            objectName: "testResultText"

            anchors.left: idText.right
            anchors.leftMargin: 8
            anchors.right: latency.left
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            whole: row.rhypothesis
            text: LiteralText.oneLine(whole)
            color: row.tone
            font.pointSize: 9
            tipWanted: row.activeFocus
            Accessible.ignored: true
        }

        PlainText {
            id: latency

            anchors.right: percentage.left
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            text: Translatable.filled(list.bar.tr("{count} ms"), { "count": row.rlatency })
            color: list.theme.uiTextSoft
            font.pointSize: 9
            Accessible.ignored: true
        }

        PlainText {
            id: percentage
            objectName: "testResultPercentage"

            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            width: 40
            horizontalAlignment: Text.AlignRight
            text: Scoring.formatPercent(row.raccuracy)
            color: row.tone
            font.pointSize: 9
            font.bold: true
            Accessible.ignored: true
        }

        FocusRing {
            control: row
            anchors.margins: 0
            radius: 6
            border.color: list.theme.focusRing
        }
    }

    ListModel {
        id: rowModel
    }
}
