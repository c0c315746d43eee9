// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2

//! A combo box of a few words. Its accessible name has to be set.
QQC2.ComboBox {
    id: box

    property var words: []
    //! The current one; anything else if none is.
    property var word

    signal chosen(string word)

    model: words
    currentIndex: words.indexOf(word)
    wheelEnabled: false
    onActivated: chosen(words[index])
    Accessible.role: Accessible.ComboBox
    Accessible.description: displayText
}
