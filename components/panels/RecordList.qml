// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/ListSync.js" as ListSync
import "../common"

//! A list of records with the role "recordId". New records change it in place, so that scroll position and focus stay.
RowList {
    id: list

    //! The rows to show: objects that all have the same roles.
    property var records: []
    property var shownRecords: []

    onRecordsChanged: {
        const wanted = records;
        ListSync.update(listModel, shownRecords, wanted, "recordId");
        shownRecords = wanted;
        if (currentIndex < 0 && count > 0)
            currentIndex = 0;
        forceLayout(); // at once, or the focus is lost with the row of a removed record
    }
    model: ListModel {
        id: listModel
    }
}
