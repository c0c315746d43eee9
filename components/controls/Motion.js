// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// The animation speed of the desktop, for durations that the design leaves open.

// The "longDuration" of PlasmaCore.Units at normal speed, in ms.
const normalDuration = 200;

//! The duration of an animation in ms; 0 if the desktop animates nothing, for which its long duration is 0 or 1.
//! @param duration at normal speed
//! @param longDuration PlasmaCore.Units.longDuration
function scaled(duration, longDuration) {
    return longDuration <= 1 ? 0 : Math.round(duration * longDuration / normalDuration);
}
