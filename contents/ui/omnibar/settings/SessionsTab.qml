// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../common"
import "../../../../components/logic/LiteralText.js" as LiteralText
import "../../../../components/logic/Translatable.js" as Translatable
import "common"
import "sessions"

//! The tab for the sessions of the bridge.
Column {
    id: page
    objectName: "sessionsTab"

    required property var bar
    required property var theme
    required property SettingsTab tab

    readonly property string activeId: bar.sdk ? bar.sdk.currentSessionId : ""

    spacing: 10

    SettingsHeading {
        theme: page.theme
        text: page.bar.tr("Session manager")
    }

    SettingsCaption {
        theme: page.theme
        text: page.bar.tr("Create, switch, rename, or delete conversation sessions.")
    }

    Item {
        width: parent.width
        height: buttons.height

        ShortText {
            objectName: "activeSession"

            anchors.left: parent.left
            anchors.right: buttons.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            whole: page.activeId === "" ? page.bar.tr("No active session")
                : Translatable.filled(page.bar.tr("Active: {id}"), { "id": page.activeId })
            text: LiteralText.oneLine(whole)
            color: page.theme.uiTextMed
            font.pointSize: 10
        }

        Row {
            id: buttons

            anchors.right: parent.right
            spacing: 8

            SettingsButton {
                objectName: "newSessionBtn"

                theme: page.theme
                label: page.bar.tr("New session")
                onClicked: page.bar.sessionCreate()
            }

            SettingsButton {
                objectName: "refreshSessionsBtn"

                theme: page.theme
                label: page.bar.tr("Refresh")
                onClicked: page.bar.refreshSessionsList()
            }
        }
    }

    SettingsCaption {
        objectName: "sessionsLoading"

        theme: page.theme
        visible: page.bar.sessionsLoading
        text: page.bar.tr("Loading...")
    }

    SessionList {
        bar: page.bar
        theme: page.theme
        activeId: page.activeId
    }

    SettingsButton {
        objectName: "deleteEverySessionBtn"

        anchors.left: parent.left
        theme: page.theme
        fill: page.theme.dangerFill
        hoverFill: page.theme.dangerHover
        borderColor: "transparent"
        textColor: page.theme.dangerText
        enabled: !page.bar.deletingAllSessions
        label: page.bar.deletingAllSessions ? page.bar.tr("Deleting sessions...") : page.bar.tr("Delete all sessions")
        onClicked: page.bar.deleteAllSessions()
    }

    SettingsStatus {
        objectName: "sessionsStatus"

        theme: page.theme
        message: page.bar.sessionsStatusMessage
    }

    SettingsStatus {
        objectName: "sessionDeleteStatus"

        theme: page.theme
        message: page.bar.sessionDeleteStatusMessage
    }
}
