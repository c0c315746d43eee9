// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Window 2.15

import "../../contents/ui/omnibar/logic/ListSync.js" as ListSync
import "../common"
import "../common/FocusChain.js" as FocusChain

//! A list of records with the role "recordId". New records change it in place, so that scroll position and focus stay.
RowList {
    id: list

    //! The rows to show: objects that all have the same roles.
    property var records: []
    property var shownRecords: []

    onRecordsChanged: {
        const hadFocus = activeFocus;
        const wanted = records;
        ListSync.update(listModel, shownRecords, wanted, "recordId");
        shownRecords = wanted;
        if (currentIndex < 0 && count > 0)
            currentIndex = 0;
        forceLayout();
        if (hadFocus && currentItem && !FocusChain.isInside(currentItem, Window.activeFocusItem))
            currentItem.forceActiveFocus(Qt.OtherFocusReason);
    }
    model: ListModel {
        id: listModel
    }
}
