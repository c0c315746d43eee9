// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The colours of the OmniBar. Each token depends on the two properties below.
QtObject {
    //! Light colours for chat, settings and dialogs. The prompt bar and the scrim are always dark.
    property bool uiLight: false
    //! Frosted panels. When off, panels are opaque and have no tints.
    property bool translucentBackground: true

    //! The value of a token. Without the last two arguments it doesn't depend on translucency.
    function pick(dark, light, darkOpaque, lightOpaque) {
        if (translucentBackground || darkOpaque === undefined)
            return uiLight ? light : dark;
        return uiLight ? lightOpaque : darkOpaque;
    }

    // Tokens: dark, light[, dark opaque, light opaque], each red, green, blue, alpha in 0 to 1.
    readonly property color uiPanelBase: pick(Qt.rgba(0.08, 0.09, 0.11, 0.90), Qt.rgba(0.94, 0.95, 0.97, 0.96), Qt.rgba(0.10, 0.11, 0.14, 1.0), Qt.rgba(0.96, 0.97, 0.99, 1.0))
    readonly property color uiPanelBorder: pick(Qt.rgba(1, 1, 1, 0.13), Qt.rgba(0, 0, 0, 0.14))
    readonly property color uiPanelGradTop: pick(Qt.rgba(1, 1, 1, 0.06), Qt.rgba(1, 1, 1, 0.65), Qt.rgba(0, 0, 0, 0), Qt.rgba(0, 0, 0, 0))
    readonly property color uiPanelGradBot: pick(Qt.rgba(0, 0, 0, 0.10), Qt.rgba(0, 0, 0, 0.05), Qt.rgba(0, 0, 0, 0), Qt.rgba(0, 0, 0, 0))
    readonly property color uiBarTint0: pick(Qt.rgba(0.20, 0.10, 0.22, 0.45), Qt.rgba(0.92, 0.88, 0.98, 0.42), Qt.rgba(0, 0, 0, 0), Qt.rgba(0, 0, 0, 0))
    readonly property color uiBarTint1: pick(Qt.rgba(0.18, 0.08, 0.20, 0.30), Qt.rgba(0.90, 0.88, 0.96, 0.32), Qt.rgba(0, 0, 0, 0), Qt.rgba(0, 0, 0, 0))
    readonly property color uiBarTint2: pick(Qt.rgba(0.10, 0.10, 0.18, 0.45), Qt.rgba(0.86, 0.90, 0.98, 0.38), Qt.rgba(0, 0, 0, 0), Qt.rgba(0, 0, 0, 0))
    readonly property color uiBarTopLine: pick(Qt.rgba(1, 1, 1, 0.08), Qt.rgba(0, 0, 0, 0.07))
    readonly property color uiWelcomeBg: pick(Qt.rgba(1, 1, 1, 0.30), Qt.rgba(1, 1, 1, 0.72), Qt.rgba(0.12, 0.13, 0.16, 1), Qt.rgba(0.98, 0.99, 1, 1))
    readonly property color uiWelcomeBorder: pick(Qt.rgba(1, 1, 1, 0.08), Qt.rgba(0, 0, 0, 0.08))
    readonly property color uiMsgAreaBg: pick(Qt.rgba(1, 1, 1, 0.03), Qt.rgba(0, 0, 0, 0.04), Qt.rgba(1, 1, 1, 0.06), Qt.rgba(0, 0, 0, 0.06))
    readonly property color uiMsgAreaBorder: pick(Qt.rgba(1, 1, 1, 0.06), Qt.rgba(0, 0, 0, 0.08))
    readonly property color uiScrollTrack: pick(Qt.rgba(1, 1, 1, 0.05), Qt.rgba(0, 0, 0, 0.06))
    readonly property color uiScrollThumb: pick(Qt.rgba(1, 1, 1, 0.3), Qt.rgba(0, 0, 0, 0.28))
    readonly property color uiAsstBubble: pick(Qt.rgba(1, 1, 1, 0.07), Qt.rgba(0, 0, 0, 0.06))
    readonly property color uiAsstBubbleBorder: pick(Qt.rgba(1, 1, 1, 0.08), Qt.rgba(0, 0, 0, 0.10))
    readonly property color uiTextStrong: pick(Qt.rgba(1, 1, 1, 0.9), Qt.rgba(0.06, 0.07, 0.10, 0.95))
    readonly property color uiTextMed: pick(Qt.rgba(1, 1, 1, 0.78), Qt.rgba(0.16, 0.18, 0.24, 0.96))
    readonly property color uiTextSoft: pick(Qt.rgba(1, 1, 1, 0.62), Qt.rgba(0.28, 0.30, 0.36, 0.96))
    readonly property color uiTextFaint: pick(Qt.rgba(1, 1, 1, 0.50), Qt.rgba(0.38, 0.40, 0.46, 0.94))
    readonly property color uiTextCaption: pick(Qt.rgba(1, 1, 1, 0.58), Qt.rgba(0.30, 0.32, 0.38, 0.95))
    readonly property color uiSettingsDivider: pick(Qt.rgba(1, 1, 1, 0.12), Qt.rgba(0, 0, 0, 0.10))
    readonly property color uiAccentBorder: pick(Qt.rgba(0.55, 0.28, 0.92, 0.85), Qt.rgba(0.55, 0.28, 0.92, 0.85))
    readonly property color uiAccentDim: pick(Qt.rgba(0.55, 0.28, 0.92, 0.28), Qt.rgba(0.55, 0.28, 0.92, 0.18))
    readonly property color uiSegDarkOn: pick(Qt.rgba(0.20, 0.22, 0.28, 0.98), Qt.rgba(0.12, 0.13, 0.16, 1))
    readonly property color uiSegLightOn: pick(Qt.rgba(0.90, 0.91, 0.95, 0.98), Qt.rgba(0.99, 0.99, 1, 1))
    readonly property color uiSegTextOnDark: pick(Qt.rgba(0.96, 0.97, 0.99, 0.98), Qt.rgba(0.96, 0.97, 0.99, 0.98))
    readonly property color uiSegTextOnLight: pick(Qt.rgba(0.08, 0.09, 0.12, 0.95), Qt.rgba(0.08, 0.09, 0.12, 0.95))
    readonly property color uiInputText: pick(Qt.rgba(1, 1, 1, 0.92), Qt.rgba(0.06, 0.07, 0.10, 0.95))
    readonly property color uiPlaceholder: pick(Qt.rgba(1, 1, 1, 0.45), Qt.rgba(0.35, 0.37, 0.42, 0.75))
    readonly property color uiIconMuted: pick(Qt.rgba(1, 1, 1, 0.80), Qt.rgba(0.2, 0.22, 0.28, 0.88))
    readonly property color uiWellFill: pick(Qt.rgba(1, 1, 1, 0.08), Qt.rgba(0, 0, 0, 0.06))
    readonly property color uiWellBorder: pick(Qt.rgba(1, 1, 1, 0.07), Qt.rgba(0, 0, 0, 0.10))
    readonly property color uiWellFillHi: pick(Qt.rgba(1, 1, 1, 0.12), Qt.rgba(0, 0, 0, 0.10))
    readonly property color uiTopBadgeBg: pick(Qt.rgba(0.10, 0.11, 0.14, 0.90), Qt.rgba(0.96, 0.97, 0.99, 0.94))
    readonly property color uiCompactGrad0: pick(Qt.rgba(0.16, 0.16, 0.18, 0.80), Qt.rgba(0.90, 0.90, 0.93, 0.80), Qt.rgba(0.14, 0.14, 0.17, 1), Qt.rgba(0.94, 0.94, 0.97, 1))
    readonly property color uiCompactGrad1: pick(Qt.rgba(0.12, 0.12, 0.14, 0.80), Qt.rgba(0.88, 0.88, 0.92, 0.80), Qt.rgba(0.11, 0.11, 0.14, 1), Qt.rgba(0.92, 0.92, 0.96, 1))
    readonly property color uiConnDotBorder: pick(Qt.rgba(0.1, 0.1, 0.18, 1), Qt.rgba(0.85, 0.87, 0.92, 1))
    readonly property color uiMsgUserText: pick(Qt.rgba(1, 1, 1, 0.90), Qt.rgba(0.06, 0.07, 0.10, 0.95))
    readonly property color uiHintLine: pick(Qt.rgba(1, 1, 1, 0.52), Qt.rgba(0.35, 0.37, 0.42, 0.65))
    readonly property color uiPlanCardBg: pick(Qt.rgba(0.15, 0.35, 0.55, 0.25), Qt.rgba(0.82, 0.90, 0.98, 0.55))
    readonly property color uiPlanCardBorder: pick(Qt.rgba(0.60, 0.20, 0.98, 0.35), Qt.rgba(0.50, 0.30, 0.85, 0.40))
    readonly property color uiSuccessBarBg: pick(Qt.rgba(0.2, 0.5, 0.3, 0.3), Qt.rgba(0.75, 0.92, 0.82, 0.55))
    readonly property color uiSuccessBarBorder: pick(Qt.rgba(0.4, 0.8, 0.5, 0.4), Qt.rgba(0.2, 0.65, 0.45, 0.45))
    readonly property color uiUndoBarBg: pick(Qt.rgba(1, 1, 1, 0.06), Qt.rgba(0, 0, 0, 0.05))
    readonly property color uiUndoBarBorder: pick(Qt.rgba(1, 1, 1, 0.1), Qt.rgba(0, 0, 0, 0.10))

    // Fixed pairs: dark, light.
    readonly property color panelFrameStart: pick("#6e35b1", "#b17fe6")
    readonly property color panelFrameMiddle: pick("#d14b75", "#e07da0")
    readonly property color panelFrameEnd: pick("#e8782a", "#f0a060")
    readonly property color panelFillTop: pick("#1a1124", "#f8f5fc")
    readonly property color panelFillBottom: pick("#0d0812", "#f0edf6")
    readonly property color panelShadow: pick(Qt.rgba(0, 0, 0, 0.45), Qt.rgba(0, 0, 0, 0.18))
    readonly property int panelShadowRadius: uiLight ? 16 : 24
    readonly property color progressFill: pick("#4ade80", "#16a34a")
    readonly property color runOutline: pick("transparent", Qt.rgba(0.35, 0.05, 0.65, 0.75))
    readonly property color chosenRow: pick(Qt.rgba(0.60, 0.20, 0.98, 0.38), Qt.rgba(0.60, 0.20, 0.98, 0.22))
    readonly property color accentText: pick("#d8b4fe", "#4c1d95")
    readonly property color positiveFill: "#15803d"
    readonly property color positiveHover: "#166534"
    readonly property color positiveText: pick("#4ade80", "#15803d")
    readonly property color dangerFill: Qt.rgba(0.90, 0.22, 0.21, 0.18)
    readonly property color dangerHover: Qt.rgba(0.90, 0.22, 0.21, 0.35)
    readonly property color dangerText: pick("#ff8a80", "#8c1d18")
    readonly property color warningText: pick("#ffd54f", "#7a4f00")
    readonly property color headerHover: pick(Qt.rgba(1, 1, 1, 0.10), Qt.rgba(0, 0, 0, 0.08))

    //! Fill and border of a chat bubble by the row's role. For unknown roles use the assistant's.
    readonly property var bubbles: ({
        "user": {
            "fill": pick(Qt.rgba(0.25, 0.18, 0.35, 0.40), Qt.rgba(0.55, 0.28, 0.92, 0.12)),
            "border": pick(Qt.rgba(0.40, 0.25, 0.60, 0.30), Qt.rgba(0.55, 0.28, 0.92, 0.20))
        },
        "system": {
            "fill": pick(Qt.rgba(0.40, 0.30, 0.10, 0.25), Qt.rgba(0.60, 0.45, 0.10, 0.08)),
            "border": pick(Qt.rgba(0.60, 0.45, 0.15, 0.25), Qt.rgba(0.65, 0.50, 0.15, 0.20))
        },
        "assistant": {
            "fill": pick(Qt.rgba(1, 1, 1, 0.03), Qt.rgba(0, 0, 0, 0.04)),
            "border": pick(Qt.rgba(1, 1, 1, 0.08), Qt.rgba(0, 0, 0, 0.08))
        }
    })

    //! The ring around the control with the keyboard focus.
    readonly property color focusRing: pick("#c084fc", "#7c3aed")
}
