// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../common"

//! The list of sessions.
SettingsList {
    id: list
    objectName: "sessionManagerList"

    required property var bar
    //! Id of the current session, "" for none.
    required property string activeId

    //! Moves the focus to the row that took the place of a deleted one, or to the last one; without any, to the prompt.
    function focusDelete(index) {
        view.forceLayout();
        const next = view.itemAtIndex(Math.min(index, count - 1));
        if (next)
            next.focusDelete();
        else
            bar.inputField.forceActiveFocus();
    }

    count: bar.sessionRows.count
    rowHeight: 48
    minimumHeight: 48
    maximumHeight: 320
    name: bar.tr("Sessions")
    scrollBarName: bar.tr("Scroll sessions")
    model: bar.sessionRows
    // A row itself takes no focus, only its buttons do: a current row would take it from them when rows are removed.
    view.keyNavigationEnabled: false
    currentIndex: -1

    delegate: SessionRow {
        x: list.rowX
        width: list.rowWidth
        height: list.rowHeight
        bar: list.bar
        theme: list.theme
        activeId: list.activeId
        // Its index is already gone.
        onRemovedByKeys: Qt.callLater(list.focusDelete, Math.round(y / (list.rowHeight + list.rowSpacing)))
    }

    PlainText {
        objectName: "noSessions"

        anchors.fill: parent
        anchors.margins: 10
        visible: list.count === 0
        text: list.bar.tr("No sessions. Tap Refresh to load or New session to start.")
        color: list.theme.uiTextCaption
        font.pointSize: 9
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
    }
}
