// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Window 2.15
import org.kde.loomra.components.controls 1.0

import "omnibar"
import "validation"

//! The voice validation window, which compares speech engines. It needs no bridge. The state is in
//! ValidationController, the content in ValidationView.
Window {
    id: voiceWindow
    objectName: "voiceValidation"

    property alias history: validationController.history
    property alias suiteMode: validationController.suiteMode
    property alias suiteSentences: validationController.suiteSentences
    property alias suiteIndex: validationController.suiteIndex
    property alias suiteRunAll: validationController.suiteRunAll
    property alias suiteResults: validationController.suiteResults
    //! Whether the first frame is on the screen, which shows only the fill.
    property bool firstFrameShown: false
    //! Whether the content is on the screen.
    property bool contentShown: false

    function tr(text) { return validationController.tr(text); }
    function advanceSuite() { validationController.advanceSuite(); }
    function suiteSummaryForBackend(id) { return validationController.suiteSummaryForBackend(id); }

    title: tr("Tovi — Voice STT Validation")
    width: 580
    height: 720
    minimumWidth: 460
    minimumHeight: 560
    color: "#1a1a22"
    visible: true
    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true
    onClosing: validationController.end()
    Component.onCompleted: validationController.begin()
    // Loading a model blocks for as long as a second. The user should see the window meanwhile.
    onContentShownChanged: validationController.loadModel()

    // Deferred so that each frame is on the screen before the next step.
    Connections {
        target: voiceWindow
        enabled: !voiceWindow.contentShown

        function onFrameSwapped() {
            if (voiceWindow.firstFrameShown)
                Qt.callLater(() => { voiceWindow.contentShown = true; });
            else
                Qt.callLater(() => { voiceWindow.firstFrameShown = true; });
        }
    }

    ValidationController {
        id: validationController
        objectName: "validationController"

        onAnnounced: announcer.announce(text)
    }

    //! Dark, whatever the OmniBar's theme is.
    OmniBarTheme {
        id: darkTheme
        objectName: "validationTheme"
    }

    Announcer {
        id: announcer
        objectName: "announcer"
    }

    LateLoader {
        anchors.fill: parent
        anchors.rightMargin: 2
        focus: true
        file: Qt.resolvedUrl("validation/ValidationView.qml")
        properties: ({ "validation": validationController, "theme": darkTheme })
        wanted: voiceWindow.firstFrameShown
        Keys.onEscapePressed: voiceWindow.close()
    }
}
