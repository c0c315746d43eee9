// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../components/logic/LiteralText.js" as LiteralText
import "../../../../components/logic/Translatable.js" as Translatable

//! The files that go with the next prompt: a chip each. They fit into the gap between the bar and the panel above it,
//! including that panel's margin, so they cover no content.
Row {
    id: files
    objectName: "attachedFiles"

    required property var bar

    spacing: 6
    visible: bar.slashAttachedFiles.length > 0
    Accessible.role: Accessible.List
    Accessible.name: bar.tr("Attached files")

    Repeater {
        model: files.bar.slashAttachedFiles

        Rectangle {
            id: chip
            objectName: "fileChip"

            required property int index
            required property var modelData
            readonly property string name: LiteralText.oneLine(modelData.name)
            readonly property bool hovered: pointer.hovered

            width: 26 + label.width + 22
            height: 20
            radius: 10
            color: "#3a1d4d"
            border.width: 1
            border.color: Qt.rgba(1, 0.7, 0.5, 0.35)
            Accessible.role: Accessible.ListItem
            Accessible.name: name

            ClickBarrier {}

            HoverHandler {
                id: pointer
            }

            FallbackIcon {
                anchors.left: parent.left
                anchors.leftMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                name: "mail-attachment"
                size: 12
                color: Qt.rgba(1, 1, 1, 0.75)
            }

            PlainText {
                id: label

                anchors.left: parent.left
                anchors.leftMargin: 26
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, 180)
                text: chip.name
                elide: Text.ElideMiddle
                color: Qt.rgba(1, 1, 1, 0.90)
                font.pixelSize: 11
                horizontalAlignment: Text.AlignLeft
                Accessible.ignored: true
            }

            RoundButton {
                objectName: "removeFileBtn"

                anchors.right: parent.right
                anchors.rightMargin: 2
                anchors.verticalCenter: parent.verticalCenter
                implicitWidth: 16
                label: Translatable.filled(files.bar.tr("Remove {name}"), { "name": chip.name })
                tipShown: false
                glyph: "\u2715"
                glyphSize: 9
                iconColor: Qt.rgba(1, 1, 1, 0.85)
                hoverFill: Qt.rgba(0.95, 0.2, 0.2, 0.45)
                onClicked: {
                    // Before the list is made anew, without this button.
                    files.bar.inputField.forceActiveFocus();
                    files.bar.removeAttachedFile(chip.index);
                }
                Keys.onDeletePressed: clicked()
            }

            HoverTip {
                control: chip
                text: LiteralText.oneLine(chip.modelData.path)
            }
        }
    }
}
