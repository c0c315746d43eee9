// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import org.kde.kirigami 2.20 as Kirigami

import "../logic/ListSync.js" as ListSync

//! A row for each key of an object, in place: rows whose key stays keep their focus. Long lists grow while the user
//! scrolls, because the rows are heavy.
ColumnLayout {
    id: rows

    property var keys: []
    //! Has the required property "key".
    property alias delegate: repeater.delegate
    //! The view that scrolls them, if any.
    property Flickable pane: null
    //! How many rows are added at once.
    property int step: 5
    property int wantedCount: step
    //! Gets the focus when a row with the focus is removed.
    property Item focusAfterRemoval: null

    property var shownKeys: []
    // A repeater that is not complete would show rows twice.
    property bool isComplete: false

    function update() {
        if (!isComplete)
            return;
        const before = shownKeys;
        shownKeys = pane ? keys.slice(0, wantedCount) : keys.slice();
        keepFocus();
        const asRow = key => ({ key: key });
        ListSync.update(rowModel, before.map(asRow), shownKeys.map(asRow), "key");
    }

    function keepFocus() {
        let item = Window.activeFocusItem;
        while (item && item.parent !== rows)
            item = item.parent;
        if (item && focusAfterRemoval && !shownKeys.includes(item.key))
            focusAfterRemoval.forceActiveFocus(Qt.OtherFocusReason);
    }

    //! Adds rows until there is a whole page below the view.
    function grow() {
        if (!isComplete || !pane || wantedCount >= keys.length || !visible)
            return;
        const end = rows.mapToItem(pane.contentItem, 0, rows.height).y;
        if (end < pane.contentY + 2 * pane.height) {
            wantedCount += step;
            Qt.callLater(grow);
        }
    }

    spacing: Kirigami.Units.largeSpacing
    // Deferred, because a row may be the caller.
    onKeysChanged: {
        Qt.callLater(update);
        Qt.callLater(grow);
    }
    onWantedCountChanged: update()
    Component.onCompleted: {
        isComplete = true;
        update();
        Qt.callLater(grow);
    }
    onVisibleChanged: Qt.callLater(grow)

    // Deferred calls still come then.
    Component.onDestruction: isComplete = false

    Connections {
        target: rows.pane
        function onContentYChanged() { rows.grow(); }
        function onHeightChanged() { Qt.callLater(rows.grow); }
        function onContentHeightChanged() { Qt.callLater(rows.grow); }
    }

    ListModel { id: rowModel }

    Repeater {
        id: repeater

        model: rowModel
    }
}
