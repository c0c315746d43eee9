// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../omnibar/settings/common"

//! The last failure of an engine.
Rectangle {
    id: banner
    objectName: "errorBanner"

    required property var validation
    required property var theme

    visible: validation.lastError !== ""
    height: message.height + 16
    radius: 8
    color: theme.dangerFill
    border.width: 1
    border.color: theme.dangerText

    SettingsStatus {
        id: message
        objectName: "errorText"

        x: 10
        y: 8
        width: parent.width - 20
        theme: banner.theme
        message: banner.validation.lastError
        color: banner.theme.dangerText
    }
}
