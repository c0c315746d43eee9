// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../common"
import "../../../../../components/logic/LiteralText.js" as LiteralText
import "../../logic/Models.js" as Models
import "../../../../../components/logic/Translatable.js" as Translatable
import "../common"

//! The check which of the free models respond.
Column {
    id: check

    required property var bar
    required property var theme

    spacing: 8

    SettingsHeading {
        theme: check.theme
        isSection: true
        text: check.bar.tr("Free model check")
    }

    SettingsCaption {
        theme: check.theme
        text: check.bar.tr("Test free models to find which ones respond, then auto-set the fastest as default.")
    }

    Flow {
        width: parent.width
        spacing: 8

        SettingsButton {
            objectName: "checkFreeBtn"

            theme: check.theme
            fill: check.theme.positiveFill
            hoverFill: check.theme.positiveHover
            borderColor: "transparent"
            textColor: "white"
            enabled: !check.bar.freeCheckRunning
            label: check.bar.freeCheckRunning ? check.bar.tr("Testing models...") : check.bar.tr("Check free providers")
            onClicked: check.bar.checkFreeProviders()
        }

        ElidedButton {
            objectName: "useRecommendedBtn"

            width: Math.min(implicitWidth, parent.width)
            theme: check.theme
            visible: check.bar.recommendedModel !== ""
            label: Translatable.filled(check.bar.tr("Use recommended: {model}"), { "model": LiteralText.oneLine(check.bar.recommendedModel) })
            onClicked: check.bar.applyRecommendedModel()
        }
    }

    SettingsStatus {
        objectName: "freeCheckStatus"

        theme: check.theme
        message: check.bar.freeCheckStatus
    }

    SettingsList {
        id: results
        objectName: "freeCheckResults"

        visible: count > 0
        count: check.bar.freeCheckResults.length
        rowHeight: 32
        rowSpacing: 0
        maximumHeight: 200
        theme: check.theme
        name: check.bar.tr("Results of the check")
        scrollBarName: check.bar.tr("Scroll results")
        model: check.bar.freeCheckResults

        delegate: Item {
            id: row
            objectName: "freeCheckRow"

            required property var modelData
            required property int index
            readonly property string model: LiteralText.oneLine(modelData.model)
            readonly property bool visualFocus: activeFocus

            x: results.rowX
            width: results.rowWidth
            height: results.rowHeight
            activeFocusOnTab: ListView.isCurrentItem || activeFocus
            Accessible.role: Accessible.ListItem
            Accessible.name: model
            Accessible.description: outcome.text

            Rectangle {
                id: dot
                objectName: "freeCheckDot"

                anchors.left: parent.left
                anchors.leftMargin: 10
                anchors.verticalCenter: parent.verticalCenter
                width: 8
                height: 8
                radius: 4
                color: row.modelData.ok ? "#4ade80" : "#ef4444"
            }

            ShortText {
                id: modelText
                objectName: "freeCheckModel"

                anchors.left: dot.right
                anchors.leftMargin: 10
                anchors.right: outcome.left
                anchors.rightMargin: 10
                anchors.verticalCenter: parent.verticalCenter
                text: row.model
                whole: row.modelData.model
                color: check.theme.uiTextMed
                font.family: "monospace"
                font.pointSize: 9
                Accessible.ignored: true
            }

            ShortText {
                id: outcome
                objectName: "freeCheckOutcome"

                anchors.right: parent.right
                anchors.rightMargin: 10
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, parent.width / 2)
                text: Models.checkOutcome(row.modelData, check.bar.tr)
                whole: row.modelData.ok || row.modelData.error === "" ? text : row.modelData.error
                color: row.modelData.ok ? check.theme.uiTextMed : check.theme.uiTextSoft
                font.pointSize: 9
                Accessible.ignored: true
            }

            FocusRing {
                control: row
                anchors.margins: 0
                radius: 6
                border.color: check.theme.focusRing
            }
        }
    }
}
