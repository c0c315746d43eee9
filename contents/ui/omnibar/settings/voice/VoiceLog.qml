// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../common"
import "../../../../../components/logic/ListSync.js" as ListSync
import "../../../../../components/logic/LiteralText.js" as LiteralText
import "../../../../../components/logic/Native.js" as Native
import "../../logic/VoiceTabText.js" as VoiceTabText
import "../common"

//! The log of the voice path, newest first, one line each.
Column {
    id: view

    required property var bar
    required property var theme

    readonly property var lines: bar.voice ? bar.voice.voiceLog : []
    property var listedRows: []
    // For the list, which is dark in both themes: yellow would be unreadable on a light one.
    readonly property color fill: Qt.rgba(0.05, 0.04, 0.08, 0.92)
    readonly property color ringColor: "#c084fc"
    readonly property var colors: ({
        "error": "#ef4444",
        "corrected": "#FFD700",
        "transcript": "#4ade80",
        "other": Qt.rgba(1, 1, 1, 0.75)
    })

    function list() {
        const rows = VoiceTabText.logRows(lines);
        ListSync.update(rowModel, listedRows, rows, "line");
        listedRows = rows;
    }

    spacing: 8
    onLinesChanged: list()

    ListModel {
        id: rowModel
    }

    SettingsList {
        id: frame
        objectName: "voiceLogList"

        color: view.fill
        thumbColor: Qt.rgba(1, 1, 1, 0.3)
        theme: view.theme
        name: view.bar.tr("Voice events")
        scrollBarName: view.bar.tr("Scroll voice events")
        count: rowModel.count
        rowHeight: 16
        rowSpacing: 0
        framePadding: 6
        minimumHeight: count === 0 ? 60 : 0
        maximumHeight: 200
        model: rowModel

        delegate: Item {
            id: row
            objectName: "voiceLogRow"

            required property int index
            required property string line
            readonly property bool visualFocus: activeFocus

            x: frame.rowX
            width: frame.rowWidth
            height: frame.rowHeight
            activeFocusOnTab: ListView.isCurrentItem || activeFocus
            Accessible.role: Accessible.ListItem
            Accessible.name: LiteralText.oneLine(line, 600)

            ShortText {
                objectName: "voiceLogLine"

                anchors.left: parent.left
                anchors.leftMargin: 6
                anchors.right: parent.right
                anchors.rightMargin: 6
                anchors.verticalCenter: parent.verticalCenter
                whole: row.line
                text: LiteralText.oneLine(row.line, 400)
                color: view.colors[VoiceTabText.lineKind(row.line)]
                font.family: "monospace"
                font.pointSize: 7.5
                tipWanted: row.activeFocus
                Accessible.ignored: true
            }

            FocusRing {
                control: row
                anchors.margins: 0
                radius: 4
                border.color: view.ringColor
            }
        }

        PlainText {
            objectName: "noVoiceEvents"

            anchors.fill: parent
            anchors.margins: 10
            visible: frame.count === 0
            text: view.bar.tr("No voice events yet. Start speaking to see logs here.")
            color: view.colors.other
            font.pointSize: 9
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            wrapMode: Text.Wrap
        }
    }

    SettingsButton {
        objectName: "clearVoiceLogBtn"

        anchors.left: parent.left
        theme: view.theme
        label: view.bar.tr("Clear log")
        onClicked: Native.call(view.bar.voice, "clearVoiceLog")
    }
}
