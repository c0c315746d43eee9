// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "AgentBridge.h"
#include "Json.h"
#include "MessageLog.h"
#include "ScriptedBridge.h"
#include "SignalLog.h"

#include <QObject>

#include <memory>

//! Fixture: an AgentBridge that is connected to a scripted peer, with a log of its signals and messages.
class ConnectedAgent
{
public:
    //! Waits for the connection and then clears both logs. @return whether it is established
    bool begin();
    //! Sends a frame and returns when the agent has handled it.
    bool deliver(const QString &frame);
    bool deliver(const QJsonObject &message);

    //! Sends a prompt, takes its request from the peer and clears both logs.
    ScriptedBridge::Request prompt(const QString &text = QStringLiteral("hello"));

    //! Closes the connection from the peer's side and clears both logs.
    bool disconnectPeer();

    MessageLog log; // first, to catch every message
    ScriptedBridge peer;
    AgentBridge agent;
    SignalLog emitted {&agent};
};

//! Entries of the signal log.
namespace AgentSignals
{

const QString Thinking = QStringLiteral("thinkingChanged(true)");
const QString NotThinking = QStringLiteral("thinkingChanged(false)");
const QString Idle = QStringLiteral("statusChanged(\"idle\")");
const QString Error = QStringLiteral("statusChanged(\"error\")");

//! After a good reply with the text "hi".
const QStringList GoodReply {QStringLiteral("agentReplied(\"hi\")"), NotThinking, Idle};

} // namespace AgentSignals

//! The result object of a successful reply.
QJsonObject answer(const QString &response, QJsonObject more = {});

//! A text as it appears in the log.
QString quoted(const QString &text);

//! The signals of a failed request. An empty text is not reported to the user.
QStringList failure(const QString &text);
//! The warning for an error that the bridge reported.
QStringList bridgeError(const QString &text);

//! Base of tests that start connected; each test function has a new connection. A function fails if it leaves a warning
//! or a request untaken.
class ConnectedAgentTest : public QObject
{
    Q_OBJECT

protected:
    std::unique_ptr<ConnectedAgent> fixture;

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
};
