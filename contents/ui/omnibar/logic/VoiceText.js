// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

const cancellations = ["cancel that", "cancel", "stop", "never mind", "nevermind", "no"];

/** A text with the next utterance after it. */
function joined(base, segment) {
    return [base.trim(), segment.trim()].filter(part => part !== "").join(" ");
}

/** Whether an utterance says that the previous one should not be sent. */
function isCancellation(utterance) {
    return cancellations.includes(utterance.trim().toLowerCase());
}
