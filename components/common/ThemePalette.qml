// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import org.kde.kirigami 2.20 as Kirigami

import "Readable.js" as Readable

//! The palette of controls in the colours of the desktop. Styles that don't follow these are light, whatever the colours
//! of the window. Not visible; use its "palette".
QQC2.Control {
    id: colors

    //! A colour between background and text.
    function shade(share) {
        return Kirigami.ColorUtils.linearInterpolation(Kirigami.Theme.backgroundColor, Kirigami.Theme.textColor, share);
    }

    visible: false
    palette.window: Kirigami.Theme.backgroundColor
    palette.windowText: Kirigami.Theme.textColor
    palette.base: fieldColors.Kirigami.Theme.backgroundColor
    palette.text: Kirigami.Theme.textColor
    palette.button: shade(0.08)
    palette.buttonText: Kirigami.Theme.textColor
    palette.brightText: Kirigami.Theme.textColor
    palette.light: shade(0.04)
    palette.midlight: shade(0.12)
    palette.mid: shade(0.3)
    palette.dark: shade(0.2)
    palette.highlight: Kirigami.Theme.highlightColor
    palette.highlightedText: Readable.on(Kirigami.Theme.highlightColor, Kirigami.Theme.highlightedTextColor)

    Item {
        id: fieldColors

        Kirigami.Theme.inherit: false
        Kirigami.Theme.colorSet: Kirigami.Theme.View
    }
}
