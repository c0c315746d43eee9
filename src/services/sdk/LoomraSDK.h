// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "BridgeConnection.h"

#include <QAbstractSocket>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <optional>

struct BridgeFrame;
class ConfigManager;
class QTimer;

//! The complete client of the bridge, known to QML as loomraSDK: every page of both windows talks to it.
//!
//! It has its own connection to ws://localhost:8765/ws. In the main window and the tray view it also runs the bridge as
//! a child process and restarts it; in the OmniBar (connect-only) it asks the user service once to start the bridge,
//! and connects. A connection is ready once the bridge has sent "ready"; a lost one is retried every 3 seconds, without
//! limit.
//!
//! All operations towards the bridge are one-way: the result is emitted as the signal that belongs to the operation, a
//! failure as error(). While the connection isn't ready they are refused. Nothing is queued, requests have no timeout,
//! and a request that is open when the connection is lost stays open. Main thread only.
class LoomraSDK : public QObject
{
    Q_OBJECT

    //! The socket is open.
    Q_PROPERTY(bool connected READ isConnected NOTIFY connectedChanged)
    //! The bridge has sent "ready" on this connection.
    Q_PROPERTY(bool ready READ isReady NOTIFY readyChanged)
    //! Assigned by the bridge; empty before the first chat and after the current session was deleted.
    Q_PROPERTY(QString currentSessionId READ currentSessionId NOTIFY currentSessionIdChanged)
    //! Sent with each chat. Not stored.
    Q_PROPERTY(QString currentModel READ currentModel WRITE setCurrentModel NOTIFY currentModelChanged)
    //! Sent with each chat. Not stored.
    Q_PROPERTY(QString currentAgent READ currentAgent WRITE setCurrentAgent NOTIFY currentAgentChanged)
    //! The bridge uses the executor path. Writing it restarts a running child.
    Q_PROPERTY(bool executorPathEnabled READ isExecutorPathEnabled WRITE setExecutorPathEnabled NOTIFY
                   executorPathEnabledChanged)
    //! From the capabilities that the bridge last reported; keeps its value when the connection is lost.
    Q_PROPERTY(bool workspaceIntelAvailable READ isWorkspaceIntelAvailable NOTIFY workspaceIntelAvailableChanged)
    Q_PROPERTY(bool aiRuntimeAvailable READ isAiRuntimeAvailable NOTIFY aiRuntimeAvailableChanged)
    //! Ask the bridge for a workspace suggestion at intervals; stored.
    Q_PROPERTY(bool workspaceSuggestionReminderEnabled READ isWorkspaceSuggestionReminderEnabled WRITE
                   setWorkspaceSuggestionReminderEnabled NOTIFY workspaceSuggestionReminderEnabledChanged)
    //! The interval, 1 to 1440 minutes; stored.
    Q_PROPERTY(int workspaceSuggestionReminderMinutes READ workspaceSuggestionReminderMinutes WRITE
                   setWorkspaceSuggestionReminderMinutes NOTIFY workspaceSuggestionReminderMinutesChanged)

public:
    //! Finds the directory of the bridge; starts nothing.
    //! @param configManager not used by the destructor, so that the two may be destroyed in any order
    explicit LoomraSDK(ConfigManager *configManager, QObject *parent = nullptr);
    //! Closes the connection and stops the child.
    ~LoomraSDK() override;

    // ---- Life cycle. LoomraSDKProcess.cpp, LoomraSDKConnection.cpp

    //! Connect to a bridge that runs as a service instead of running one as a child. Call before initialize().
    void setConnectOnly(bool connectOnly);
    //! Starts the bridge, or asks the user service to start it, and connects. Starting may block for some seconds. A
    //! second call doesn't start another child.
    Q_INVOKABLE void initialize();
    //! Stops the timers and the child. Blocks up to 12 seconds if there is a child.
    //! @param shuttingDown stop retrying lost connections for good
    void stopBridgeProcess(bool shuttingDown);
    //! Closes and reopens the connection.
    Q_INVOKABLE void reconnectBridge();
    //! Directory of the bridge's own logs; created if it is missing.
    Q_INVOKABLE QString eventLogDir() const;

