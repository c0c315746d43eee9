// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

//! Up to four suggestions for the next prompt.
Column {
    id: suggestions

    required property var bar
    required property var theme

    spacing: 8
    Accessible.role: Accessible.Grouping
    Accessible.name: heading.text

    PlainText {
        id: heading

        anchors.left: parent.left
        text: suggestions.bar.tr("Suggested next steps")
        color: suggestions.theme.uiTextCaption
        font.pixelSize: 12
        font.weight: Font.DemiBold
    }

    Row {
        id: cards

        width: parent.width
        spacing: 10

        Repeater {
            model: suggestions.bar.responseSuggestionsModel

            SuggestionCard {
                width: (cards.width - 3 * cards.spacing) / 4
                theme: suggestions.theme
                onClicked: suggestions.bar.activateResponseSuggestion(prompt)
            }
        }
    }
}
