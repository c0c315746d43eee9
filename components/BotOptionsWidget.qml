// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "BlockContent.js" as BlockContent

//! A question with choices. The last clicked one is marked; all stay clickable, and each click counts.
BlockWidget {
    id: options

    //! The row in the chat list, -1 outside of it.
    property int messageIndex: -1
    //! What stateSaved() was last emitted with, {} before. It outlives the widget.
    property var savedState: ({})
    //! Whether the choices are in the tab order.
    property bool reachable: true

    readonly property string prompt: BlockContent.textField(BlockContent.objectOf(payload).prompt)
    readonly property var choices: BlockContent.optionChoices(payload, tr)
    readonly property int hiddenChoices: BlockContent.hiddenCount(BlockContent.objectOf(payload).choices, choices.length)
    //! The index of the marked choice, -1 if there is none.
    property int selectedIndex: savedState.selectedIndex === undefined ? -1 : savedState.selectedIndex

    signal optionSelected(string choiceId, string choiceLabel)
    signal stateSaved(var state)

    function select(index) {
        selectedIndex = index;
        stateSaved({ "selectedIndex": index });
        optionSelected(choices[index].id, choices[index].label);
    }

    spacing: 8
    Accessible.role: Accessible.Grouping
    Accessible.name: prompt || tr("Choices")

    //! The height of the free corner, if the choices have no prompt above them.
    Item {
        width: parent.width
        height: Math.max(0, options.freeHeight - options.spacing)
        visible: options.prompt === "" && options.choices.length > 0 && height > 0
    }

    BlockText {
        objectName: "prompt"

        width: parent.width
        visible: text !== ""
        text: options.prompt
        color: options.textColor
        font.pointSize: 12
        maximumLineCount: BlockContent.maxTextLines
        freeCorner: Qt.size(options.freeWidth, options.freeHeight)
        // It is the name of the group.
        Accessible.ignored: true
    }

    BlockText {
        objectName: "nothing"

        width: parent.width
        visible: options.prompt === "" && options.choices.length === 0
        text: options.tr("(empty)")
        color: options.mutedColor
        font.pointSize: 12
    }

    Flow {
        width: parent.width
        spacing: 8
        visible: options.choices.length > 0

        Repeater {
            model: options.choices

            ChipButton {
                objectName: "chip"

                required property int index
                required property var modelData

                width: Math.min(implicitWidth, parent.width)
                widget: options
                focusPolicy: options.reachable ? Qt.TabFocus : Qt.NoFocus
                label: BlockContent.textField(modelData.label)
                selected: index === options.selectedIndex
                Accessible.role: Accessible.RadioButton
                Accessible.checkable: true
                Accessible.checked: selected
                onClicked: options.select(index)
            }
        }
    }

    BlockText {
        objectName: "footer"

        width: parent.width
        visible: options.hiddenChoices > 0
        text: Translation.trn("... {count} more choice", "... {count} more choices", options.hiddenChoices).replace("{count}", options.hiddenChoices)
        color: options.mutedColor
        font.pointSize: 11
    }
}
