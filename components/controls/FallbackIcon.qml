// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Window 2.15
import org.kde.kirigami 2.20 as Kirigami

//! A theme icon in a given colour, with a fallback name for themes that lack the first. An icon that the theme has only
//! in several colours keeps them, because its shape alone may be no more than a square. Without any icon, nothing is
//! shown.
Item {
    id: icon

    property string name
    property string fallback
    //! Never unset: Kirigami's default follows the desktop theme and may be black on dark panels.
    property color color: "white"
    property int size: 16
    //! Tints an icon of several colours too. For names whose shape is enough.
    property bool mask: false
    //! Rendering a theme's SVG icons is slow, so the first frame of the OmniBar has none.
    readonly property bool due: !Window.window || Window.window.firstFrameShown !== false

    readonly property var candidates: [preferSymbolic(name), name, preferSymbolic(fallback), fallback].filter(source => source !== "")
    property int attempt: 0
    readonly property string source: candidates[attempt] || ""

    //! A name that finds NAME-symbolic, or NAME if the theme has no such variant: a failed lookup is repeated without
    //! the last part of the name. The suffix keeps Kirigami from tinting whatever is found for "-symbolic". Instead it
    //! checks whether the icon is monochrome.
    function preferSymbolic(name) {
        if (name === "")
            return "";
        return (name.endsWith("-symbolic") ? name : name + "-symbolic") + "-tinted";
    }

    //! @param missing the source that the theme lacks
    function tryNext(missing) {
        if (missing === source && attempt + 1 < candidates.length)
            ++attempt;
    }

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true
    onCandidatesChanged: attempt = 0

    // A new Kirigami icon for each source, because it checks only its first one of a size for colours.
    Repeater {
        model: icon.due && icon.source !== "" ? [icon.source] : []

        Kirigami.Icon {
            required property string modelData

            anchors.fill: parent
            source: modelData
            fallback: "" // by default an icon for unknown files
            color: icon.color
            isMask: icon.mask
            Accessible.ignored: true
            // Deferred, because it destroys this icon.
            onStatusChanged: if (status === Image.Error) Qt.callLater(icon.tryNext, modelData)
        }
    }
}
