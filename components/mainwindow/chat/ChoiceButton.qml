// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

//! A button that opens a list to choose from. The rows are untrusted.
QQC2.Button {
    id: button

    //! What is chosen, such as "Model".
    required property string name
    //! What the button shows.
    required property string caption
    //! Rows {id, name}.
    required property var rows
    required property int currentIndex
    required property int menuWidth

    signal chosen(int index)

    function openMenu() {
        menu.wanted = true;
        menu.item.open();
    }

    enabled: rows.length > 0
    opacity: enabled ? 1 : 0.5 // the palette has no colours for disabled controls
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: name + ": " + caption
    Keys.onDownPressed: openMenu()
    onClicked: {
        if (menu.item && menu.item.visible)
            menu.item.close();
        else
            openMenu();
    }

    // Not "text", in which "&" marks a shortcut.
    contentItem: PlainText {
        objectName: "choiceCaption"
        leftPadding: LayoutMirroring.enabled ? arrow.width : Kirigami.Units.smallSpacing
        rightPadding: LayoutMirroring.enabled ? Kirigami.Units.smallSpacing : arrow.width
        text: button.caption
        horizontalAlignment: Text.AlignLeft
        color: Kirigami.Theme.textColor
        opacity: button.enabled ? 1 : 0.6
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true

        FallbackIcon {
            id: arrow
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            name: "arrow-down"
            color: parent.color
        }
    }

    LateLoader {
        id: menu
        file: Qt.resolvedUrl("ChoiceMenu.qml")
        properties: ({ "button": button })
    }
}
