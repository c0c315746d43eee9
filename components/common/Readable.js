// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Makes colours of the desktop readable as text. Many are meant for symbols or large areas: the contrast of Breeze's
// orange on white is 2.9.

// For text, by the Web Content Accessibility Guidelines.
const minimum = 4.5;
const steps = 20;

function luminance(color) {
    const linear = channel => channel <= 0.03928 ? channel / 12.92 : Math.pow((channel + 0.055) / 1.055, 2.4);
    return 0.2126 * linear(color.r) + 0.7152 * linear(color.g) + 0.0722 * linear(color.b);
}

/** The contrast of two opaque colours, from 1 to 21. */
function contrast(one, other) {
    const luminances = [luminance(one), luminance(other)];
    return (Math.max(...luminances) + 0.05) / (Math.min(...luminances) + 0.05);
}

function mixed(one, other, share) {
    return Qt.rgba(one.r + (other.r - one.r) * share, one.g + (other.g - one.g) * share,
                   one.b + (other.b - one.b) * share, 1);
}

/** The color if it is readable as text on an opaque background; otherwise a darker or lighter one that is. */
function on(background, color) {
    const black = Qt.rgba(0, 0, 0, 1);
    const white = Qt.rgba(1, 1, 1, 1);
    const target = contrast(black, background) > contrast(white, background) ? black : white;
    let step = 0;
    while (step < steps && contrast(mixed(color, target, step / steps), background) < minimum)
        ++step;
    return step === 0 ? color : mixed(color, target, step / steps);
}
