// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import org.kde.loomra.components.controls 1.0

import "logic/SuggestionNotice.js" as SuggestionNotice
import "settings/common"

//! A workspace suggestion with its actions. All of its text is untrusted. It stays hidden while the window is a bubble,
//! which has no room for it.
T.Popup {
    id: dialog
    objectName: "suggestionDialog"

    required property var bar
    required property var theme

    readonly property var notification: bar.workspaceSuggestionDialogData
    readonly property var actions: SuggestionNotice.actions(notification)

    //! Gets the focus back. Null if no item had it, or if that is gone.
    property Item focusedBefore: null

    // Distance from the edges of the screen, on both sides together.
    readonly property int screenMargin: 48
    readonly property int maximumButtonsHeight: 160
    readonly property real maximumBodyHeight: Math.max(64, bar.screenHeight - screenMargin - 2 * padding - 2 * spacing
                                                           - heading.height - buttonsPane.height)

    function giveFocusBack() {
        const item = focusedBefore && focusedBefore.visible && focusedBefore.enabled ? focusedBefore : bar.inputField;
        item.forceActiveFocus(item.focusReason || Qt.OtherFocusReason);
    }

    function isInside(item) {
        for (let around = item; around; around = around.parent) {
            if (around === contentItem)
                return true;
        }
        return false;
    }

    //! The dialog, not its first button: a key that the user is typing elsewhere just now must not press that.
    function takeFocus() {
        if (opened && bar.activeFocusItem && !isInside(bar.activeFocusItem))
            contentItem.forceActiveFocus();
    }

    parent: bar.contentItem
    anchors.centerIn: parent
    width: Math.min(bar.screenWidth - screenMargin, 440)
    height: implicitContentHeight + 2 * padding
    padding: 16
    spacing: 12
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    visible: bar.workspaceSuggestionDialogOpen && !bar.compactMode
    onAboutToShow: focusedBefore = bar.activeFocusItem
    onOpened: contentItem.forceActiveFocus()
    onClosed: {
        if (bar.compactMode)
            return;
        giveFocusBack();
        bar.closeWorkspaceSuggestionDialog();
    }

    // The prompt gets the focus when the window is expanded, or summoned by the wake word.
    Connections {
        target: dialog.bar
        enabled: dialog.opened

        function onActiveFocusItemChanged() {
            Qt.callLater(dialog.takeFocus);
        }
    }

    T.Overlay.modal: Rectangle {
        color: Qt.rgba(0, 0, 0, 0.6)
    }

    background: Rectangle {
        radius: 14
        color: dialog.theme.uiPanelBase
        border.width: 1
        border.color: dialog.theme.uiPanelBorder
    }

    contentItem: Column {
        spacing: dialog.spacing
        Accessible.role: Accessible.Dialog
        Accessible.name: heading.text
        Accessible.description: body.text

        PlainText {
            id: heading
            objectName: "suggestionTitle"

            width: parent.width
            text: SuggestionNotice.title(dialog.notification)
            color: dialog.theme.uiTextStrong
            font.pointSize: 12
            font.bold: true
            wrapMode: Text.Wrap
            maximumLineCount: 3
            Accessible.role: Accessible.Heading
        }

        Item {
            width: parent.width
            height: bodyPane.height
            visible: body.text !== ""

            ScrollPane {
                id: bodyPane
                objectName: "suggestionBodyPane"

                readonly property bool visualFocus: activeFocus

                //! Scrolls by pixels, as far as there is something to show.
                function scrollBy(distance) {
                    contentY = Math.max(0, Math.min(contentY + distance, contentHeight - height));
                }

                width: parent.width
                height: Math.min(body.implicitHeight, dialog.maximumBodyHeight)
                contentHeight: body.implicitHeight
                thumbColor: dialog.theme.uiScrollThumb
                scrollBarName: dialog.bar.tr("Scroll text")
                activeFocusOnTab: interactive
                Accessible.role: Accessible.StaticText
                Accessible.name: body.text
                Accessible.ignored: !interactive
                Keys.onUpPressed: scrollBy(-24)
                Keys.onDownPressed: scrollBy(24)
                Keys.onPressed: {
                    const distances = [[Qt.Key_PageUp, -height], [Qt.Key_PageDown, height], [Qt.Key_Home, -contentHeight],
                                       [Qt.Key_End, contentHeight]];
                    const found = distances.find(row => row[0] === event.key);
                    event.accepted = found !== undefined;
                    if (found)
                        scrollBy(found[1]);
                }

                PlainText {
                    id: body
                    objectName: "suggestionBody"

                    anchors.left: parent.left
                    width: bodyPane.width - 12
                    text: SuggestionNotice.body(dialog.notification)
                    color: dialog.theme.uiTextMed
                    font.pointSize: 10
                    wrapMode: Text.Wrap
                    elide: Text.ElideNone
                }
            }

            FocusRing {
                control: bodyPane
                radius: 6
                border.color: dialog.theme.focusRing
            }
        }

        ScrollPane {
            id: buttonsPane

            readonly property int ringGap: 3

            width: parent.width
            height: Math.min(buttons.implicitHeight + 2 * ringGap, dialog.maximumButtonsHeight)
            visible: dialog.actions.length > 0
            contentHeight: buttons.implicitHeight + 2 * ringGap
            thumbColor: dialog.theme.uiScrollThumb
            scrollBarName: dialog.bar.tr("Scroll actions")

            Flow {
                id: buttons

                // Room for the focus ring if the pane clips.
                anchors.left: parent.left
                anchors.leftMargin: buttonsPane.interactive ? buttonsPane.ringGap : 0
                y: buttonsPane.ringGap
                width: buttonsPane.width - anchors.leftMargin - (buttonsPane.interactive ? 12 : 0)
                spacing: 8

                Repeater {
                    model: dialog.actions

                    ElidedButton {
                        objectName: "suggestionAction"

                        required property var modelData

                        width: Math.min(implicitWidth, buttons.width)
                        theme: dialog.theme
                        label: modelData.label
                        onClicked: dialog.bar.applyWorkspaceSuggestion(modelData.id)
                    }
                }
            }
        }
    }
}
