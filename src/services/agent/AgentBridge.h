// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "AgentReply.h"
#include "AgentRequests.h"
#include "BridgeConnection.h"

#include <QAbstractSocket>
#include <QHash>
#include <QObject>
#include <QString>

struct BridgeFrame;

//! The values of AgentBridge::status.
namespace AgentStatus
{
inline const QLatin1String Disconnected("disconnected");
inline const QLatin1String Connecting("connecting");
inline const QLatin1String Idle("idle");
inline const QLatin1String Thinking("thinking");
inline const QLatin1String Error("error");
} // namespace AgentStatus

//! The chat client of the OmniBar and the tray view, known to QML as agentBridge.
//!
//! It keeps a socket of its own to the bridge at ws://127.0.0.1:8765/ws, sends what the user asks, and turns replies
//! and progress events into properties and signals. It doesn't start the bridge: while nobody listens it tries again
//! 3 seconds after each attempt, for as long as it lives. All operations are one-way, nothing is queued or resent, and
//! a request has no time-out. What the user should see of a failure comes as errorOccurred(); all else is logged.
//! Main thread only.
class AgentBridge : public QObject
{
    Q_OBJECT

    //! A request that shows progress is running. Stays true when the socket falls, until a reply or a cancel.
    Q_PROPERTY(bool isThinking READ isThinking NOTIFY thinkingChanged)
    //! One of the values of AgentStatus.
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    //! Agent id sent with each chat; stored. "auto" leaves the choice to the bridge.
    Q_PROPERTY(QString currentAgent READ currentAgent WRITE setCurrentAgent NOTIFY currentAgentChanged)
    //! Model id (provider/model) sent with each chat; stored. Empty leaves the choice to the bridge.
    Q_PROPERTY(QString currentModel READ currentModel WRITE setCurrentModel NOTIFY currentModelChanged)
    //! What the bridge is doing, in its words; empty when nothing is running.
    Q_PROPERTY(QString activePhase READ activePhase NOTIFY activePhaseChanged)
    //! The agent that the bridge chose for what is running.
    Q_PROPERTY(QString routedAgent READ routedAgent NOTIFY routedAgentChanged)
    //! From 0; -1 means that no plan runs.
    Q_PROPERTY(int planStepIndex READ planStepIndex NOTIFY planStepChanged)
    Q_PROPERTY(int planStepTotal READ planStepTotal NOTIFY planStepChanged)
    Q_PROPERTY(QString planStepCapability READ planStepCapability NOTIFY planStepChanged)
    Q_PROPERTY(QString planStepPhase READ planStepPhase NOTIFY planStepChanged)
    //! "text" or "voice": how the next prompt was given. Not stored.
    Q_PROPERTY(QString inputMode READ inputMode WRITE setInputMode NOTIFY inputModeChanged)

public:
    //! Reads the stored agent and model and starts the first attempt to connect. The about-data must be set before, as
    //! it names the store.
    explicit AgentBridge(QObject *parent = nullptr);
    //! Closes the socket without a signal of this object.
    ~AgentBridge() override;

    bool isThinking() const { return m_isThinking; }
    QString status() const { return m_status; }
    QString currentAgent() const { return m_currentAgent; }
    QString currentModel() const { return m_currentModel; }
    QString activePhase() const { return m_activePhase; }
    QString routedAgent() const { return m_routedAgent; }
    int planStepIndex() const { return m_planStep.index; }
    int planStepTotal() const { return m_planStep.total; }
    QString planStepCapability() const { return m_planStep.capability; }
    QString planStepPhase() const { return m_planStep.phase; }
    QString inputMode() const { return m_inputMode; }

    void setCurrentAgent(const QString &agentId);
    void setCurrentModel(const QString &model);
    void setInputMode(const QString &mode);

    //! Whether the socket is open. The bridge may still be starting.
    Q_INVOKABLE bool isServiceAvailable() const;

    //! Sends a prompt, as it is, blanks and all. A blank one is refused, and so is one without a connection, which
    //! also starts an attempt to connect at once.
    Q_INVOKABLE void sendIntent(const QString &text);
    //! Drops everything that runs and tells the bridge so. Replies that come later are ignored.
    Q_INVOKABLE void cancelRequest();

    //! Asks for a rewrite of a voice transcript. For every text that isn't blank rephraseReady() follows: at once and
    //! unchanged without a connection, else with the reply. Shows no thinking state.
    Q_INVOKABLE void rephraseText(const QString &text);

