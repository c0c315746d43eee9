// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Window 2.15
import QtQuick.Templates 2.15 as T

//! A tooltip whose text is never interpreted as markup. It leaves Escape to the window. It is shown above its
//! control, or below if there is no room above. Without room there either, it isn't shown, because it would cover the
//! control.
T.ToolTip {
    id: toolTip

    //! The HoverTip that shows it.
    required property var tip
    //! Distance to the control.
    readonly property int gap: 6

    readonly property size windowSize: Qt.size(tip.control.Window.width, tip.control.Window.height)
    // Measured each time that the tooltip becomes wanted, because mapToItem() doesn't notify of movements.
    readonly property real roomAbove: tip.wanted ? tip.control.mapToItem(null, 0, 0).y : 0
    readonly property real roomBelow: windowSize.height - roomAbove - tip.control.height
    readonly property real neededHeight: implicitHeight + gap + margins
    readonly property bool hasRoom: implicitWidth + 2 * margins <= windowSize.width && neededHeight <= Math.max(roomAbove, roomBelow)

    parent: tip.control
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: roomAbove >= neededHeight || !parent ? -height - gap : parent.height + gap
    margins: 6
    padding: 6
    leftPadding: 9
    rightPadding: 9
    // Long text wraps instead of leaving the screen.
    implicitWidth: Math.min(contentItem.implicitWidth, 360) + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    visible: tip.wanted && hasRoom
    text: tip.text
    delay: 500
    timeout: -1
    closePolicy: T.Popup.NoAutoClose

    // Dark in both themes, like the bar.
    background: Rectangle {
        radius: 6
        color: "#241a31"
        border.width: 1
        border.color: Qt.rgba(1, 1, 1, 0.18)
    }
    contentItem: PlainText {
        objectName: "toolTipText"
        text: toolTip.text.length > toolTip.tip.longest ? toolTip.text.substring(0, toolTip.tip.longest) + "…" : toolTip.text
        color: Qt.rgba(1, 1, 1, 0.92)
        font.pixelSize: 12
        wrapMode: Text.Wrap
        elide: Text.ElideNone
    }
}
