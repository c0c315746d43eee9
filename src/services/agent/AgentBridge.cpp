// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentBridge.h"

#include <QClipboard>
#include <QDebug>
#include <QGuiApplication>
#include <QSettings>
#include <QTimer>
#include <QWebSocket>

namespace
{

constexpr int s_loggedTranscript = 80; // characters

QString agentKey()
{
    return QStringLiteral("omniBar/currentAgent");
}

QString modelKey()
{
    return QStringLiteral("omniBar/currentModel");
}

} // namespace

AgentBridge::AgentBridge(QObject *parent)
    : QObject(parent)
    , m_connection(QStringLiteral("127.0.0.1"), BridgeConnection::Retry::Once, this)
{
    const QSettings settings;
    const QString agent = settings.value(agentKey(), m_currentAgent).toString();
    if (!agent.isEmpty()) {
        m_currentAgent = agent;
    }
    const QString model = settings.value(modelKey()).toString();
    if (!model.isEmpty()) {
        m_currentModel = model;
    }

    connect(m_connection.retryTimer(), &QTimer::timeout, this, &AgentBridge::connectToBridge);

    const QWebSocket *socket = m_connection.socket();
    connect(socket, &QWebSocket::connected, this, &AgentBridge::onConnected);
    connect(socket, &QWebSocket::disconnected, this, &AgentBridge::onDisconnected);
    connect(socket, &QWebSocket::textMessageReceived, this, &AgentBridge::onTextMessageReceived);
    connect(socket, QOverload<QAbstractSocket::SocketError>::of(&QWebSocket::error), this, &AgentBridge::onSocketError);

    connectToBridge();
}

AgentBridge::~AgentBridge() = default;

void AgentBridge::setCurrentAgent(const QString &agentId)
{
    if (m_currentAgent == agentId) {
        return;
    }
    m_currentAgent = agentId;
    QSettings().setValue(agentKey(), agentId);
    qDebug() << "[AgentBridge] Agent changed to:" << agentId;
    Q_EMIT currentAgentChanged(agentId);
}

void AgentBridge::setCurrentModel(const QString &model)
{
    if (m_currentModel == model) {
        return;
    }
    m_currentModel = model;
    QSettings().setValue(modelKey(), model);
    Q_EMIT currentModelChanged(model);
}

void AgentBridge::setInputMode(const QString &mode)
{
    if (m_inputMode == mode) {
        return;
    }
    m_inputMode = mode;
    Q_EMIT inputModeChanged(mode);
}

bool AgentBridge::isServiceAvailable() const
{
    return m_connection.isOpen();
}

void AgentBridge::sendIntent(const QString &text)
{
    if (text.trimmed().isEmpty()) {
        Q_EMIT errorOccurred(QStringLiteral("Empty intent"));
        return;
    }
    if (!isServiceAvailable()) {
        Q_EMIT errorOccurred(QStringLiteral("Loomra bridge not connected (%1)").arg(m_connection.url().toString()));
        setStatus(AgentStatus::Disconnected);
        connectToBridge();
        return;
    }

    m_lastIntent = text;
    setThinking(true);
    setStatus(AgentStatus::Thinking);

    // The settings may have changed since construction. Intentional: no signal, and nothing is written back.
    if (m_currentModel.isEmpty()) {
        m_currentModel = QSettings().value(modelKey()).toString().trimmed();
    }

    const QJsonObject params = AgentRequests::chat(text, conversation());
    qDebug() << "[AgentBridge] chat params model:"
             << (m_currentModel.isEmpty() ? QStringLiteral("(none)") : m_currentModel) << "inputMode:" << m_inputMode;
    const quint64 id = openRequest(text);
    qDebug() << "[AgentBridge] Sending request to bridge, id=" << id;
    send(id, QStringLiteral("chat"), params);
}

void AgentBridge::cancelRequest()
{
    if (!m_isThinking && m_pendingRequests.isEmpty()) {
        return;
    }
    qDebug() << "[AgentBridge] cancelRequest — aborting" << m_pendingRequests.size() << "pending request(s)";

    if (isServiceAvailable()) {
        // Its id isn't pending, so that its reply is dropped.
        send(takeRequestId(), QStringLiteral("cancel"), AgentRequests::cancel(conversation()));
    }
    // Late replies to these ids are dropped, so that the cancel is final whatever the bridge does.
    m_pendingRequests.clear();
    m_lastIntent.clear();
    resetProgress();
    setThinking(false);
    setStatus(AgentStatus::Idle);
    Q_EMIT agentReplied(QStringLiteral("_Stopped._"));
}

