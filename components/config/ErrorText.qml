// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../common/Readable.js" as Readable

//! A message about the control above it. Screen readers speak it when it appears.
ConfigText {
    id: message

    color: Readable.on(Kirigami.Theme.backgroundColor, Kirigami.Theme.negativeTextColor)
    // Deferred, because the text may follow.
    onVisibleChanged: Qt.callLater(announcer.announceMessage)

    Announcer {
        id: announcer

        function announceMessage() {
            // A deferred call also comes after the destruction.
            if (message)
                announce(message.visible ? message.text : "");
        }
    }
}
