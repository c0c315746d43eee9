// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtGraphicalEffects 1.15

//! The shadow of a rounded panel. It is cast by a separate rectangle, so that changes inside the panel, such as the
//! blinking cursor, don't render the blur again. Qt Quick's software renderer draws no effects, but creating one loads
//! the OpenGL driver, some 50 MiB, so there is none.
Rectangle {
    id: caster
    objectName: "panelShadow"

    property color shadowColor: Qt.rgba(0, 0, 0, 0.40)
    property int shadowRadius: 24

    readonly property bool hasShaders: GraphicsInfo.shaderType !== GraphicsInfo.UnknownShadingLanguage

    color: "black"
    visible: hasShaders
    layer.enabled: hasShaders
    layer.effect: DropShadow {
        verticalOffset: 4
        radius: caster.shadowRadius
        samples: 49
        color: caster.shadowColor
        transparentBorder: true
    }
    Accessible.ignored: true
}
