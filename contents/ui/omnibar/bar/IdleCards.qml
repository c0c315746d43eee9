// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra 1.0
import org.kde.loomra.components.controls 1.0

//! Four example prompts below the idle bar.
Row {
    id: cards
    objectName: "idleCards"

    required property var bar

    readonly property var prompts: [
        { "label": bar.tr("List KDE &\nSystem Actions"), "icon": "view-list-details", "prompt": "What kde and system actions can you help me with?" },
        { "label": bar.tr("System\nStatus"), "icon": "system-run", "prompt": "Show my current system status" },
        { "label": bar.tr("Set\nReminder"), "icon": "appointment-new", "prompt": "What reminder actions can you help me with?" },
        { "label": bar.tr("Open\nWindows"), "icon": "window-list", "prompt": "List my open windows" }
    ]

    spacing: 12
    visible: bar.barIdle && !bar.compactMode && !bar.voiceConfirmPending && opacity > 0
    opacity: bar.inputField.text === "" ? 1 : 0
    enabled: opacity === 1
    Accessible.role: Accessible.Grouping
    Accessible.name: bar.tr("Prompts to begin with")

    Behavior on opacity {
        NumberAnimation {
            duration: 200
        }
    }

    Repeater {
        model: cards.prompts

        PlainButton {
            id: card

            required property var modelData

            width: (cards.width - 3 * cards.spacing) / 4
            height: 100
            scale: hovered ? 1.03 : 1.0
            label: modelData.label
            Accessible.name: label.replace("\n", " ")
            onClicked: {
                cards.bar.inputField.text = modelData.prompt;
                cards.bar.inputField.accepted();
            }

            Behavior on scale {
                NumberAnimation {
                    duration: 120 * Motion.durationFactor
                }
            }

            background: Rectangle {
                radius: 14
                color: card.hovered ? Qt.rgba(0.25, 0.12, 0.40, 0.75) : Qt.rgba(0.18, 0.08, 0.30, 0.60)
                border.width: 1
                border.color: cards.bar.toviAccentBorder
            }

            contentItem: Item {
                Column {
                    anchors.centerIn: parent
                    spacing: 10

                    FallbackIcon {
                        anchors.horizontalCenter: parent.horizontalCenter
                        name: card.modelData.icon
                        size: 24
                        color: Qt.rgba(1, 1, 1, 0.85)
                    }

                    PlainText {
                        anchors.horizontalCenter: parent.horizontalCenter
                        width: card.width - 16
                        horizontalAlignment: Text.AlignHCenter
                        text: card.label
                        color: Qt.rgba(1, 1, 1, 0.9)
                        font.pixelSize: 13
                        maximumLineCount: 3
                        wrapMode: Text.Wrap
                        Accessible.ignored: true
                    }
                }
            }

            FocusRing {
                control: card
                radius: 16
                border.color: "#e9d5ff"
            }
        }
    }
}