    bool isConnected() const { return m_connected; }
    bool isReady() const { return m_ready; }
    QString currentSessionId() const { return m_currentSessionId; }
    QString currentModel() const { return m_currentModel; }
    QString currentAgent() const { return m_currentAgent; }
    bool isExecutorPathEnabled() const { return m_executorPathEnabled; }
    bool isWorkspaceIntelAvailable() const { return m_workspaceIntelAvailable; }
    bool isAiRuntimeAvailable() const { return m_aiRuntimeAvailable; }
    bool isWorkspaceSuggestionReminderEnabled() const { return m_workspaceSuggestionReminderEnabled; }
    int workspaceSuggestionReminderMinutes() const { return m_workspaceSuggestionReminderMinutes; }

    void setCurrentModel(const QString &model);
    void setCurrentAgent(const QString &agent);
    void setExecutorPathEnabled(bool enabled);
    void setWorkspaceSuggestionReminderEnabled(bool enabled);
    //! Clamped to the range.
    void setWorkspaceSuggestionReminderMinutes(int minutes);

    // ---- Chat, code, files, sessions, models, providers. LoomraSDKOperations.cpp

    Q_INVOKABLE void sendChatMessage(const QString &message, const QJsonObject &context = {});
    Q_INVOKABLE void generateCode(const QString &prompt, const QString &language = QStringLiteral("javascript"),
                                  const QJsonObject &context = {});
    Q_INVOKABLE void editCode(const QString &code, const QString &instruction, const QJsonObject &context = {});
    Q_INVOKABLE void getFiles(const QString &path = QStringLiteral("."));
    Q_INVOKABLE void readFile(const QString &path);
    Q_INVOKABLE void writeFile(const QString &path, const QString &content);
    Q_INVOKABLE void listSessions();
    Q_INVOKABLE void createSession();
    Q_INVOKABLE void switchSession(const QString &sessionId);
    Q_INVOKABLE void deleteSession(const QString &sessionId);
    Q_INVOKABLE void renameSession(const QString &sessionId, const QString &newName);
    Q_INVOKABLE void loadMessages(const QString &sessionId);
    Q_INVOKABLE void listAgents();
    //! The models of the bridge and of the agent CLI, or those of the CLI alone if there is no bridge. Blocks up to 6
    //! seconds while the CLI runs.
    Q_INVOKABLE void listModels();
    Q_INVOKABLE void checkFreeProviders();
    Q_INVOKABLE void getTokenStatus(const QString &provider = QString());
    Q_INVOKABLE void setProviderToken(const QString &provider, const QString &token,
                                      const QString &tokenKey = QString());

    // ---- Plans, audit, automations, reminders, reports. LoomraSDKOperations.cpp

    Q_INVOKABLE void getPlan(const QString &message);
    //! @param steps objects; anything else is left out
    Q_INVOKABLE void executePlan(const QVariantList &steps);
    Q_INVOKABLE void auditListRecent(int limit = 50);
    Q_INVOKABLE void auditRevert(const QString &actionId);
    Q_INVOKABLE void automationList();
    Q_INVOKABLE void automationCreate(const QJsonObject &trigger, const QJsonArray &steps,
                                      const QJsonObject &condition = {});
    Q_INVOKABLE void automationUpdate(const QString &id, const QJsonObject &params);
    Q_INVOKABLE void automationDelete(const QString &id);
    Q_INVOKABLE void automationPause(const QString &id, bool pause);
    Q_INVOKABLE void reminderList();
    Q_INVOKABLE void reminderCancel(const QString &id);
    Q_INVOKABLE void getDesktopState();
    Q_INVOKABLE void emergencyStop();
    Q_INVOKABLE void emergencyResume();
    Q_INVOKABLE void getDeniedPermissions();
    Q_INVOKABLE void getSystemReport();
    Q_INVOKABLE void getQuickStatus();
    Q_INVOKABLE void refreshPowerProfile();
    Q_INVOKABLE void getAppLogSummary();
    Q_INVOKABLE void getKdeLogs();
    Q_INVOKABLE void getAppMetrics();
    Q_INVOKABLE void getServiceHealth();
    Q_INVOKABLE void getSystemDashboard();

    // ---- Workspace intelligence, AI runtime, suggestions. LoomraSDKWorkspace.cpp

