// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra 1.0
import org.kde.loomra.components.controls 1.0

import "BlockContent.js" as BlockContent

//! A slider with a button that submits its value, once.
BlockWidget {
    id: slider

    //! The row in the chat list, -1 outside of it.
    property int messageIndex: -1
    //! What stateSaved() was last emitted with, {} before. It outlives the widget.
    property var savedState: ({})
    //! Whether the slider and its button are in the tab order.
    property bool reachable: true

    readonly property string label: BlockContent.sliderLabel(payload) || tr("Value")
    readonly property var range: BlockContent.sliderRange(payload)
    readonly property string action: BlockContent.sliderAction(payload)
    property bool submitted: savedState.submitted === true
    readonly property alias value: control.value

    signal sliderSubmitted(real value, string action)
    signal stateSaved(var state)

    function saveState() {
        stateSaved({ "value": value, "submitted": submitted });
    }

    function submit() {
        if (submitted)
            return;
        submitted = true;
        saveState();
        sliderSubmitted(value, action);
    }

    spacing: 8

    BlockText {
        objectName: "label"

        width: parent.width
        text: slider.label + ": " + BlockContent.rounded(slider.value)
        color: slider.textColor
        font.pointSize: 12
        freeCorner: Qt.size(slider.freeWidth, slider.freeHeight)
    }

    PlainSlider {
        id: control
        objectName: "slider"

        width: parent.width
        from: slider.range.from
        to: slider.range.to
        stepSize: slider.range.step
        value: slider.savedState.value === undefined ? slider.range.value : slider.savedState.value
        enabled: !slider.submitted
        opacity: enabled ? 1.0 : 0.6
        focusPolicy: slider.reachable ? Qt.StrongFocus : Qt.ClickFocus
        trackColor: slider.lineColor
        fillColor: slider.ringColor
        ringColor: slider.ringColor
        Accessible.name: slider.label
        onMoved: slider.saveState()
        // By default these move to another row.
        Keys.onUpPressed: moveBy(increase)
        Keys.onDownPressed: moveBy(decrease)

        function moveBy(step) {
            step();
            moved();
        }
    }

    PlainText {
        objectName: "range"

        width: parent.width
        horizontalAlignment: Text.AlignRight
        text: slider.range.from + " – " + slider.range.to
        color: slider.mutedColor
        font.pointSize: 10
    }

    ChipButton {
        objectName: "confirmBtn"

        anchors.left: parent.left
        visible: !slider.submitted
        widget: slider
        focusPolicy: slider.reachable ? Qt.TabFocus : Qt.NoFocus
        colorDuration: 150 * Motion.durationFactor
        label: slider.tr("Confirm")
        onClicked: slider.submit()
    }

    PlainText {
        objectName: "submittedText"

        width: parent.width
        visible: slider.submitted
        text: slider.tr("Submitted: {value}").replace("{value}", BlockContent.rounded(slider.value))
        color: slider.mutedColor
        font.pointSize: 11
        font.italic: true
    }
}
