// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "ValidationText.js" as ValidationText

//! The transcripts of the free mode.
ResultList {
    id: list
    objectName: "historyList"

    name: validation.tr("Transcripts")
    placeholder: validation.tr("What you say appears here.")
    rowHeight: 46
    model: validation.history
    delegate: ResultRow {
        required property string time
        required property string backend
        required property string text
        required property int ms

        owner: list
        heading: ValidationText.historyHeading({ "time": time, "backend": backend, "ms": ms }, list.validation.tr)
        headingColor: list.theme.uiTextCaption
        transcript: text
    }
}
