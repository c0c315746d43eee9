// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import org.kde.loomra.components.controls 1.0

import "../common"
import "../logic/PlanText.js" as PlanText

//! A plan that waits for approval, with its steps. All of its text is untrusted. The steps scroll if there are more than
//! fit, so that the buttons and the conversation below stay in view.
Rectangle {
    id: card
    objectName: "planCard"

    required property var bar
    required property var theme
    //! In pixels. Exceeded only to show two steps.
    required property real maximumHeight

    readonly property int margin: 12
    readonly property int spacing: 8
    readonly property int ringGap: 4

    readonly property var steps: PlanText.steps(bar.pendingPlan)
    readonly property string summary: PlanText.summary(bar.pendingPlan)
    readonly property string risk: PlanText.risk(bar.pendingPlan, bar.tr)

    readonly property real lineHeight: Math.ceil(metrics.height)
    readonly property real heightOfRest: 2 * margin + heading.height + (risk !== "" ? spacing + riskText.height : 0)
                                         + 2 * spacing + buttons.height
    readonly property real stepsMaximum: Math.max(heightOfSteps(2), maximumHeight - heightOfRest)

    function heightOfSteps(count) {
        return count > 0 ? count * lineHeight + (count - 1) * spacing : 0;
    }

    implicitHeight: content.height + 2 * margin
    height: implicitHeight
    radius: 12
    color: theme.uiPlanCardBg
    border.width: 1
    border.color: theme.uiPlanCardBorder
    Accessible.role: Accessible.Grouping
    Accessible.name: title.text
    Accessible.description: summary

    FontMetrics {
        id: metrics
        font.family: "monospace"
        font.pointSize: 9
    }

    Column {
        id: content

        anchors.left: parent.left
        anchors.leftMargin: card.margin
        y: card.margin
        width: card.width - 2 * card.margin
        spacing: card.spacing

        Item {
            id: heading

            width: parent.width
            height: Math.max(title.height, summaryText.height)

            PlainText {
                id: title

                anchors.left: parent.left
                text: card.bar.tr("Plan")
                color: card.theme.uiTextStrong
                font.pointSize: 11
                font.bold: true
            }

            ShortText {
                id: summaryText
                objectName: "planSummary"

                anchors.left: title.right
                anchors.leftMargin: card.spacing
                anchors.right: parent.right
                anchors.baseline: title.baseline
                text: PlanText.cut(card.summary, PlanText.summaryLength)
                whole: card.summary
                // The keyboard doesn't reach the summary itself.
                tipWanted: runButton.visualFocus
                color: card.theme.uiTextMed
                font.pointSize: 10
            }
        }

        ShortText {
            id: riskText
            objectName: "planRisk"

            width: parent.width
            visible: card.risk !== ""
            text: card.risk
            whole: card.risk
            color: card.theme.uiTextSoft
            font.pointSize: 9
        }

        // A list creates only what is in view: a plan may have any number of steps.
        ListView {
            id: stepList
            objectName: "planSteps"

            // Wider, to have the focus ring around the text.
            anchors.left: parent.left
            anchors.leftMargin: -card.ringGap
            width: parent.width + 2 * card.ringGap
            height: Math.min(card.heightOfSteps(count), card.stepsMaximum)
            spacing: card.spacing
            clip: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            interactive: contentHeight > height
            keyNavigationEnabled: true
            model: card.steps.length
            Accessible.role: Accessible.List
            Accessible.name: card.bar.tr("Steps")

            delegate: Item {
                id: step
                objectName: "planStep"

                required property int index
                readonly property string line: PlanText.stepText(card.steps[index])
                readonly property bool visualFocus: activeFocus

                x: LayoutMirroring.enabled ? ListView.view.width - width : 0
                width: ListView.view.width - (stepScrollBar.visible ? stepScrollBar.width : 0)
                height: card.lineHeight
                // See MessageRow.
                activeFocusOnTab: ListView.isCurrentItem || activeFocus
                Accessible.role: Accessible.ListItem
                Accessible.name: line

                ShortText {
                    objectName: "planStepText"

                    anchors.fill: parent
                    anchors.leftMargin: card.ringGap
                    anchors.rightMargin: card.ringGap
                    text: PlanText.cut(step.line, PlanText.lineLength)
                    whole: step.line
                    tipWanted: step.visualFocus
                    color: card.theme.uiTextMed
                    font: metrics.font
                    verticalAlignment: Text.AlignVCenter
                    Accessible.ignored: true
                }

                // Inside the line, because the list may be clipped.
                FocusRing {
                    anchors.margins: 0
                    control: step
                    radius: 4
                    border.color: card.theme.focusRing
                }
            }

            T.ScrollBar.vertical: PlainScrollBar {
                id: stepScrollBar

                thumbColor: card.theme.uiScrollThumb
                Accessible.name: card.bar.tr("Scroll steps")
            }
        }

        Row {
            id: buttons

            anchors.left: parent.left
            spacing: card.spacing

            PlanButton {
                id: runButton
                objectName: "planRunBtn"

                implicitWidth: 80
                theme: card.theme
                label: card.bar.tr("Run")
                fill: Qt.rgba(0.60, 0.20, 0.98, 0.3)
                hoverFill: Qt.rgba(0.60, 0.20, 0.98, 0.5)
                textColor: "white"
                outline: card.theme.runOutline
                Accessible.description: card.summary
                onClicked: card.bar.runPlan()
            }

            PlanButton {
                objectName: "planCancelBtn"

                implicitWidth: 70
                theme: card.theme
                label: card.bar.tr("Cancel")
                onClicked: card.bar.cancelPlan()
            }
        }
    }
}
