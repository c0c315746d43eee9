// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "qrc:/org/kde/loomra/voice/sttSentenceScoring.js" as Scoring
import "ValidationText.js" as ValidationText

//! The scores of the sentences that were read aloud.
ResultList {
    id: list
    objectName: "suiteResultList"

    name: validation.tr("Results")
    placeholder: validation.tr("Read the sentence aloud. Its score appears here.")
    rowHeight: 66
    model: validation.suiteResults
    delegate: ResultRow {
        required property string sentenceId
        required property string category
        required property string reference
        required property string hypothesis
        required property real accuracy
        required property int ms
        required property string backend

        owner: list
        heading: ValidationText.resultHeading({ "accuracy": accuracy, "sentenceId": sentenceId, "category": category, "backend": backend, "ms": ms }, list.validation.tr)
        headingColor: Scoring.isGood(accuracy) ? list.theme.positiveText : list.theme.warningText
        sentence: reference
        transcript: hypothesis
    }
}
