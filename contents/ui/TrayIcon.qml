// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Window 2.15
import org.kde.loomra.components.controls 1.0

import "../../components/logic/Translatable.js" as Translatable
import "tray"

//! The tray view: shows the state of the agent like a panel applet, but in a separate window. A small window shows only
//! an icon with a dot; a larger one also shows the state as text and a list of actions, and scrolls if they don't fit.
//! The actions are placeholders that only write to the log.
Window {
    id: trayView
    objectName: "trayView"

    readonly property var bridge: typeof agentBridge !== "undefined" ? agentBridge : null
    readonly property string status: bridge ? bridge.status : "disconnected"
    readonly property var looks: ({
        "disconnected": { "color": "#FF0000", "text": tr("Not connected") },
        "thinking": { "color": "#FFD700", "text": tr("Processing...") },
        "running": { "color": "#FFD700", "text": tr("Processing...") },
        "error": { "color": "#FF0000", "text": tr("Error") }
    })
    readonly property var look: looks.hasOwnProperty(status) ? looks[status] : { "color": "#098909", "text": tr("Connected") }
    readonly property color statusColor: look.color
    readonly property string toolTipMainText: tr("Warden Desk")
    readonly property string toolTipSubText: look.text
    readonly property var actions: [tr("Open Omni-Bar"), tr("Restart Agent"), tr("View Logs"), tr("Settings")]

    //! Below this width and height, in pixels, only the icon is shown.
    readonly property int compactBelow: 96
    readonly property bool compact: width < compactBelow || height < compactBelow

    function tr(text) { return Translation.tr(text); }

    function trigger(action) {
        console.log("[TrayIcon] " + action);
    }

    title: toolTipMainText
    width: 200
    height: 200
    visible: true
    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true
    color: systemColors.window

    // Not called "palette": within a button that is a property of the button.
    SystemPalette {
        id: systemColors
    }

    Loader {
        anchors.fill: parent
        active: trayView.compact
        Accessible.ignored: true
        sourceComponent: TrayButton {
            objectName: "compactForm"
            tray: trayView
        }
    }

    Loader {
        anchors.fill: parent
        active: !trayView.compact
        focus: true
        Accessible.ignored: true
        sourceComponent: ScrollPane {
            objectName: "fullForm"

            focus: true
            contentHeight: content.implicitHeight
            revealMargin: content.topPadding
            thumbColor: Qt.rgba(systemColors.windowText.r, systemColors.windowText.g, systemColors.windowText.b, 0.35)
            scrollBarName: trayView.tr("Scroll actions")

            Column {
                id: content

                width: parent.width
                topPadding: 6
                bottomPadding: 6
                spacing: 4

                TrayButton {
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: 36
                    height: 36
                    tray: trayView
                }

                PlainText {
                    objectName: "statusText"
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: parent.width - 16
                    text: trayView.toolTipMainText + "\n" + Translatable.filled(trayView.tr("Status: {status}"), { "status": trayView.status })
                    color: systemColors.windowText
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                }

                Repeater {
                    model: trayView.actions

                    PlainButton {
                        id: action
                        objectName: "trayAction"

                        required property string modelData

                        anchors.horizontalCenter: parent.horizontalCenter
                        width: Math.min(184, content.width - 16)
                        implicitHeight: 24
                        label: modelData
                        onClicked: trayView.trigger(modelData)

                        background: Rectangle {
                            radius: 4
                            color: action.hovered || action.pressed ? systemColors.midlight : systemColors.button
                        }
                        contentItem: PlainText {
                            text: action.label
                            color: systemColors.buttonText
                            fontSizeMode: Text.HorizontalFit
                            minimumPointSize: 7
                            horizontalAlignment: Text.AlignHCenter
                            verticalAlignment: Text.AlignVCenter
                            Accessible.ignored: true
                        }

                        FocusRing {
                            control: action
                            anchors.margins: 0
                            radius: 4
                            border.color: systemColors.highlight
                        }
                    }
                }
            }
        }
    }
}
