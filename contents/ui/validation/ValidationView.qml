// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../omnibar/settings/common"

//! What the voice validation window shows, from top to bottom. The list takes the height that the rest leaves.
ScrollPane {
    id: pane
    objectName: "validationPane"

    required property var validation
    required property var theme

    readonly property int margin: 16
    readonly property int minimumListHeight: 140

    contentHeight: scores.y + scores.height + margin
    thumbColor: theme.uiScrollThumb
    scrollBarName: validation.tr("Scroll")

    Column {
        id: head

        x: pane.margin
        y: pane.margin
        width: pane.width - 2 * x
        spacing: 12

        Item {
            width: parent.width
            height: Math.max(titles.height, pill.height)

            Column {
                id: titles

                anchors.left: parent.left
                anchors.right: pill.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter

                SettingsHeading {
                    theme: pane.theme
                    font.pointSize: 13
                    text: pane.validation.tr("Voice STT Validation")
                }

                // Intentional: VoiceBridge has no such property, and must not get one, so this stays blank.
                SettingsCaption {
                    objectName: "subtitle"

                    theme: pane.theme
                    text: pane.validation.voice && pane.validation.voice.sttBackendLabel || ""
                }
            }

            StatePill {
                id: pill

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                validation: pane.validation
            }
        }

        ErrorBanner {
            width: parent.width
            validation: pane.validation
            theme: pane.theme
        }

        EngineBox {
            width: parent.width
            validation: pane.validation
            theme: pane.theme
        }

        LevelBar {
            width: parent.width
            validation: pane.validation
            theme: pane.theme
        }

        ListeningButtons {
            width: parent.width
            validation: pane.validation
            theme: pane.theme
        }

        SettingsStatus {
            objectName: "notice"

            theme: pane.theme
            message: pane.validation.notice
            color: pane.theme.warningText
        }

        StateSwitch {
            objectName: "suiteSwitch"

            theme: pane.theme
            label: pane.validation.tr("Sentence suite")
            on: pane.validation.suiteMode
            onSwitched: pane.validation.chooseMode(on)
        }

        LateLoader {
            width: parent.width
            visible: wanted
            file: Qt.resolvedUrl("SuiteControls.qml")
            properties: ({ "validation": pane.validation, "theme": pane.theme })
            wanted: pane.validation.suiteMode
        }
    }

    Item {
        id: lists

        x: head.x
        y: head.y + head.height + head.spacing
        width: head.width
        height: Math.max(pane.minimumListHeight, pane.height - y - head.spacing - scores.height - pane.margin)

        HistoryList {
            visible: !pane.validation.suiteMode
            validation: pane.validation
            theme: pane.theme
            maximumHeight: lists.height
        }

        LateLoader {
            width: parent.width
            visible: wanted
            file: Qt.resolvedUrl("SuiteResultList.qml")
            properties: ({ "validation": pane.validation, "theme": pane.theme, "maximumHeight": () => lists.height })
            wanted: pane.validation.suiteMode
        }
    }

    SettingsCaption {
        id: scores
        objectName: "scoresLine"

        x: head.x
        y: lists.y + lists.height + head.spacing
        width: head.width
        theme: pane.theme
        text: pane.validation.scoresLine
    }
}
