// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "BlockContent.js" as BlockContent

//! A list with an optional title.
BlockWidget {
    id: list

    //! The row in the chat list, -1 outside of it.
    property int messageIndex: -1

    readonly property string title: BlockContent.textField(BlockContent.objectOf(payload).title)
    readonly property var entries: BlockContent.listEntries(payload, tr)
    readonly property int hiddenEntries: BlockContent.hiddenCount(BlockContent.objectOf(payload).items, entries.length)
    readonly property color dotColor: lightChrome ? Qt.rgba(0.45, 0.22, 0.65, 0.85) : Qt.rgba(0.75, 0.55, 1.0, 0.90)

    spacing: 6
    Accessible.role: Accessible.List
    Accessible.name: title || tr("List")

    BlockText {
        objectName: "title"

        width: parent.width
        visible: text !== ""
        text: list.title
        color: list.textColor
        font.pointSize: 13
        font.bold: true
        maximumLineCount: BlockContent.maxTextLines
        freeCorner: Qt.size(list.freeWidth, list.freeHeight)
        // It is the name of the list.
        Accessible.ignored: true
    }

    Repeater {
        model: list.entries

        BlockText {
            id: entry
            objectName: "entry"

            required property int index
            required property string modelData

            readonly property bool rightToLeft: horizontalAlignment === Text.AlignRight

            width: parent.width
            leftPadding: rightToLeft ? 0 : 16
            rightPadding: rightToLeft ? 16 : 0
            text: modelData
            color: list.textColor
            font.pointSize: 11.5
            maximumLineCount: BlockContent.maxTextLines
            freeCorner: index === 0 && list.title === "" ? Qt.size(list.freeWidth, list.freeHeight) : Qt.size(0, 0)
            Accessible.role: Accessible.ListItem

            Rectangle {
                objectName: "dot"

                readonly property real indent: 2 + (entry.rightToLeft === entry.mirrored ? 0 : entry.freeCorner.width)

                x: entry.rightToLeft ? entry.width - indent - width : indent
                y: Math.round((metrics.height - height) / 2)
                width: 6
                height: 6
                radius: 3
                color: list.dotColor
            }
        }
    }

    BlockText {
        objectName: "nothing"

        width: parent.width
        visible: list.title === "" && list.entries.length === 0
        text: list.tr("(empty)")
        color: list.mutedColor
        font.pointSize: 11.5
    }

    FontMetrics {
        id: metrics
        font.pointSize: 11.5
    }

    BlockText {
        objectName: "footer"

        width: parent.width
        visible: list.hiddenEntries > 0
        text: Translation.trn("... {count} more entry", "... {count} more entries", list.hiddenEntries).replace("{count}", list.hiddenEntries)
        color: list.mutedColor
        font.pointSize: 11
    }
}
