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

//! An AgentBridge that is connected to a scripted peer, with all that is heard of it.
class ConnectedAgent
{
public:
    //! Whether the connection stands; the story may begin. What was heard so far is forgotten.
    bool begin();
    //! Sends a frame and returns when the agent has dealt with it.
    bool deliver(const QString &frame);
    bool deliver(const QJsonObject &message);

    //! Sends a prompt and takes it from the peer. What is heard of that is forgotten.
    ScriptedBridge::Request prompt(const QString &text = QStringLiteral("hello"));

    //! The peer ends the connection. What is heard of that is forgotten.
    bool disconnectPeer();

    MessageLog log; // first, to see everything
    ScriptedBridge peer;
    AgentBridge agent;
    SignalLog emitted {&agent};
    SignalLog &heard = emitted; // the old name, still used by tst_AgentBridgeConnection
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

//! The result object of a good reply.
QJsonObject answer(const QString &response, QJsonObject more = {});

//! A text as the log shows it.
QString quoted(const QString &text);

//! What is heard when the running request ends in a failure; the text goes to the user unless it is empty.
QStringList failure(const QString &text);
//! What is logged of a failure that the bridge reported.
QStringList bridgeError(const QString &text);

//! Tests that begin with a connection, each with one of its own. A warning that the test doesn't take, and a request
//! that it doesn't know of, fail it.
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
