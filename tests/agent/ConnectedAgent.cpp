// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedAgent.h"

#include "TestSetup.h"
#include "WaitUntil.h"

#include <QDebug>
#include <QTest>
#include <QWebSocket>

bool ConnectedAgent::begin()
{
    const bool connected = peer.waitForConnection() && waitUntil([this] { return agent.isServiceAvailable(); });
    emitted.take();
    log.clear();
    return connected;
}

bool ConnectedAgent::deliver(const QString &frame)
{
    const QString line = QStringLiteral("[AgentBridge] Received WebSocket message:");
    const int before = log.count(line);
    peer.sendRaw(frame);
    return waitUntil([&] { return log.count(line) > before; });
}

bool ConnectedAgent::deliver(const QJsonObject &message)
{
    return deliver(compactJson(message));
}

ScriptedBridge::Request ConnectedAgent::prompt(const QString &text)
{
    agent.sendIntent(text);
    const ScriptedBridge::Request request = peer.takeRequest(QStringLiteral("chat"));
    emitted.take();
    log.clear();
    return request;
}

bool ConnectedAgent::disconnectPeer()
{
    peer.connection(0)->close();
    const bool gone = waitUntil([this] { return agent.status() == AgentStatus::Disconnected; });
    emitted.take();
    log.clear();
    return gone;
}

QJsonObject answer(const QString &response, QJsonObject more)
{
    more.insert(QStringLiteral("response"), response);
    return more;
}

QString quoted(const QString &text)
{
    QString result;
    QDebug(&result) << text;
    return result.trimmed();
}

QStringList failure(const QString &text)
{
    QStringList emitted {AgentSignals::NotThinking, AgentSignals::Error};
    if (!text.isEmpty()) {
        emitted.prepend(QStringLiteral("errorOccurred(\"%1\")").arg(text));
    }
    return emitted;
}

QStringList bridgeError(const QString &text)
{
    return {QStringLiteral("[AgentBridge] Bridge error: ") + quoted(text)};
}

void ConnectedAgentTest::initTestCase()
{
    TestSetup::setAboutData();
}

void ConnectedAgentTest::init()
{
    TestSetup::clearSettings();
    fixture = std::make_unique<ConnectedAgent>();
    QVERIFY(fixture->begin());
}

void ConnectedAgentTest::cleanup()
{
    QCOMPARE(fixture->log.warnings(), QStringList());
    QVERIFY(fixture->peer.isAllTaken());
    fixture.reset();
}