void AgentBridge::rephraseText(const QString &text)
{
    if (text.trimmed().isEmpty()) {
        return;
    }
    if (!isServiceAvailable()) {
        Q_EMIT rephraseReady(text, text); // the caller waits for this signal
        return;
    }
    m_rephraseOriginal = text;
    m_rephraseRequestId = openRequest(QStringLiteral("rephrase"));
    send(m_rephraseRequestId, QStringLiteral("chat"), AgentRequests::rephrase(text, conversation()));
    qDebug() << "[AgentBridge] rephrase request id=" << m_rephraseRequestId << "text:" << text.left(s_loggedTranscript);
}

void AgentBridge::handleUiAction(const QString &actionType, int messageIndex, const QString &data)
{
    if (!isServiceAvailable()) {
        Q_EMIT errorOccurred(QStringLiteral("Cannot send UI action: bridge not connected"));
        return;
    }
    qDebug() << "[AgentBridge] UI action:" << actionType << "msgIdx:" << messageIndex << "data:" << data;
    const QJsonObject params = AgentRequests::uiAction(actionType, data, conversation());
    const QString method = QStringLiteral("handleStructuredUiAction");
    const quint64 id = openRequest(method);
    setThinking(true); // not the status, because an action isn't a prompt
    send(id, method, params);
}

void AgentBridge::sendMessageFeedback(const QString &vote, int messageIndex, const QString &messageText,
                                      const QString &userQuery)
{
    if (!isServiceAvailable()) {
        qDebug() << "[AgentBridge] Cannot send feedback: not connected";
        return;
    }
    const QJsonObject params = AgentRequests::feedback({vote, messageIndex, messageText, userQuery}, conversation());
    const quint64 id = openRequest(AgentRequests::feedbackMethod());
    qDebug() << "[AgentBridge] Sending feedback:" << vote << "msgIdx:" << messageIndex;
    send(id, AgentRequests::feedbackMethod(), params);
}

void AgentBridge::copyToClipboard(const QString &text)
{
    // QGuiApplication::clipboard() crashes in an application without a GUI.
    QClipboard *clipboard =
        qobject_cast<QGuiApplication *>(QCoreApplication::instance()) ? QGuiApplication::clipboard() : nullptr;
    if (!clipboard) {
        return;
    }
    clipboard->setText(text);
    qDebug() << "[AgentBridge] Copied" << text.length() << "chars to clipboard";
}

void AgentBridge::onConnected()
{
    // Intentional: prompts may be sent before the bridge reports "ready".
    qDebug() << "[AgentBridge] Connected to Loomra bridge";
    setStatus(AgentStatus::Idle);
}

void AgentBridge::onDisconnected()
{
    qDebug() << "[AgentBridge] Disconnected from Loomra bridge";
    // Intentional: a running request stays in the thinking state until the user cancels or another reply arrives. Only
    // a message that is too large ends it: the reply is lost for good.
    if (m_connection.wasMessageTooLarge()) {
        const QString text = BridgeConnection::messageTooLargeText();
        qWarning("[AgentBridge] %s", qUtf8Printable(text));
        fail(text);
    }
    setStatus(AgentStatus::Disconnected);
    m_connection.scheduleRetry();
}

void AgentBridge::onSocketError(QAbstractSocket::SocketError)
{
    qWarning() << "[AgentBridge] WebSocket error:" << m_connection.socket()->errorString();
    setStatus(AgentStatus::Error);
    m_connection.scheduleRetry();
}

void AgentBridge::connectToBridge()
{
    m_connection.finishClosing(); // first, because it changes the status
    if (m_connection.isConnecting() || m_connection.isOpen()) {
        return;
    }
    setStatus(AgentStatus::Connecting);
    qDebug("[AgentBridge] Connecting to Loomra bridge %s", qUtf8Printable(m_connection.url().toString()));
    m_connection.open();
}

AgentRequests::Conversation AgentBridge::conversation() const
{
    return {m_sessionId, m_currentAgent, m_currentModel, m_inputMode};
}

quint64 AgentBridge::takeRequestId()
{
    return ++m_nextRequestId;
}

quint64 AgentBridge::openRequest(const QString &label)
{
    const quint64 id = takeRequestId();
    m_pendingRequests.insert(id, label);
    return id;
}

void AgentBridge::send(quint64 id, const QString &method, const QJsonObject &params)
{
    m_connection.send(static_cast<qint64>(id), method, params);
}
