// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import org.kde.loomra.components.controls 1.0

//! The tabs of the settings sheet. Left and Right switch between them.
T.TabBar {
    id: strip

    required property var theme
    //! SettingsTab objects. The list never changes: new buttons would lose the current tab and the focus.
    required property var tabs

    implicitHeight: 40
    padding: 4
    spacing: 4
    contentWidth: availableWidth
    Accessible.role: Accessible.PageTabList

    contentItem: ListView {
        model: strip.contentModel
        currentIndex: strip.currentIndex
        orientation: ListView.Horizontal
        spacing: strip.spacing
        interactive: false
        keyNavigationEnabled: true
        // By default the list moves its invisible highlight for a second, which draws frames.
        highlightMoveDuration: 0
    }

    background: Rectangle {
        radius: 10
        color: strip.theme.uiWellFill
        border.width: 1
        border.color: strip.theme.uiWellBorder
    }

    Repeater {
        model: strip.tabs.length

        T.TabButton {
            id: tab

            required property int index

            // Not "text", of which TabButton would make a shortcut.
            readonly property string label: strip.tabs[index].title

            implicitHeight: 32
            implicitWidth: contentItem.implicitWidth + 28
            hoverEnabled: true
            Accessible.role: Accessible.PageTab
            Accessible.name: label
            // The arrow keys move the focus without a reason for a ring.
            onActiveFocusChanged: {
                if (activeFocus && focusReason === Qt.OtherFocusReason)
                    focusReason = Qt.TabFocusReason;
            }

            background: Rectangle {
                radius: 6
                color: tab.checked ? strip.theme.uiWellFillHi : tab.hovered ? strip.theme.uiWellFill : "transparent"
                border.width: tab.checked ? 1 : 0
                border.color: strip.theme.uiAccentBorder
            }
            contentItem: PlainText {
                text: tab.label
                color: tab.checked ? strip.theme.uiTextStrong : strip.theme.uiTextSoft
                font.pointSize: 9
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                Accessible.ignored: true
            }

            FocusRing {
                control: tab
                radius: 8
                border.color: strip.theme.focusRing
            }
        }
    }
}