    Q_INVOKABLE void refreshWorkspaceIntelPanel();
    Q_INVOKABLE void setWorkspaceIntelObservationEnabled(bool enabled);
    Q_INVOKABLE void refreshWorkspaceTemplates();
    //! An empty slug and a workspaceId below 1 are left out of the request.
    Q_INVOKABLE void setWorkspaceTemplateEnabled(const QString &slug, bool enabled, int workspaceId = 0);
    //! @param workspaceId at least 1
    Q_INVOKABLE void prepareWorkspaceTemplate(int workspaceId, const QString &message = QString());
    Q_INVOKABLE void refreshAiRuntimePanel();
    Q_INVOKABLE void setAiRuntimeEnabled(bool enabled);
    Q_INVOKABLE void setAiRuntimeExecutionGating(const QString &mode);
    Q_INVOKABLE void refreshRuntimeHealth();
    Q_INVOKABLE void refreshRuntimeJobs();
    Q_INVOKABLE void checkWorkspaceSuggestionNotify();
    Q_INVOKABLE void clearAiRuntimeDismissedSuggestions();
    //! Carries out a button of the in-app dialog.
    //! @param clientNotificationJson from workspaceSuggestionShowInAppDialog()
    Q_INVOKABLE void applyWorkspaceSuggestionAction(const QString &actionId, const QString &clientNotificationJson);

Q_SIGNALS:
    //! A failure that the user should see.
    void error(const QString &error);
    void connectedChanged();
    void readyChanged();
    void currentSessionIdChanged();
    void currentModelChanged();
    void currentAgentChanged();
    void executorPathEnabledChanged();

    void chatResponse(const QString &response);
    //! Never emitted, as streams are dropped. Kept for QML that connects to it.
    void chatStreamChunk(const QString &chunk);
    void codeGenerated(const QString &code);
    void codeEdited(const QString &code);
    void filesReceived(const QStringList &files);
    //! @param path always empty; the caller remembers which path it asked for
    void fileContentReceived(const QString &path, const QString &content);
    //! @param path always empty; the caller remembers which path it asked for
    void fileWritten(const QString &path);
    void sessionsListed(const QJsonArray &sessions);
    void sessionCreated(const QString &sessionId);
    void sessionSwitched(const QString &sessionId);
    void sessionDeleted(const QString &sessionId);
    void sessionRenamed(const QString &sessionId, const QString &newName);
    void modelsListed(const QJsonArray &models);
    void freeProvidersChecked(const QJsonObject &result);
    void tokenStatusReceived(const QJsonObject &status);
    void providerTokenUpdated(const QJsonObject &status);
    void messagesLoaded(const QJsonArray &messages);
    void agentsListed(const QJsonArray &agents);

    void planReceived(const QJsonObject &payload);
    void planExecuted(const QJsonObject &payload);
    void auditRecentListed(const QJsonArray &actions);
    void auditReverted(const QString &actionId);
    void automationListed(const QJsonArray &automations);
    void automationCreated(const QString &id);
    void automationUpdated(const QString &id);
    void automationDeleted(const QString &id);
    void remindersListed(const QJsonArray &reminders);
    void reminderCancelled(const QString &id);
    void deniedPermissionsReceived(const QJsonArray &denied);
    void desktopStateReceived(const QJsonObject &state);
    void systemReportReceived(const QJsonObject &report);
    void quickStatusReceived(const QJsonObject &status);
    void powerProfileReceived(const QJsonObject &profile);
    void appLogSummaryReceived(const QJsonObject &summary);
    void kdeLogsReceived(const QJsonObject &logs);
    void appMetricsReceived(const QJsonObject &metrics);
    void serviceHealthReceived(const QJsonObject &health);
    void systemDashboardReceived(const QJsonObject &dashboard);

    void workspaceIntelAvailableChanged();
    void aiRuntimeAvailableChanged();
    void workspaceSuggestionReminderEnabledChanged();
    void workspaceSuggestionReminderMinutesChanged();
    //! @param payload the settings, with "dwellSummary" added
    void workspaceIntelPanelUpdated(const QJsonObject &payload);
    void workspaceTemplatesListed(const QJsonArray &workspaces);
    void workspaceTemplatePrepareFinished(const QJsonObject &result);
    void aiRuntimePanelUpdated(const QJsonObject &payload);
    void runtimeHealthUpdated(const QJsonObject &payload);
    void runtimeJobsUpdated(const QJsonArray &jobs);
    void workspaceSuggestionNotifyResult(const QJsonObject &payload);
    void workspaceSuggestionUserChoice(const QJsonObject &payload);
    void workspaceSuggestionShowInAppDialog(const QString &clientNotificationJson);

private Q_SLOTS:
    void onWebSocketConnected();
    void onWebSocketDisconnected();
    void onWebSocketError(QAbstractSocket::SocketError error);
    void onWebSocketTextMessageReceived(const QString &message);
    void onBridgeProcessFinished(int exitCode, QProcess::ExitStatus exitStatus);
    void onBridgeProcessError(QProcess::ProcessError error);
    void scheduleReconnect();
    void tryReconnect();
    void onWorkspaceSuggestionReminderTimeout();
    void updateWorkspaceSuggestionReminderTimer();

private:
    struct Reply;
    struct Route;
    static const Route *routeOf(const QString &label);

