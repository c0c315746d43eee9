// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! A film grain over the bar: a random grey for each pixel, painted once.
Canvas {
    opacity: 0.025
    Accessible.ignored: true
    onPaint: {
        const context = getContext("2d");
        const image = context.createImageData(width, height);
        const pixels = image.data;
        for (let i = 0; i < pixels.length; i += 4) {
            const grey = Math.floor(Math.random() * 256);
            pixels[i] = grey;
            pixels[i + 1] = grey;
            pixels[i + 2] = grey;
            pixels[i + 3] = 255;
        }
        context.drawImage(image, 0, 0);
    }
}
