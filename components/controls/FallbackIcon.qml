// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Window 2.15
import org.kde.kirigami 2.20 as Kirigami

//! A theme icon in a given colour, with a fallback name for themes that lack the first.
Item {
    id: icon

    property string name
    property string fallback
    //! For monochrome icons. Never unset: Kirigami's default follows the desktop theme and may be black on dark panels.
    property color color: "white"
    property int size: 16
    //! Rendering a theme's SVG icons is slow, so the first frame of the OmniBar has none.
    readonly property bool due: !Window.window || Window.window.firstFrameShown !== false

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Loader {
        anchors.fill: parent
        active: icon.due
        Accessible.ignored: true
        sourceComponent: Kirigami.Icon {
            id: image

            //! The name that was not found in the theme.
            property string missing

            source: missing === icon.name && icon.fallback !== "" ? icon.fallback : icon.name
            color: icon.color
            onStatusChanged: {
                if (status === Image.Error && source === icon.name)
                    missing = icon.name;
            }
        }
    }
}
