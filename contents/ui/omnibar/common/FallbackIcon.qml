// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.kirigami 2.20 as Kirigami

//! A theme icon in a colour of its own, with another name for themes that lack the first.
Item {
    id: icon

    property string name
    property string fallback
    //! For icons of one colour. Always set: Kirigami's default follows the desktop's theme and is black on our dark panels.
    property color color: "white"
    property int size: 16

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Kirigami.Icon {
        id: image

        property bool nameFailed: false

        anchors.fill: parent
        source: nameFailed && icon.fallback !== "" ? icon.fallback : icon.name
        color: icon.color
        onStatusChanged: {
            if (status === Image.Error && source === icon.name)
                nameFailed = true;
        }
    }

    onNameChanged: image.nameFailed = false
}