    //! Reports what the user did on a structured widget.
    //! @param messageIndex row of the chat list, for the log only
    //! @param data JSON of an object; any other text goes out as an object without keys
    Q_INVOKABLE void handleUiAction(const QString &actionType, int messageIndex, const QString &data);

    //! Reports a vote on a reply, if there is a connection.
    //! @param userQuery the prompt behind the reply, may be empty
    Q_INVOKABLE void sendMessageFeedback(const QString &vote, int messageIndex, const QString &messageText,
                                         const QString &userQuery = QString());

    //! Puts text on the normal clipboard. Does nothing without a QGuiApplication.
    Q_INVOKABLE void copyToClipboard(const QString &text);

Q_SIGNALS:
    //! The text of a good reply, or "_Stopped._" after a cancel. Comes before isThinking and status change.
    void agentReplied(const QString &response);
    //! What comes with the text of the agentReplied() that follows at once, as compact JSON of an object.
    void structuredReplyReceived(const QString &uiJson);
    //! Never emitted: the reply to an action of the user is an ordinary reply. Kept for those who connect to it.
    void uiActionResult(const QString &response);
    //! Tokens of one reply. Comes only when one figure is above 0.
    void usageReported(int inputTokens, int outputTokens);
    //! Never emitted: actionStarted() tells of a tool. Kept for those who connect to it.
    void toolExecuted(const QString &tool, const QString &result);
    void thinkingChanged(bool isThinking);
    void statusChanged(const QString &status);
    void errorOccurred(const QString &error);
    //! @param original the transcript as it was handed in
    //! @param rephrased what the bridge made of it; may be empty
    void rephraseReady(const QString &original, const QString &rephrased);
    //! A tool was run. The bridge tells of it when the tool has finished.
    void actionStarted(const QString &actionName);
    //! Never emitted, as actionStarted() comes when the tool has finished. Kept for those who connect to it.
    void actionFinished(const QString &actionName);
    void currentAgentChanged(const QString &agentId);
    void currentModelChanged(const QString &model);
    void activePhaseChanged(const QString &phase);
    void routedAgentChanged(const QString &agent);
    void planStepChanged();
    void inputModeChanged(const QString &mode);

private Q_SLOTS:
    void onConnected();
    void onDisconnected();
    void onTextMessageReceived(const QString &message);
    void onSocketError(QAbstractSocket::SocketError error);

private:
    void connectToBridge();

    AgentRequests::Conversation conversation() const;
    quint64 takeRequestId();
    //! Takes an id and keeps the label until the reply.
    quint64 openRequest(const QString &label);
    void send(quint64 id, const QString &method, const QJsonObject &params);

    void processEvent(const QString &name, const QJsonObject &payload);
    void onToolExecuted(const QJsonObject &payload);
    void onAgentRouted(const QJsonObject &payload);
    void onPlanPhase(const QJsonObject &payload);
    void onPlanStep(const QJsonObject &payload);
    void processError(const BridgeFrame &frame);
    void processReply(const BridgeFrame &frame, const QString &message);
    void processResult(quint64 id, const AgentReply &reply);
    void finishRephrase(const QString &response);

    void setThinking(bool thinking);
    void setStatus(const QString &status);
    void setActivePhase(const QString &phase);
    void setRoutedAgent(const QString &agent);
    //! Clears what events told of the request that ended.
    void resetProgress();
    //! Ends the thinking state with an error; the text goes to the user unless it is empty.
    void fail(const QString &error);

    BridgeConnection m_connection;
    bool m_isThinking = false;
    QString m_status = AgentStatus::Disconnected;
    //! The last prompt; a help in the debugger, nothing reads it.
    QString m_lastIntent;
    QString m_activePhase;
    QString m_routedAgent;
    PlanStep m_planStep;
    QString m_currentAgent = QStringLiteral("auto");
    QString m_currentModel;
    //! Given by the bridge; never cleared, so that a conversation outlives a lost connection.
    QString m_sessionId;
    QString m_inputMode = QStringLiteral("text");
    //! Counts on across connections, so that an id is never used twice.
    quint64 m_nextRequestId = 0;
    //! Labels of the requests that wait for a reply, by id: the prompt of a chat, else what kind of request it is. Only
    //! the label of a vote is ever looked at.
    QHash<quint64, QString> m_pendingRequests;
    //! 0 means none. A cancel leaves it alone: the reply is dropped anyway, its id being pending no more.
    quint64 m_rephraseRequestId = 0;
    QString m_rephraseOriginal;
};
