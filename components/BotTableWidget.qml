// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "BlockContent.js" as BlockContent
import "MarkdownRenderer.js" as MarkdownRenderer

//! A table with columns of equal width. Only the first rows are drawn, so that a large table costs little.
BlockWidget {
    id: table

    //! The row in the chat list, -1 outside of it.
    property int messageIndex: -1

    readonly property var columns: BlockContent.tableColumns(payload)
    readonly property var rows: BlockContent.tableRows(payload, columns.length)
    readonly property int hiddenRows: BlockContent.hiddenCount(BlockContent.objectOf(payload).rows, rows.length)
    readonly property int hiddenColumns: BlockContent.hiddenCount(BlockContent.objectOf(payload).columns, columns.length)
    readonly property real columnWidth: columns.length > 0 ? (width - 2 * margin) / columns.length : 0

    readonly property color headerColor: lightChrome ? Qt.rgba(0, 0, 0, 0.06) : Qt.rgba(1, 1, 1, 0.08)
    readonly property color evenColumnColor: lightChrome ? Qt.rgba(0, 0, 0, 0.02) : Qt.rgba(1, 1, 1, 0.03)

    Accessible.role: Accessible.Table
    Accessible.name: tr("Table")

    //! The height of the free corner: columns have no room beside it.
    Item {
        width: parent.width
        height: table.columns.length > 0 ? table.freeHeight : 0
        visible: height > 0
    }

    BlockText {
        objectName: "noColumns"

        width: parent.width
        visible: table.columns.length === 0
        text: table.tr("(table: no columns)")
        color: table.mutedColor
        font.pointSize: 11
        freeCorner: Qt.size(table.freeWidth, table.freeHeight)
    }

    Item {
        objectName: "grid"

        width: parent.width
        height: body.height
        visible: table.columns.length > 0

        Repeater {
            model: table.columns.length

            // The fill of a column, and the line on its right.
            Item {
                objectName: "column"

                required property int index

                anchors.left: parent.left
                anchors.leftMargin: index * table.columnWidth
                width: table.columnWidth
                height: parent.height

                Rectangle {
                    objectName: "columnFill"

                    y: header.height
                    width: parent.width
                    height: parent.height - y
                    visible: parent.index % 2 === 0
                    color: table.evenColumnColor
                }

                Rectangle {
                    objectName: "columnLine"

                    anchors.right: parent.right
                    width: 1
                    height: parent.height
                    visible: parent.index < table.columns.length - 1
                    color: table.lineColor
                }
            }
        }

        Column {
            id: body

            width: parent.width

            Rectangle {
                id: header
                objectName: "header"

                width: parent.width
                height: headerCells.height
                color: table.headerColor
                Accessible.role: Accessible.Row
                Accessible.name: table.columns.filter(name => name !== "").join(", ")

                Row {
                    id: headerCells

                    anchors.left: parent.left

                    Repeater {
                        model: table.columns

                        TableCell {
                            objectName: "headerCell"

                            width: table.columnWidth
                            color: table.textColor
                            font.bold: true
                        }
                    }
                }
            }

            Repeater {
                model: table.rows.length

                Item {
                    id: tableRow
                    objectName: "tableRow"

                    required property int index
                    readonly property var cells: table.rows[index]

                    width: parent.width
                    height: rowCells.height
                    Accessible.role: Accessible.Row
                    Accessible.name: BlockContent.spokenRow(table.columns, cells)

                    Rectangle {
                        objectName: "rowLine"

                        width: parent.width
                        height: 1
                        color: table.lineColor
                    }

                    Row {
                        id: rowCells

                        anchors.left: parent.left

                        Repeater {
                            model: tableRow.cells

                            TableCell {
                                objectName: "cell"

                                width: table.columnWidth
                                color: MarkdownRenderer.percentColor(text) || table.textColor
                            }
                        }
                    }
                }
            }
        }

        Rectangle {
            objectName: "frame"

            anchors.fill: parent
            color: "transparent"
            border.width: 1
            border.color: table.lineColor
        }
    }

    BlockText {
        objectName: "footer"

        width: parent.width
        topPadding: 6
        visible: table.columns.length > 0 && table.hiddenRows > 0
        // Intentional: English has one form.
        text: Translation.trn("... {count} more rows", "... {count} more rows", table.hiddenRows).replace("{count}", table.hiddenRows)
        color: table.mutedColor
        font.pointSize: 11
    }

    BlockText {
        objectName: "columnFooter"

        width: parent.width
        topPadding: 6
        visible: table.hiddenColumns > 0
        text: Translation.trn("... {count} more column", "... {count} more columns", table.hiddenColumns).replace("{count}", table.hiddenColumns)
        color: table.mutedColor
        font.pointSize: 11
    }
}
