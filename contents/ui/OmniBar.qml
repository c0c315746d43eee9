// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Window 2.15
import Qt.labs.settings 1.0
import org.kde.loomra.components.controls 1.0

import "omnibar"
import "omnibar/bar"
import "omnibar/common"
import "omnibar/controllers"
import "omnibar/logic/Geometry.js" as Geometry

//! The OmniBar: a window that covers the first screen, with the prompt bar, the conversation and the settings sheet. In
//! compact mode it is a round bubble in the corner. This file is its table of contents: the members that the window
//! offers to its parts and to tests, and the position of each part. The logic is in controllers and components.
//! Long, because it has a line for each member.
Window {
    id: omniBar
    objectName: "omniBar"

    // ---- The window
    title: tr("Tovi")
    flags: Qt.WindowStaysOnTopHint | Qt.FramelessWindowHint | Qt.Dialog
    color: "transparent"
    visible: true
    width: compactMode ? bubbleSize : screenWidth
    height: compactMode ? bubbleSize : screenHeight
    opacity: Geometry.clampOpacity(omniUiStore.windowOpacity) * windowFade
    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    // ---- Brand
    readonly property color toviMagenta: "#FB21FD"
    readonly property color toviBlue: "#2756FB"
    readonly property color toviAccent: Qt.rgba(0.60, 0.20, 0.98, 1.0)
    readonly property color toviAccentDim: Qt.rgba(0.60, 0.20, 0.98, 0.22)
    readonly property color toviAccentBorder: Qt.rgba(0.60, 0.20, 0.98, 0.35)
    property string systemName: "KeldaOS"
    // Not shown anywhere: the idle bar with its cards serves as welcome screen.
    property string welcomeTitle: tr("Welcome!")
    property string welcomeSubtitle: tr("Ask anything — I’ll help you with actions, settings, logs, and guidance.")

    // ---- Native objects; each may be missing
    property var bridge: typeof agentBridge !== "undefined" ? agentBridge : null
    property var sdk: typeof loomraSDK !== "undefined" ? loomraSDK : null
    property var config: typeof configManager !== "undefined" ? configManager : null
    readonly property var voice: voicePath.voiceBridgeObject
    readonly property string bridgeStatus: bridge ? bridge.status : "disconnected"
    readonly property bool thinking: bridge ? bridge.isThinking : false

    function tr(text) { return Translation.tr(text); }
    //! Tells screen readers about a change that has no focus.
    function announce(text) { announcer.announce(text); }

    // ---- Geometry
    property int barWidth: 720
    property int barHeight: 56
    property int barRadius: 18
    property int bubbleSize: 56
    property int bubbleMargin: 20
    property int chatMinHeight: 260
    property int chatPanelBottomMargin: 10
    property int chatTopSafePadding: 24
    property alias screenWidth: surface.screenWidth
    property alias screenHeight: surface.screenHeight
    property alias shortcutHintHeight: surface.shortcutHintHeight
    property alias chatHeightBudget: surface.chatHeightBudget
    property alias chatMaxHeight: surface.chatMaxHeight

    // ---- Surface
    property alias appearanceStore: omniUiStore
    property alias compactMode: surface.compactMode
    property alias chatExpanded: surface.chatExpanded
    property alias userExpanded: surface.userExpanded
    property alias settingsPanelOpen: surface.settingsPanelOpen
    property alias windowFade: surface.windowFade
    property alias windowEffects: surface.windowEffects
    property alias chatPanelShown: surface.chatPanelShown
    property alias barIdle: surface.barIdle
    //! Parts that the first frame doesn't need are created once this is true.
    property bool firstFrameShown: false

    function centerOnScreen() { surface.centerOnScreen(); }
    function positionBubble() { surface.positionBubble(); }
    function shrinkToCompactBubble() { surface.shrinkToCompactBubble(); }
    function expandFromBubble() { surface.expandFromBubble(); }
    function collapseForAction() { surface.collapseForAction(); }
    function minimise() { surface.minimise(); }
    function summon() { surface.summon(); }
    function toggleSettings() { surface.toggleSettings(); }
    function handleEscapeKey() { surface.handleEscapeKey(); }
    function applyWindowBlurBehind() { surface.applyWindowBlurBehind(); }
    function startClosing() { closing.start(); }
    // The loader passes the focus on, also if the bubble is created later.
    function focusBubble() { compactBubbleLoader.forceActiveFocus(); }

    // ---- Conversation
    property alias inputField: barCard.inputField
    //! What keys do in the input, see logic/KeyTable.js. The first row that applies wins.
    readonly property var inputKeys: [].concat(slashCommands.inputKeys, sessionPopup.inputKeys, conversation.inputKeys, surface.inputKeys)
    //! The user has changed the text in the input. Not emitted when the program does.
    signal inputEdited()

    property alias chatModel: conversation.chatModel
    property alias contextWindowSize: conversation.contextWindowSize
    property alias lastInputMode: conversation.lastInputMode
    property alias pendingUiJson: conversation.pendingUiJson
    property alias availableAgents: conversation.availableAgents
    property alias currentAgentId: conversation.currentAgentId
    property alias currentModelId: conversation.currentModelId
    property alias sessionUsageInput: conversation.sessionUsageInput
    property alias sessionUsageOutput: conversation.sessionUsageOutput
    property alias sessionUsageTotal: conversation.sessionUsageTotal
    property alias usageMax: conversation.usageMax
    property alias usageProgress: conversation.usageProgress
    property alias stickyPhaseLabel: phases.stickyPhaseLabel
    property alias activePhaseLabel: phases.activePhaseLabel
    property alias responseSuggestionsModel: suggestions.responseSuggestionsModel
    property alias suggestionsShown: suggestions.shown
    readonly property var agentMenu: agentMenuLoader.item

    function submitInput() { conversation.submitInput(); }
    function appendUserMessage(msg) { conversation.appendUserMessage(msg); }
    function appendAgentMessage(msg) { conversation.appendAgentMessage(msg); }
    function appendStructuredBlocks(blocks, fallback) { conversation.appendStructuredBlocks(blocks, fallback); }
    function appendAssistantText(text) { conversation.appendAssistantText(text); }
    function appendSystemMessage(msg) { conversation.appendSystemMessage(msg); }
    function clearConversation() { conversation.clear(); }
    function latestTurn() { return conversation.latestTurn(); }
    function lastText(role) { return conversation.lastText(role); }
    function sendToBridge(prompt) { conversation.sendToBridge(prompt); }
    function scrollToBottom() { conversation.scrollToBottom(); }
    function buildChatContext() { return conversation.buildChatContext(); }
    function loadAvailableAgents() { conversation.loadAvailableAgents(); }
    function updateCurrentAgent() { conversation.updateCurrentAgent(); }
    function sendChatFeedback(vote, messageIndex, assistantText) { conversation.sendChatFeedback(vote, messageIndex, assistantText); }
    function voteMessage(index, vote) { conversation.voteMessage(index, vote); }
    function selectOption(messageIndex, choiceId, choiceLabel) { conversation.selectOption(messageIndex, choiceId, choiceLabel); }
    function submitSlider(messageIndex, value, action) { conversation.submitSlider(messageIndex, value, action); }
    function saveWidgetState(index, state) { conversation.saveWidgetState(index, state); }
    function copyMessage(index) { return conversation.copyMessage(index); }
    function refreshResponseSuggestions(bridgeFollowUps) { suggestions.refreshResponseSuggestions(bridgeFollowUps); }
    function initResponseSuggestions() { suggestions.initResponseSuggestions(); }
    function activateResponseSuggestion(prompt) { suggestions.activateResponseSuggestion(prompt); }

    // ---- Plans
    property alias pendingPlan: plan.pendingPlan
    property alias planExecuting: plan.planExecuting
    property alias planExecutingVisible: plan.planExecutingVisible
    property alias planDoneLabel: plan.planDoneLabel
    property alias lastActionId: plan.lastActionId
    property alias pendingPlanMessage: plan.pendingPlanMessage
    property alias pendingChatAfterPlan: plan.pendingChatAfterPlan
    property alias planRequestInFlight: plan.planRequestInFlight
    property alias planCardShown: plan.planCardShown
    property alias undoShown: plan.undoShown
    property alias undoSeconds: plan.undoSeconds
    property alias undoSecondsLeft: plan.undoSecondsLeft

    function requestPlan(message) { plan.requestPlan(message); }
    function runPlan() { plan.runPlan(); }
    function cancelPlan() { plan.cancelPlan(); }
    function undoLastAction() { plan.undoLastAction(); }
    function dismissUndo() { plan.dismissUndo(); }
    function isReadOnlyPlan(results) { return plan.isReadOnlyPlan(results); }
    function isQueryProcessing() { return plan.isQueryProcessing(); }
    function stopActiveQuery() { plan.stopActiveQuery(); }

    // ---- Voice
    property alias voiceConfirmPending: voicePath.voiceConfirmPending
    property alias voiceConfirmText: voicePath.voiceConfirmText
    property alias voiceConfirmTotal: voicePath.voiceConfirmTotal
    property alias voiceConfirmCountdown: voicePath.voiceConfirmCountdown
    property alias voiceRephrasing: voicePath.voiceRephrasing
    property alias voiceComposeBase: voicePath.voiceComposeBase
    property alias voiceManualSubmit: voicePath.voiceManualSubmit
    property alias voiceConfirmTimer: voicePath.voiceConfirmTimer

    function voiceJoinText(base, segment) { return voicePath.voiceJoinText(base, segment); }
    function voiceApplyComposeField(partialOrFinal) { voicePath.voiceApplyComposeField(partialOrFinal); }
    function voiceConfirmSend() { voicePath.voiceConfirmSend(); }
    function voiceConfirmCancel() { voicePath.voiceConfirmCancel(); }
    function voiceRephrase() { voicePath.voiceRephrase(); }
    function speakReply(text) { voicePath.speakReply(text); }

    // ---- Models
    property alias modelsList: models.modelsList
    property alias freeModelsList: models.freeModelsList
    property alias modelsLoading: models.modelsLoading
    property alias modelsStatusMessage: models.modelsStatusMessage
    property alias pendingDefaultModelId: models.pendingDefaultModelId
    property alias modelSearchFilter: models.modelSearchFilter
    property alias modelsRetryAttempts: models.modelsRetryAttempts
    property alias settingsModelsListModel: models.settingsModelsListModel
    property alias settingsModelsListRef: models.settingsModelsListModel
    property alias freeCheckRunning: freeCheck.freeCheckRunning
    property alias freeCheckResults: freeCheck.freeCheckResults
    property alias freeCheckRecommended: freeCheck.freeCheckRecommended
    property alias freeCheckStatus: freeCheck.freeCheckStatus
    property alias recommendedModel: freeCheck.recommendedModel
    property alias tokenProvider: tokens.tokenProvider
    property alias tokenInput: tokens.tokenInput
    property alias tokenStatusMessage: tokens.tokenStatusMessage
    //! The list of models is to be scrolled to this row, or to its start if that is -1.
    signal modelRowRequested(int row)

    function refreshModels() { models.refreshModels(); }
    function rebuildSettingsModelsListModel() { models.rebuildSettingsModelsListModel(); }
    function syncSettingsCombos() { models.syncSettingsCombos(); }
    function filterModels(text) { models.filterModels(text); }
    function selectSettingsModel(model) { models.selectSettingsModel(model); }
    function applyPendingDefaultModel() { models.applyPendingDefaultModel(); }
    function checkFreeProviders() { freeCheck.checkFreeProviders(); }
    function applyRecommendedModel() { freeCheck.applyRecommendedModel(); }
    function refreshTokenStatus() { tokens.refreshTokenStatus(); }
    function saveProviderToken() { tokens.saveProviderToken(); }

    // ---- Slash commands and attached files
    property alias slashMenuVisible: slashCommands.slashMenuVisible
    property alias slashFilter: slashCommands.slashFilter
    property alias slashMenuIndex: slashCommands.slashMenuIndex
    property alias slashMenuShown: slashCommands.menuShown
    property alias slashSessionListPending: sessionPopup.slashSessionListPending
    property alias slashSessionPopupVisible: sessionPopup.slashSessionPopupVisible
    property alias sessionPopupModel: sessionPopup.sessionPopupModel
    property alias slashAttachedFiles: attachments.slashAttachedFiles
    property alias maxAttachedFiles: attachments.maxAttachedFiles
    property alias maxFileChars: attachments.maxFileChars
    property alias fileDialogOpen: attachments.fileDialogOpen

    function chosenSlashCommand() { return slashCommands.chosenSlashCommand(); }
    function tryHandleSlashCommand(text) { return slashCommands.tryHandleSlashCommand(text); }
    function filteredSlashCommands() { return slashCommands.filteredSlashCommands(); }
    function runSlashCommandAt(index) { slashCommands.runSlashCommandAt(index); }
    function openSessions(nameOrId) { sessionPopup.openSessions(nameOrId); }
    function switchToSession(index) { sessionPopup.switchToSession(index); }
    function deleteSession(index) { sessionPopup.deleteSession(index); }
    function deleteListedSessions() { sessionPopup.deleteListedSessions(); }
    function chooseFile() { attachments.chooseFile(); }
    function attachFile(url, check) { attachments.attachFile(url, check); }
    function detachFiles() { attachments.detachFiles(); }
    function removeAttachedFile(index) { attachments.removeAttachedFile(index); }
    function buildFileContextPrefix() { return attachments.buildFileContextPrefix(); }
    function takeFileContext() { return attachments.takeFileContext(); }

    // ---- Sessions
    property alias sessionsList: sessions.sessionsList
    property alias sessionsLoading: sessions.sessionsLoading
    property alias sessionRows: sessions.sessionRows
    property alias sessionsStatusMessage: sessions.sessionsStatusMessage
    property alias renamingSessionId: sessions.renamingSessionId
    property alias renamingSessionName: sessions.renamingSessionName
    property alias deletingAllSessions: sessions.deletingAllSessions
    property alias pendingSessionDeletes: sessions.pendingSessionDeletes
    property alias sessionDeleteStatusMessage: sessions.sessionDeleteStatusMessage

    function refreshSessionsList() { sessions.refreshSessionsList(); }
    function sessionCreate() { sessions.sessionCreate(); }
    function sessionSwitchTo(id) { sessions.sessionSwitchTo(id); }
    function sessionDelete(id) { sessions.sessionDelete(id); }
    function startRenaming(id, name) { sessions.startRenaming(id, name); }
    function stopRenaming() { sessions.stopRenaming(); }
    function saveSessionName() { sessions.saveSessionName(); }
    function deleteAllSessions() { sessions.deleteAllSessions(); }

    // ---- Workspaces, their templates and suggestions
    property alias toolsEnabled: workspaceTemplates.toolsEnabled
    property alias workspaceTemplateCatalogBase: workspaceTemplates.workspaceTemplateCatalogBase
    property alias workspaceTemplateCatalog: workspaceTemplates.workspaceTemplateCatalog
    property alias workspaceTemplateStatusMessage: workspaceTemplates.workspaceTemplateStatusMessage
    //! Whether the settings sheet shows the advanced options.
    property bool showAdvancedAssistant: typeof toviWiAdvancedUiDefault !== "undefined" && Boolean(toviWiAdvancedUiDefault)
    property alias wiObservationEnabled: runtimePanels.wiObservationEnabled
    property alias wiDwellSummaryText: runtimePanels.wiDwellSummaryText
    property alias aiRuntimeEnabledUi: runtimePanels.aiRuntimeEnabledUi
    property alias aiRuntimeGatingIndex: runtimePanels.aiRuntimeGatingIndex
    property alias aiRuntimeStatusLine: runtimePanels.aiRuntimeStatusLine
    property alias wiSuggestionNotifyStatus: suggestionNotice.wiSuggestionNotifyStatus
    property alias wiNotifyBarLine: suggestionNotice.wiNotifyBarLine
    property alias wiNotifyBarClearTimer: suggestionNotice.wiNotifyBarClearTimer
    property alias workspaceSuggestionDialogJson: suggestionNotice.workspaceSuggestionDialogJson
    property alias workspaceSuggestionDialogData: suggestionNotice.workspaceSuggestionDialogData
    property alias workspaceSuggestionDialogOpen: suggestionNotice.workspaceSuggestionDialogOpen

    function setToolsEnabled(on) { workspaceTemplates.setToolsEnabled(on); }
    function loadWorkspaceTemplateCatalogFromPrefs() { workspaceTemplates.loadWorkspaceTemplateCatalogFromPrefs(); }
    function mergeWorkspaceTemplatesFromBridge(workspaces) { workspaceTemplates.mergeWorkspaceTemplatesFromBridge(workspaces); }
    function syncWorkspaceTemplatePrefsToBridge() { workspaceTemplates.syncWorkspaceTemplatePrefsToBridge(); }
    function setWorkspaceTemplateEnabled(templateId, on) { workspaceTemplates.setWorkspaceTemplateEnabled(templateId, on); }
    function switchWorkspaceTemplate(templateId, on) { workspaceTemplates.switchWorkspaceTemplate(templateId, on); }
    function prepareWorkspaceTemplate(templateId) { workspaceTemplates.prepareWorkspaceTemplate(templateId); }
    function mapGatingToIndex(mode) { return runtimePanels.mapGatingToIndex(mode); }
    function refreshRuntimePanels() { runtimePanels.refreshRuntimePanels(); }
    function setObservationEnabled(on) { runtimePanels.setObservationEnabled(on); }
    function setAiRuntimeEnabled(on) { runtimePanels.setAiRuntimeEnabled(on); }
    function setAiRuntimeGating(index) { runtimePanels.setAiRuntimeGating(index); }
    function checkWorkspaceSuggestion() { suggestionNotice.checkWorkspaceSuggestion(); }
    function resetDismissedSuggestions() { suggestionNotice.resetDismissedSuggestions(); }
    function closeWorkspaceSuggestionDialog() { suggestionNotice.closeWorkspaceSuggestionDialog(); }
    function applyWorkspaceSuggestion(actionId) { suggestionNotice.applyWorkspaceSuggestion(actionId); }

    // ---- System dashboard
    property alias dashSessionHeapMb: dashboard.dashSessionHeapMb
    property alias dashSessionHeapTotalMb: dashboard.dashSessionHeapTotalMb
    property alias dashBridgeRssMb: dashboard.dashBridgeRssMb
    property alias dashBridgeExternalMb: dashboard.dashBridgeExternalMb
    property alias dashToviServiceMb: dashboard.dashToviServiceMb
    property alias dashCpuPercent: dashboard.dashCpuPercent
    property alias dashUptimeMs: dashboard.dashUptimeMs
    property alias dashReqCount: dashboard.dashReqCount
    property alias dashActionCount: dashboard.dashActionCount
    property alias appErrorCount: dashboard.appErrorCount
    property alias appAvgLatencyMs: dashboard.appAvgLatencyMs
    property alias appP95LatencyMs: dashboard.appP95LatencyMs
    property alias appLastRequestMs: dashboard.appLastRequestMs
    property alias dashFeedbackLikes: dashboard.dashFeedbackLikes
    property alias dashFeedbackDislikes: dashboard.dashFeedbackDislikes
    property alias dashFeedbackTotal: dashboard.dashFeedbackTotal
    property alias dashErrorTotal: dashboard.dashErrorTotal
    property alias dashErrorDir: dashboard.dashErrorDir
    property alias dashWarnTotal: dashboard.dashWarnTotal
    property alias dashWarnDir: dashboard.dashWarnDir
    property alias dashLogEntries: dashboard.dashLogEntries
    property alias dashLogRows: dashboard.dashLogRows
    property alias appLogErrors: dashboard.appLogErrors
    property alias appLogWarnings: dashboard.appLogWarnings
    property alias appLogEntries: dashboard.appLogEntries
    property alias appLastErrorTs: dashboard.appLastErrorTs
    property alias appLastWarnTs: dashboard.appLastWarnTs
    property alias serviceActive: dashboard.serviceActive
    property alias serviceSub: dashboard.serviceSub
    property alias serviceEnabled: dashboard.serviceEnabled
    property alias serviceUptimeSec: dashboard.serviceUptimeSec
    property alias serviceRestarts: dashboard.serviceRestarts
    property alias serviceMemoryMB: dashboard.serviceMemoryMB
    property alias powerProfileActive: dashboard.powerProfileActive
    property alias powerProfileAvailable: dashboard.powerProfileAvailable
    property alias systemReportData: dashboard.systemReportData
    property alias systemReportLoading: dashboard.systemReportLoading
    property alias dashboardPolling: dashboard.dashboardPolling
    property alias dashNow: dashboard.dashNow
    property alias dashState: dashboard.dashState
    property alias dashNeedsAttention: dashboard.dashNeedsAttention
    property alias runtimeMode: runtime.runtimeMode
    property alias runtimePid: runtime.runtimePid
    property alias runtimeConnected: runtime.runtimeConnected
    property alias runtimeHealthLine: runtime.runtimeHealthLine
    property alias runtimeJobs: runtime.runtimeJobs
    property alias reminders: runtime.reminders
    property alias remindersStatus: runtime.remindersStatus

    function refreshPowerProfile() { dashboard.refreshPowerProfile(); }
    function enterDashboard() { dashboard.enterDashboard(); }
    function leaveDashboard() { dashboard.leaveDashboard(); }
    function dashboardPageCreated() { dashboard.dashboardPageCreated(); }
    function dashboardPageDestroyed() { dashboard.dashboardPageDestroyed(); }
    function choosePowerProfile(name) { dashboard.choosePowerProfile(name); }
    function reconnectBridge() { dashboard.reconnectBridge(); }
    function openLogs() { dashboard.openLogs(); }

    // ---- Window events
    onWidthChanged: surface.place()
    onHeightChanged: surface.place()
    onVisibleChanged: {
        if (visible)
            surface.appear();
    }

    Component.onCompleted: {
        entrance.start();
        centerOnScreen();
        applyWindowBlurBehind();
        inputField.forceActiveFocus();
        requestActivate();
        loadAvailableAgents();
        updateCurrentAgent();
        initResponseSuggestions();
        loadWorkspaceTemplateCatalogFromPrefs();
        runtimePanels.loadFromBridge();
    }

    Behavior on width { NumberAnimation { duration: 400; easing.type: Easing.OutCubic } }
    Behavior on height { NumberAnimation { duration: 400; easing.type: Easing.OutCubic } }

    // ---- Non-visual parts
    Settings {
        id: omniUiStore

        property real windowOpacity: 1.0
        property bool lightChrome: false
        property bool translucentBackground: true

        category: "appearance"
    }

    Announcer {
        id: announcer
        objectName: "announcer"
    }

    OmniBarTheme {
        id: omniTheme
        uiLight: omniUiStore.lightChrome
        translucentBackground: omniUiStore.translucentBackground
    }

    SurfaceController { id: surface; bar: omniBar }
    ConversationController { id: conversation; bar: omniBar; onScrollRequested: chatPanelLoader.scrollToEnd() }
    PhaseController { id: phases; bar: omniBar }
    SuggestionsController { id: suggestions; bar: omniBar }
    PlanController { id: plan; bar: omniBar }
    VoiceController { id: voicePath; bar: omniBar }
    ModelsController { id: models; bar: omniBar; onRowRequested: omniBar.modelRowRequested(row) }
    FreeCheckController { id: freeCheck; bar: omniBar }
    TokenController { id: tokens; bar: omniBar }
    SlashCommandController { id: slashCommands; bar: omniBar }
    SessionsController { id: sessions; bar: omniBar }
    SessionPopupController { id: sessionPopup; bar: omniBar }
    AttachmentController { id: attachments; bar: omniBar }
    WorkspaceTemplatesController { id: workspaceTemplates; bar: omniBar }
    RuntimePanelsController { id: runtimePanels; bar: omniBar }
    SuggestionNoticeController { id: suggestionNotice; bar: omniBar }
    DashboardController { id: dashboard; bar: omniBar }
    RuntimeController { id: runtime; bar: omniBar }

    Connections {
        target: omniBar
        enabled: !omniBar.firstFrameShown

        // Deferred so that the frame is on the screen before anything else is created.
        function onFrameSwapped() {
            Qt.callLater(() => { omniBar.firstFrameShown = true; });
        }
    }

    ParallelAnimation {
        id: entrance
        objectName: "windowEntrance"

        NumberAnimation { target: omniBar; property: "windowFade"; from: 0; to: 1; duration: 160; easing.type: Easing.OutCubic }
        NumberAnimation { target: rootContainer; property: "scale"; from: 0.96; to: 1.0; duration: 220; easing.type: Easing.OutBack }
    }

    SequentialAnimation {
        id: closing
        NumberAnimation { target: omniBar; property: "windowFade"; to: 0; duration: 120 }
        NumberAnimation { target: rootContainer; property: "scale"; to: 0.96; duration: 120 }
        ScriptAction { script: omniBar.close() }
        // The window may be shown again by the wake word, if another window keeps the process alive.
        PropertyAction { target: rootContainer; property: "scale"; value: omniBar.compactMode ? 0 : 1 }
    }

    // ---- Visual parts, from back to front
    FocusScope {
        id: rootContainer
        objectName: "rootContainer"

        anchors.fill: parent
        focus: true
        enabled: !omniBar.compactMode
        scale: omniBar.compactMode ? 0 : 1
        opacity: omniBar.compactMode ? 0 : 1
        Keys.onEscapePressed: omniBar.handleEscapeKey()
        Accessible.ignored: true

        Behavior on scale { NumberAnimation { duration: 350; easing.type: Easing.OutCubic } }
        Behavior on opacity { NumberAnimation { duration: 350; easing.type: Easing.OutCubic } }

        Scrim {
            anchors.fill: parent
            bar: omniBar
        }

        // What floats above the bar moves with it, covers the settings sheet, and comes before the bar in the tab order.
        LateLoader {
            anchors.horizontalCenter: barCard.horizontalCenter
            y: barCard.y - Geometry.barMenuGap - height
            z: 11
            file: Qt.resolvedUrl("omnibar/bar/SessionPopup.qml")
            properties: ({ "bar": omniBar, "barCard": barCard })
            wanted: omniBar.slashSessionPopupVisible
        }

        LateLoader {
            anchors.horizontalCenter: barCard.horizontalCenter
            y: barCard.y - Geometry.barMenuGap - height
            z: 12
            file: Qt.resolvedUrl("omnibar/bar/SlashMenu.qml")
            properties: ({ "bar": omniBar, "barCard": barCard })
            wanted: omniBar.slashMenuShown
        }

        LateLoader {
            anchors.left: barCard.left
            anchors.leftMargin: omniBar.barRadius
            y: barCard.y - 1 - height
            z: 10
            file: Qt.resolvedUrl("omnibar/bar/AttachedFiles.qml")
            properties: ({ "bar": omniBar })
            wanted: omniBar.slashAttachedFiles.length > 0
        }

        PromptBar {
            id: barCard
            objectName: "barCard"

            //! The y to which the bar moves. Panels are placed above it, so that they don't move along.
            readonly property int targetY: Geometry.barY(omniBar.barIdle, omniBar.height, omniBar.shortcutHintHeight)
            property real panelBottom: targetY - Geometry.barPanelGap

            anchors.horizontalCenter: parent.horizontalCenter
            y: targetY
            // Passes in front of a panel that appears while the bar moves down.
            z: 11
            bar: omniBar

            Behavior on y { NumberAnimation { duration: 350; easing.type: Easing.OutCubic } }
            // A panel that is already there moves along with the bar.
            Behavior on panelBottom {
                enabled: [chatPanelLoader.item, settingsPanelLoader.item].some(panel => panel && panel.settled)
                NumberAnimation { duration: 350; easing.type: Easing.OutCubic }
            }
        }

        LateLoader {
            anchors.top: barCard.bottom
            anchors.topMargin: 4
            anchors.horizontalCenter: parent.horizontalCenter
            width: omniBar.barWidth - 40
            file: Qt.resolvedUrl("omnibar/bar/VoiceConfirmBar.qml")
            properties: ({ "bar": omniBar })
            wanted: omniBar.voiceConfirmPending
        }

        LateLoader {
            anchors.top: barCard.bottom
            anchors.topMargin: 20
            anchors.horizontalCenter: parent.horizontalCenter
            width: omniBar.barWidth - 40
            file: Qt.resolvedUrl("omnibar/bar/IdleCards.qml")
            properties: ({ "bar": omniBar })
            wanted: omniBar.firstFrameShown
        }

        LateLoader {
            id: chatPanelLoader

            anchors.horizontalCenter: barCard.horizontalCenter
            y: barCard.panelBottom - height

            function scrollToEnd() {
                if (item)
                    item.scrollToEnd();
            }
            file: Qt.resolvedUrl("omnibar/chat/ChatPanel.qml")
            properties: ({ "bar": omniBar, "theme": omniTheme, "barCard": barCard })
            wanted: omniBar.firstFrameShown || omniBar.chatPanelShown
            ahead: !omniBar.chatPanelShown
        }

        LateLoader {
            id: settingsPanelLoader

            anchors.horizontalCenter: barCard.horizontalCenter
            y: barCard.panelBottom - height
            z: 10
            file: Qt.resolvedUrl("omnibar/OmniBarSettingsPanel.qml")
            properties: ({ "bar": omniBar, "theme": omniTheme, "barCardItem": barCard, "chatPanelItem": () => chatPanelLoader.item })
            wanted: omniBar.settingsPanelOpen
        }

        LateLoader {
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 2
            anchors.horizontalCenter: parent.horizontalCenter
            width: omniBar.width - 24
            visible: !omniBar.compactMode && !omniBar.barIdle
            file: Qt.resolvedUrl("omnibar/bar/HintStrip.qml")
            properties: ({ "bar": omniBar })
            wanted: !omniBar.barIdle
        }

        LateLoader {
            file: Qt.resolvedUrl("omnibar/bar/FilePicker.qml")
            properties: ({ "bar": omniBar })
            wanted: omniBar.fileDialogOpen
        }

        LateLoader {
            file: Qt.resolvedUrl("omnibar/SuggestionDialog.qml")
            properties: ({ "bar": omniBar, "theme": omniTheme })
            wanted: omniBar.workspaceSuggestionDialogOpen
        }

        LateLoader {
            id: agentMenuLoader

            file: Qt.resolvedUrl("omnibar/bar/AgentMenu.qml")
            properties: ({ "bar": omniBar })
            wanted: omniBar.firstFrameShown
        }
    }

    // Outside of the container because that is scaled to zero in compact mode.
    LateLoader {
        id: compactBubbleLoader

        anchors.fill: parent
        file: Qt.resolvedUrl("omnibar/bubble/CompactBubble.qml")
        properties: ({ "bar": omniBar, "theme": omniTheme })
        wanted: omniBar.firstFrameShown || omniBar.compactMode
    }
}
