// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Window 2.15
import org.kde.loomra.components.controls 1.0

import "omnibar"
import "omnibar/settings/common"
import "validation"

//! The voice validation window, which compares speech engines. It needs no bridge. The state is in
//! ValidationController; this file places the parts.
Window {
    id: voiceWindow
    objectName: "voiceValidation"

    readonly property int margin: 16
    readonly property int minimumListHeight: 140

    property alias history: validationController.history
    property alias suiteMode: validationController.suiteMode
    property alias suiteSentences: validationController.suiteSentences
    property alias suiteIndex: validationController.suiteIndex
    property alias suiteRunAll: validationController.suiteRunAll
    property alias suiteResults: validationController.suiteResults
    //! Whether the first frame is on the screen.
    property bool firstFrameShown: false

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
    onClosing: validationController.end()
    Component.onCompleted: validationController.begin()
    // Loading a model blocks for as long as a second. The user should see a window meanwhile.
    onFirstFrameShownChanged: validationController.loadModel()

    Connections {
        target: voiceWindow
        enabled: !voiceWindow.firstFrameShown

        // Deferred so that the frame is on the screen before.
        function onFrameSwapped() {
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

    FocusScope {
        anchors.fill: parent
        focus: true
        Keys.onEscapePressed: voiceWindow.close()
        Accessible.ignored: true

        ScrollPane {
            id: pane
            objectName: "validationPane"

            anchors.fill: parent
            anchors.rightMargin: 2
            contentHeight: scores.y + scores.height + voiceWindow.margin
            thumbColor: darkTheme.uiScrollThumb
            scrollBarName: voiceWindow.tr("Scroll")

            Column {
                id: head

                x: voiceWindow.margin
                y: voiceWindow.margin
                width: pane.width - 2 * x
                spacing: 12

                Item {
                    width: parent.width
                    height: Math.max(titles.height, pill.height)

                    Column {
                        id: titles

                        anchors.left: parent.left
                        anchors.right: pill.left
                        anchors.rightMargin: 12
                        anchors.verticalCenter: parent.verticalCenter

                        SettingsHeading {
                            theme: darkTheme
                            font.pointSize: 13
                            text: voiceWindow.tr("Voice STT Validation")
                        }

                        // Intentional: VoiceBridge has no such property, and must not get one, so this stays blank.
                        SettingsCaption {
                            objectName: "subtitle"

                            theme: darkTheme
                            text: validationController.voice && validationController.voice.sttBackendLabel || ""
                        }
                    }

                    StatePill {
                        id: pill

                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        validation: validationController
                    }
                }

                ErrorBanner {
                    width: parent.width
                    validation: validationController
                    theme: darkTheme
                }

                EngineBox {
                    width: parent.width
                    validation: validationController
                    theme: darkTheme
                }

                LevelBar {
                    width: parent.width
                    validation: validationController
                    theme: darkTheme
                }

                ListeningButtons {
                    width: parent.width
                    validation: validationController
                    theme: darkTheme
                }

                SettingsStatus {
                    objectName: "notice"

                    theme: darkTheme
                    message: validationController.notice
                    color: darkTheme.warningText
                }

                StateSwitch {
                    objectName: "suiteSwitch"

                    theme: darkTheme
                    label: voiceWindow.tr("Sentence suite")
                    on: validationController.suiteMode
                    onSwitched: validationController.chooseMode(on)
                }

                LateLoader {
                    width: parent.width
                    visible: wanted
                    file: Qt.resolvedUrl("validation/SuiteControls.qml")
                    properties: ({ "validation": validationController, "theme": darkTheme })
                    wanted: validationController.suiteMode
                }
            }

            Item {
                id: lists

                x: head.x
                y: head.y + head.height + head.spacing
                width: head.width
                height: Math.max(voiceWindow.minimumListHeight, pane.height - y - head.spacing - scores.height - voiceWindow.margin)

                HistoryList {
                    visible: !validationController.suiteMode
                    validation: validationController
                    theme: darkTheme
                    maximumHeight: lists.height
                }

                LateLoader {
                    width: parent.width
                    visible: wanted
                    file: Qt.resolvedUrl("validation/SuiteResultList.qml")
                    properties: ({ "validation": validationController, "theme": darkTheme, "maximumHeight": () => lists.height })
                    wanted: validationController.suiteMode
                }
            }

            SettingsCaption {
                id: scores
                objectName: "scoresLine"

                x: head.x
                y: lists.y + lists.height + head.spacing
                width: head.width
                theme: darkTheme
                text: validationController.scoresLine
            }
        }
    }
}
