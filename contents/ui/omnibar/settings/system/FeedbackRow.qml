// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../logic/DashboardText.js" as DashboardText

//! How many replies were voted up and down.
Row {
    id: feedback
    objectName: "feedbackRow"

    required property var bar
    required property var theme

    spacing: 18

    Count {
        theme: feedback.theme
        text: "👍 " + Math.round(feedback.bar.dashFeedbackLikes)
        Accessible.name: DashboardText.counted(Translation.trn("{count} like", "{count} likes", feedback.bar.dashFeedbackLikes), feedback.bar.dashFeedbackLikes)
    }

    Count {
        theme: feedback.theme
        text: "👎 " + Math.round(feedback.bar.dashFeedbackDislikes)
        Accessible.name: DashboardText.counted(Translation.trn("{count} dislike", "{count} dislikes", feedback.bar.dashFeedbackDislikes), feedback.bar.dashFeedbackDislikes)
    }

    Count {
        theme: feedback.theme
        text: DashboardText.counted(feedback.bar.tr("{count} total"), feedback.bar.dashFeedbackTotal)
    }

    component Count: PlainText {
        required property var theme

        color: theme.uiTextMed
        font.pointSize: 10
    }
}
