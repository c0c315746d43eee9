// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../support/qml"

//! What the controls draw that all windows share.
Item {
    id: root

    width: 600
    height: 600

    Component {
        id: roundButtons
        RoundButton { iconName: "edit-copy"; iconFallback: "edit-cut"; fill: "red"; hoverFill: "green"; iconColor: "blue" }
    }
    Component {
        id: glyphButtons
        RoundButton { glyph: "x"; fill: "red"; borderColor: "yellow"; radius: 4; iconColor: "blue" }
    }
    Component {
        id: sliders
        PlainSlider { trackColor: "red"; fillColor: "green"; ringColor: "blue"; value: 0.5 }
    }
    Component {
        id: switches
        PlainSwitch {
            width: 200; label: "Switch"; textColor: "red"; onColor: "green"; offColor: "blue"; borderColor: "yellow"; ringColor: "cyan"
        }
    }
    Component {
        id: spinBoxes
        PlainSpinBox {
            textColor: "red"; fillColor: "green"; hoverColor: "blue"; borderColor: "yellow"; ringColor: "cyan"; to: 9; value: 5
        }
    }
    Component {
        id: fields
        PlainTextField { fillColor: "green"; borderColor: "yellow"; ringColor: "cyan"; color: "red"; placeholderTextColor: "blue" }
    }
    Component {
        id: comboBoxes
        PlainComboBox {
            textColor: "red"; fillColor: "green"; hoverColor: "blue"; borderColor: "yellow"; popupColor: "magenta"; ringColor: "cyan"
            model: [{ "value": 1, "text": "One" }, { "value": 2, "text": "Two" }]
        }
    }
    Component {
        id: scrollBars
        PlainScrollBar { thumbColor: "red"; trackColor: "green"; height: 100; size: 0.5 }
    }
    Component {
        id: icons
        FallbackIcon { name: "edit-copy"; fallback: "edit-cut" }
    }
    Component {
        id: pulses
        Item {
            id: pulsing

            property alias pulse: pulse

            Pulse { id: pulse; target: pulsing; low: 0.3; duration: 700 }
        }
    }
    Component {
        id: panes
        ScrollPane { width: 100; height: 100; contentHeight: 300; thumbColor: "red"; scrollBarName: "Scroll" }
    }
    Component {
        id: texts
        PlainText {}
    }

    LookCase {
        name: "ControlLook"

        function make(component, properties) {
            const item = createTemporaryObject(component, root, properties || {});
            verify(item);
            return item;
        }
        function init() {
            movePointerAway();
        }

        function test_roundButton() {
            const button = make(roundButtons);
            look(button, {
                "": { "width": 36, "height": 36, "radius": 18, "iconSize": 18, "glyphSize": 13, "iconMask": false,
                      "hoverDuration": 120, "borderColor": "transparent", "ring": "#e9d5ff", "tipShown": true },
                ".background": { "radius": 18, "color": "red", "border.width": 0, "Behavior on color": "120 Linear" },
                "FallbackIcon": {
                    "visible": true, "x": 9, "y": 9, "width": 18, "name": "edit-copy", "fallback": "edit-cut", "size": 18,
                    "color": "blue", "mask": false
                },
                "FocusRing": { "radius": 20, "border.color": "#e9d5ff" },
                "PlainText": { "visible": false }
            });
            lookHovered(button, button, { ".background": { "color": "green" } });
        }

        function test_roundButtonWithGlyph() {
            look(make(glyphButtons), {
                "": { "hoverFill": "red" },
                ".background": { "radius": 4, "border.width": 1, "border.color": "yellow" },
                "FallbackIcon": { "visible": false },
                "FocusRing": { "radius": 6 },
                "PlainText": { "visible": true, "text": "x", "color": "blue", "font.pixelSize": 13 }
            });
        }

        function test_focusRing() {
            const button = make(roundButtons);
            const ring = { "x": -2, "y": -2, "width": 40, "height": 40, "color": "transparent", "border.width": 2 };
            look(button, { "FocusRing": Object.assign({ "visible": false }, ring) });
            button.forceActiveFocus(Qt.TabFocusReason);
            look(button, { "FocusRing": Object.assign({ "visible": true }, ring) });
        }

        function test_tip() {
            const button = make(roundButtons, { "label": "Copy", "x": 100, "y": 100 });
            hover(button);
            tryVerify(() => drawn.part(button, "PlainToolTip") !== null);
            const tip = drawn.part(button, "PlainToolTip");
            look(tip, {
                "": {
                    "delay": 500, "timeout": -1, "margins": 6, "padding": 6, "topPadding": 6, "bottomPadding": 6, "leftPadding": 9,
                    "rightPadding": 9, "gap": 6, "y": -tip.height - 6, "width": tip.contentItem.implicitWidth + 18
                },
                ".background": { "radius": 6, "color": "#241a31", "border.width": 1, "border.color": Qt.rgba(1, 1, 1, 0.18) },
                ".contentItem": {
                    "color": Qt.rgba(1, 1, 1, 0.92), "font.pixelSize": 12, "wrapMode": Text.Wrap, "elide": Text.ElideNone
                }
            });
            compare(tip.x, Math.round((36 - tip.width) / 2));
            button.tip = "word ".repeat(100);
            look(tip, { "": { "width": 378 } });
        }

        function test_icon() {
            look(make(icons), { "": { "width": 16, "height": 16, "size": 16, "color": "white", "mask": false } });
            const icon = make(icons, { "size": 24, "color": "red", "mask": true });
            look(icon, { "": { "width": 24, "height": 24 } });
            tryVerify(() => drawn.part(icon, "Repeater").count === 1);
            // Kirigami's icon.
            const image = Array.from(icon.children).find(child => child.isMask !== undefined);
            look(image, { "": { "width": 24, "height": 24, "color": "red", "isMask": true, "fallback": "" } });
        }

        function test_text() {
            look(make(texts), { "": { "textFormat": Text.PlainText, "elide": Text.ElideRight } });
        }

        function test_pulse() {
            look(make(pulses), {
                "pulse/NumberAnimation": { "duration": 700, "easing.type": Easing.InOutSine, "property": "opacity" },
                "pulse/NumberAnimation[0]": { "from": 1, "to": 0.3 },
                "pulse/NumberAnimation[1]": { "from": 0.3, "to": 1 },
                "pulse": { "loops": -1 } // what an endless animation returns
            });
        }

        function test_slider() {
            const slider = make(sliders);
            look(slider, {
                "": { "width": 200, "height": 24, "minimumValue": 0, "maximumValue": 1 },
                ".background": { "x": 0, "y": 10, "width": 200, "height": 4, "radius": 2, "color": "red" },
                ".background/Rectangle": { "width": 100, "height": 4, "radius": 2, "color": "green" },
                ".handle": {
                    "x": 92, "y": 4, "width": 16, "height": 16, "radius": 8, "color": "#ffffff", "border.width": 3,
                    "border.color": "#8b47eb"
                },
                ".handle/FocusRing": { "radius": 10, "border.color": "blue" }
            });
            lookHovered(slider, slider, { ".handle": { "border.width": 4 } });
        }

        function test_switch() {
            const control = make(switches);
            look(control, {
                "": { "height": 28, "spacing": 12, "implicitWidth": control.contentItem.implicitWidth + 48 },
                ".contentItem": {
                    "text": "Switch", "color": "red", "font.pointSize": 10, "verticalAlignment": Text.AlignVCenter, "leftPadding": 0,
                    "rightPadding": 48
                },
                ".indicator": {
                    "x": 164, "y": 4, "width": 36, "height": 20, "radius": 10, "color": "blue", "border.width": 1,
                    "border.color": "yellow"
                },
                ".indicator/FocusRing": { "radius": 12, "border.color": "cyan" },
                ".indicator/Rectangle[0]": {
                    "x": 2, "y": 2, "width": 16, "height": 16, "radius": 8, "color": "#ffffff", "border.width": 1,
                    "border.color": Qt.rgba(0, 0, 0, 0.15), "Behavior on x": "120 Linear"
                }
            });
            control.checked = true;
            look(control, {
                ".indicator": { "color": "green", "border.color": "green" },
                ".indicator/Rectangle[0]": { "x": 18 }
            });
        }

        function test_spinBox() {
            const box = make(spinBoxes);
            look(box, {
                "": { "width": 120, "height": 32, "leftPadding": 32, "rightPadding": 32, "font.pointSize": 10 },
                ".background": { "radius": 6, "color": "green", "border.width": 1, "border.color": "yellow", "opacity": 1 },
                ".background/FocusRing": { "radius": 8, "border.color": "cyan" },
                ".contentItem": {
                    "color": "red", "opacity": 1, "font.pointSize": 10, "horizontalAlignment": TextInput.AlignHCenter,
                    "verticalAlignment": TextInput.AlignVCenter, "selectionColor": "#8b47eb", "selectedTextColor": "white"
                }
            });
            const step = { "y": 1, "width": 28, "height": 30, "radius": 5, "color": "transparent" };
            const glyph = { "color": "red", "font.pixelSize": 14, "opacity": 1 };
            look(box.down.indicator, { "": Object.assign({ "x": 1, "glyph": "\u2212" }, step), "PlainText": glyph });
            look(box.up.indicator, { "": Object.assign({ "x": 91, "glyph": "+" }, step), "PlainText": glyph });
            lookHovered(box.up.indicator, box.up.indicator, { "": { "color": "blue" } });
            lookHovered(box.down.indicator, box.down.indicator, { "": { "color": "blue" } });
            box.value = 9;
            look(box.up.indicator, { "PlainText": { "opacity": 0.4 } });
            box.value = 0;
            look(box.down.indicator, { "": { "color": "transparent" }, "PlainText": { "opacity": 0.4 } });
            box.enabled = false;
            look(box, { ".background": { "opacity": 0.5 }, ".contentItem": { "opacity": 0.5 } });
        }

        function test_textField() {
            const field = make(fields, { "placeholderText": "Search" });
            look(field, {
                "": {
                    "width": 200, "height": 32, "leftPadding": 10, "rightPadding": 10, "font.pointSize": 10, "color": "red",
                    "verticalAlignment": TextInput.AlignVCenter, "selectionColor": "#8b47eb", "selectedTextColor": "white", "clip": false
                },
                ".background": { "radius": 6, "color": "green", "border.width": 1, "border.color": "yellow" },
                ".background/FocusRing": { "anchors.margins": 0, "radius": 6, "border.color": "cyan" },
                "PlainText": {
                    "x": 10, "width": 180, "text": "Search", "color": "blue", "font.pointSize": 10, "verticalAlignment": Text.AlignVCenter,
                    "visible": true
                }
            });
            field.text = "text";
            field.width = field.contentWidth + 21;
            look(field, { "": { "clip": false }, "PlainText": { "visible": false } });
            field.width = field.contentWidth + 19;
            look(field, { "": { "clip": true } });
        }

        function test_comboBox() {
            const box = make(comboBoxes);
            look(box, {
                "": { "width": 200, "height": 32, "font.pointSize": 10 },
                ".background": { "radius": 6, "color": "green", "border.width": 1, "border.color": "yellow" },
                "FocusRing": { "radius": 8, "border.color": "cyan" },
                ".contentItem": {
                    "text": "One", "leftPadding": 10, "rightPadding": 28, "color": "red", "font.pointSize": 10,
                    "verticalAlignment": Text.AlignVCenter
                },
                ".indicator": { "anchors.verticalCenterOffset": 0, "text": "\u25be", "color": "red", "font.pixelSize": 12 }
            });
            compare(box.indicator.x, 200 - box.indicator.width - 10);
            lookHovered(box, box, { ".background": { "color": "blue" } });
            box.popup.open();
            tryCompare(box.popup, "opened", true);
            look(box.popup, {
                "": { "y": 36, "width": 200, "margins": 6, "padding": 4, "implicitHeight": 68 },
                ".background": { "radius": 8, "color": "magenta", "border.width": 1, "border.color": "yellow" },
                ".contentItem": { "clip": true, "implicitHeight": 60, "highlightMoveDuration": 0 },
                "choice": { "height": 30, "width": 192 },
                "choice.background": { "radius": 4 },
                "choice[0].background": { "color": "blue" },
                "choice[1].background": { "color": "transparent" },
                "choice.contentItem": {
                    "leftPadding": 10, "rightPadding": 10, "color": "red", "font.pointSize": 10, "verticalAlignment": Text.AlignVCenter
                }
            });
            box.model = Array.from({ "length": 20 }, (_, i) => ({ "value": i, "text": "Row" }));
            look(box.popup, { ".contentItem": { "implicitHeight": 240 } });
            box.popup.close();
            tryCompare(box.popup, "visible", false);
        }

        function test_mirrored() {
            const mirror = item => {
                item.LayoutMirroring.enabled = true;
                return item;
            };
            const field = mirror(make(fields));
            look(field, { "": { "effectiveHorizontalAlignment": TextInput.AlignRight } });
            field.text = "a";
            look(field, { "": { "effectiveHorizontalAlignment": TextInput.AlignLeft } });
            const box = mirror(make(spinBoxes));
            compare([box.down.indicator.x, box.up.indicator.x], [91, 1]);
            look(mirror(make(switches)), { ".contentItem": { "leftPadding": 48, "rightPadding": 0 } });
            look(mirror(make(comboBoxes)), { ".contentItem": { "leftPadding": 28, "rightPadding": 10 }, ".indicator": { "x": 10 } });
        }

        function test_scrollBar() {
            const bar = make(scrollBars);
            look(bar, {
                "": { "width": 6, "minimumSize": 0.08, "visible": true },
                ".background": { "radius": 2, "color": "green" },
                ".contentItem": { "radius": 2, "color": "red" }
            });
            bar.size = 1;
            compare(bar.visible, false);
        }

        function test_scrollPane() {
            const pane = make(panes);
            look(pane, { "": { "clip": true }, "PlainScrollBar": { "thumbColor": "red", "trackColor": "transparent" } });
            pane.contentHeight = 100;
            look(pane, { "": { "clip": false } });
        }
    }
}