    // ---- The process
    void startBridgeProcess();
    void readBridgeOutput();
    void ensureBridgeUserServiceStarted();
    //! Resets both flags when the child or the connection ends.
    void fallToDisconnected();

    // ---- The connection
    void connectWebSocket();
    void onReady();
    void fetchBridgeCapabilities();

    // ---- Requests and replies
    //! Allocates an id, keeps label and argument until the reply, and sends. The method is the label up to its first
    //! underscore.
    //! @param label must have a route, or a debug build aborts
    //! @param kept argument for the signal of the reply
    void request(const QString &label, const QJsonObject &params = {},
                 const std::optional<QString> &kept = std::nullopt);
    void sendRequest(const QString &method, const QJsonObject &params, int requestId);
    void processError(const BridgeFrame &frame);
    void processReply(const BridgeFrame &frame);
    QString takeKeptArgument(int requestId);

    void logCall(const char *function, const char *message) const;
    static void logListing(const char *message, const char *countKey, int count, int requestId);

    void onChatReply(const Reply &reply);
    void onGetFilesReply(const Reply &reply);
    void onListSessionsReply(const Reply &reply);
    void onCreateSessionReply(const Reply &reply);
    void onSwitchSessionReply(const Reply &reply);
    void onDeleteSessionReply(const Reply &reply);
    void onListModelsReply(const Reply &reply);
    void onReminderCancelReply(const Reply &reply);
    void onHealthReply(const Reply &reply);
    void onCapabilitiesReply(const Reply &reply);
    void onWorkspaceIntelSettingsReply(const Reply &reply);
    void onDwellSummaryReply(const Reply &reply);
    void onTemplatePreparedReply(const Reply &reply);
    void onSuggestionPreparedReply(const Reply &reply);
    void onSuggestionCheckReply(const Reply &reply);

    void setCurrentSessionId(const QString &sessionId);
    //! Emits a failure that a successful reply reports in its "ok" and "error".
    void reportRefusal(const QJsonObject &result);

    // ---- The workspace
    bool canUseWorkspaceIntel() const { return m_ready && m_workspaceIntelAvailable; }
    bool canUseAiRuntime() const { return m_ready && m_aiRuntimeAvailable; }
    //! Emits error() and returns false if it can't be used.
    bool requireWorkspaceIntel();
    bool requireAiRuntime();
    bool canRemindOfSuggestions() const;
    void handleSuggestionCheck(const QJsonObject &result);
    void presentWorkspaceSuggestionNotification(const QJsonObject &notification);
    void applyWorkspaceSuggestionChoice(const QJsonObject &notification, const QString &actionId);

    ConfigManager *const m_configManager;
    BridgeConnection m_connection;
    QProcess *const m_bridgeProcess;
    bool m_connected = false;
    bool m_ready = false;
    //! Not reset on reconnection, so that an id is never reused.
    int m_nextRequestId = 1;
    //! Labels of the open requests by id, and kept arguments by id plus an offset. An entry is removed by its reply
    //! only: nothing expires, and a disconnect doesn't clear anything.
    QHash<int, QString> m_pendingRequests;
    QString m_bridgePath;
    QString m_currentSessionId;
    QString m_currentModel = QStringLiteral("default");
    QString m_currentAgent = QStringLiteral("build");
    bool m_connectOnly = false;
    bool m_shuttingDown = false;
    bool m_bridgeServiceStartRequested = false;
    bool m_executorPathEnabled;
    bool m_workspaceIntelAvailable = false;
    bool m_aiRuntimeAvailable = false;
    //! The settings, kept between the two replies of a panel refresh.
    QJsonObject m_workspaceIntelPanelCache;
    QTimer *const m_reminderTimer;
    bool m_workspaceSuggestionReminderEnabled;
    int m_workspaceSuggestionReminderMinutes;
};
