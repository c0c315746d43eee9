// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../logic/Geometry.js" as Geometry
import "common"
import "look"

//! The tab for theme, opacity and transparency.
Column {
    id: look
    objectName: "lookTab"

    required property var bar
    required property var theme
    required property SettingsTab tab

    spacing: 12

    SettingsHeading {
        theme: look.theme
        text: look.bar.tr("OmniBar appearance")
    }

    Item {
        width: parent.width
        height: 30

        PlainText {
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            text: look.bar.tr("Theme")
            color: look.theme.uiTextMed
            font.pointSize: 10
        }

        ThemeSegments {
            anchors.right: parent.right
            bar: look.bar
            theme: look.theme
        }
    }

    Item {
        width: parent.width
        height: 30

        PlainText {
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            text: look.bar.tr("Opacity")
            color: look.theme.uiTextMed
            font.pointSize: 10
        }

        PlainSlider {
            objectName: "opacitySlider"

            anchors.right: percentage.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            trackColor: look.theme.uiWellFillHi
            fillColor: look.theme.uiAccentBorder
            ringColor: look.theme.focusRing
            from: 0.65
            to: 1.0
            stepSize: 0.05
            value: Geometry.clampOpacity(look.bar.appearanceStore.windowOpacity)
            Accessible.name: look.bar.tr("Opacity")
            onMoved: look.bar.appearanceStore.windowOpacity = value
        }

        PlainText {
            id: percentage
            objectName: "opacityValue"

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: 44
            horizontalAlignment: Text.AlignRight
            text: Math.round(Geometry.clampOpacity(look.bar.appearanceStore.windowOpacity) * 100) + "%"
            color: look.theme.uiTextSoft
            font.pointSize: 10
        }
    }

    SettingsSwitch {
        objectName: "transparencySwitch"

        theme: look.theme
        label: look.bar.tr("Background transparency")
        checked: look.bar.appearanceStore.translucentBackground
        onToggled: {
            look.bar.appearanceStore.translucentBackground = checked;
            look.bar.applyWindowBlurBehind();
        }
    }

    SettingsCaption {
        theme: look.theme
        text: look.bar.tr("When off, the bar and chat use a solid background and blur behind the window is turned off.")
    }
}
