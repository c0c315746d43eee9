// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15
import org.kde.kirigami 2.20 as Kirigami

import "qrc:/org/kde/loomra/components/common"
import "qrc:/org/kde/loomra/components/common/Readable.js" as Readable

//! The contrast of the main window's and the tray view's texts in the colours of common desktops.
Item {
    id: root

    readonly property var schemes: [
        { name: "Breeze Light", window: "#eff0f1", view: "#ffffff", button: "#fcfcfc", text: "#232629", disabled: "#707d8a",
          negative: "#da4453", neutral: "#f67400", active: "#3daee9", highlight: "#3daee9", highlighted: "#ffffff",
          hover: "#93cee9", midlight: "#f6f7f7" },
        { name: "Breeze Dark", window: "#2a2e32", view: "#1b1e20", button: "#31363b", text: "#fcfcfc", disabled: "#a1a9b1",
          negative: "#da4453", neutral: "#f67400", active: "#3daee9", highlight: "#3daee9", highlighted: "#fcfcfc",
          hover: "#3daee9", midlight: "#434a50" },
        { name: "black on white", window: "#ffffff", view: "#ffffff", button: "#ffffff", text: "#000000", disabled: "#404040",
          negative: "#c00000", neutral: "#804000", active: "#0000ff", highlight: "#000000", highlighted: "#ffffff",
          hover: "#0000ff", midlight: "#ffffff" },
        { name: "white on black", window: "#000000", view: "#000000", button: "#000000", text: "#ffffff", disabled: "#c0c0c0",
          negative: "#ff6060", neutral: "#ffff00", active: "#00ffff", highlight: "#ffff00", highlighted: "#000000",
          hover: "#00ffff", midlight: "#202020" }
    ]

    Component {
        id: palettes

        Item {
            id: desktop

            required property var scheme
            readonly property alias colors: theme.palette

            Kirigami.Theme.inherit: false
            Kirigami.Theme.backgroundColor: scheme.window
            Kirigami.Theme.textColor: scheme.text
            Kirigami.Theme.highlightColor: scheme.highlight
            Kirigami.Theme.highlightedTextColor: scheme.highlighted

            ThemePalette {
                id: theme
            }
        }
    }

    TestCase {
        name: "Readable"

        property color converter

        function color(text) {
            converter = text;
            return Qt.rgba(converter.r, converter.g, converter.b, 1);
        }

        //! What is seen of a text that is partly transparent.
        function faded(text, opacity, background) { return Readable.mixed(color(background), color(text), opacity); }

        function check(scheme, what, text, background) {
            const contrast = Readable.contrast(color(text), color(background));
            verify(contrast >= 4.5, scheme.name + ", " + what + ": " + contrast.toFixed(2) + ", " + text + " on " + background);
        }

        function test_contrast_data() { return root.schemes.map(scheme => ({ tag: scheme.name, scheme: scheme })); }

        function test_contrast(data) {
            const scheme = data.scheme;
            for (const background of [scheme.window, scheme.view]) {
                check(scheme, "text", scheme.text, background);
                check(scheme, "explanations", faded(scheme.text, 0.8, background), background);
                check(scheme, "agent of a message", faded(scheme.text, 0.7, background), background);
                for (const use of ["disabled", "negative", "neutral"])
                    check(scheme, use, Readable.on(color(background), color(scheme[use])), background);
                // A message has 15 % of its colour as background.
                for (const use of ["neutral", "active"])
                    check(scheme, "message", scheme.text, faded(scheme[use], 0.15, background));
            }
            for (const background of ["highlight", "hover"])
                check(scheme, background, Readable.on(color(scheme[background]), color(scheme.highlighted)), scheme[background]);
            // The tray view.
            for (const background of ["window", "button", "midlight"])
                check(scheme, "tray on " + background, scheme.text, scheme[background]);
        }

        function test_palette_data() { return test_contrast_data(); }

        //! The controls' own texts.
        function test_palette(data) {
            const colors = createTemporaryObject(palettes, root, { scheme: data.scheme }).colors;
            compare(String(colors.windowText), data.scheme.text);
            check(data.scheme, "window", colors.windowText, colors.window);
            for (const background of ["button", "light", "midlight", "mid", "dark"])
                check(data.scheme, background, colors.buttonText, colors[background]);
            check(data.scheme, "highlight", colors.highlightedText, colors.highlight);
        }

        function test_readableColorsStay() {
            verify(Qt.colorEqual(Readable.on(color("#ffffff"), color("#232629")), "#232629"));
            verify(Qt.colorEqual(Readable.on(color("#1b1e20"), color("#f67400")), "#f67400"));
        }

        function test_hueIsKept() {
            const orange = Readable.on(color("#ffffff"), color("#f67400"));
            verify(orange.r > orange.g && orange.g > orange.b);
        }

        function test_anyBackground() {
            for (let level = 0; level <= 255; ++level) {
                const gray = Qt.rgba(level / 255, level / 255, level / 255, 1);
                verify(Readable.contrast(gray, Readable.on(gray, gray)) >= 4.5, level);
            }
        }
    }
}
