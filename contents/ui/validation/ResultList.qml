// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../omnibar/settings/common"

//! Transcripts, newest first.
SettingsList {
    id: list

    required property var validation
    //! Shown while there are no rows.
    required property string placeholder

    //! Shows the newest row, unless the user is in the list.
    function showNewest() {
        if (!view.activeFocus)
            currentIndex = 0;
    }

    scrollBarName: validation.tr("Scroll results")
    minimumHeight: maximumHeight
    count: model.count
    onCountChanged: Qt.callLater(showNewest)

    SettingsCaption {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 12
        visible: list.count === 0
        theme: list.theme
        text: list.placeholder
    }
}
