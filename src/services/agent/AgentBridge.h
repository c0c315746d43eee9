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
//! It has its own connection to the bridge at ws://127.0.0.1:8765/ws, sends the user's prompts, and turns replies and
//! progress events into properties and signals. It doesn't start the bridge: while nothing listens it retries 3 seconds
//! after each attempt, without limit. All operations are one-way, nothing is queued or resent, and a request has no
//! timeout. Failures that the user should see are emitted as errorOccurred(); all others are logged. Main thread only.
class AgentBridge : public QObject
{
    Q_OBJECT

    //! A request that shows progress is running. Stays true when the connection is lost, until a reply or a cancel,
    //! unless a message was too large.
    Q_PROPERTY(bool isThinking READ isThinking NOTIFY thinkingChanged)
    //! One of the values of AgentStatus.
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    //! Agent id sent with each chat; stored. "auto" leaves the choice to the bridge.
    Q_PROPERTY(QString currentAgent READ currentAgent WRITE setCurrentAgent NOTIFY currentAgentChanged)
    //! Model id (provider/model) sent with each chat; stored. Empty leaves the choice to the bridge.
    Q_PROPERTY(QString currentModel READ currentModel WRITE setCurrentModel NOTIFY currentModelChanged)
    //! The phase that the bridge reports, in its own words; empty when nothing is running.
    Q_PROPERTY(QString activePhase READ activePhase NOTIFY activePhaseChanged)
    //! The agent that the bridge chose for the running request.
    Q_PROPERTY(QString routedAgent READ routedAgent NOTIFY routedAgentChanged)
    //! Zero-based; -1 when no plan is running.
    Q_PROPERTY(int planStepIndex READ planStepIndex NOTIFY planStepChanged)
    Q_PROPERTY(int planStepTotal READ planStepTotal NOTIFY planStepChanged)
    Q_PROPERTY(QString planStepCapability READ planStepCapability NOTIFY planStepChanged)
    Q_PROPERTY(QString planStepPhase READ planStepPhase NOTIFY planStepChanged)
    //! "text" or "voice": how the user enters the next prompt. Not stored.
    Q_PROPERTY(QString inputMode READ inputMode WRITE setInputMode NOTIFY inputModeChanged)

public:
    //! Reads the stored agent and model and makes the first attempt to connect. The about-data must be set before,
    //! because it names the settings store.
    explicit AgentBridge(QObject *parent = nullptr);
    //! Closes the connection without emitting a signal.
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

    //! Sends a prompt unchanged, with its whitespace. A prompt of whitespace only is refused; without a connection
    //! every prompt is refused, and an attempt to connect is made at once.
    Q_INVOKABLE void sendIntent(const QString &text);
    //! Cancels all open requests, here and at the bridge. Late replies are ignored.
    Q_INVOKABLE void cancelRequest();

    //! Asks the bridge to rephrase a voice transcript. For every text that isn't just whitespace rephraseReady()
    //! follows: with the reply, or at once and unchanged if there is no connection. Shows no thinking state.
    Q_INVOKABLE void rephraseText(const QString &text);

    //! Reports an action of the user in a structured widget.
    //! @param messageIndex row of the chat list, for the log only
    //! @param data a JSON object; anything else is sent as an empty object
    Q_INVOKABLE void handleUiAction(const QString &actionType, int messageIndex, const QString &data);

    //! Reports a vote on a reply, if there is a connection.
    //! @param userQuery the prompt that the reply answers; may be empty
    Q_INVOKABLE void sendMessageFeedback(const QString &vote, int messageIndex, const QString &messageText,
                                         const QString &userQuery = QString());

    //! Copies text to the clipboard. Does nothing without a QGuiApplication.
    Q_INVOKABLE void copyToClipboard(const QString &text);

Q_SIGNALS:
    //! The text of a successful reply, or "_Stopped._" after a cancel. Emitted before isThinking and status change.
    void agentReplied(const QString &response);
    //! Widgets and follow-ups of the agentReplied() that follows immediately: a compact JSON object.
    void structuredReplyReceived(const QString &uiJson);
    //! Never emitted, as the reply to a user action is an ordinary reply. Kept for QML that connects to it.
    void uiActionResult(const QString &response);
    //! Tokens used for one reply. Emitted only if one of the figures is above 0.
    void usageReported(int inputTokens, int outputTokens);
    //! Never emitted, as actionStarted() reports tools. Kept for QML that connects to it.
    void toolExecuted(const QString &tool, const QString &result);
    void thinkingChanged(bool isThinking);
    void statusChanged(const QString &status);
    void errorOccurred(const QString &error);
    //! @param original the transcript as passed to rephraseText()
    //! @param rephrased the result; may be empty
    void rephraseReady(const QString &original, const QString &rephrased);
    //! A tool was run. The bridge reports it when the tool has finished.
    void actionStarted(const QString &actionName);
    //! Never emitted, as actionStarted() already follows the end of the tool. Kept for QML that connects to it.
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
    //! Allocates an id and keeps the label until the reply.
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
    //! Clears the progress of the request that ended.
    void resetProgress();
    //! Ends the thinking state with an error, and emits the text unless it is empty.
    void fail(const QString &error);

    BridgeConnection m_connection;
    bool m_isThinking = false;
    QString m_status = AgentStatus::Disconnected;
    //! The last prompt, for debugging; nothing reads it.
    QString m_lastIntent;
    QString m_activePhase;
    QString m_routedAgent;
    PlanStep m_planStep;
    QString m_currentAgent = QStringLiteral("auto");
    QString m_currentModel;
    //! Assigned by the bridge; never cleared, so that a conversation survives a lost connection.
    QString m_sessionId;
    QString m_inputMode = QStringLiteral("text");
    //! Not reset on reconnection, so that an id is never reused.
    quint64 m_nextRequestId = 0;
    //! Labels of the open requests by id: the prompt of a chat, or the kind of any other request. Only the label of a
    //! vote is ever read.
    QHash<quint64, QString> m_pendingRequests;
    //! 0 means none. A cancel doesn't reset it: the reply is dropped anyway, because its id is no longer pending.
    quint64 m_rephraseRequestId = 0;
    QString m_rephraseOriginal;
};
