// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedSdk.h"

#include "TestSetup.h"
#include "WaitUntil.h"

#include <QTest>
#include <QWebSocket>

ConnectedSdk::ConnectedSdk()
{
    sdk.setConnectOnly(true);
    // Connected after the client's slot, so it is called after it.
    QObject::connect(sdk.findChild<QWebSocket *>(), &QWebSocket::textMessageReceived, &sdk, [this] { ++m_frames; });
}

bool ConnectedSdk::connect()
{
    sdk.reconnectBridge();
    const int number = peer.connectionCount() + 1;
    return peer.waitForConnection(number) && waitUntil([this] { return sdk.isConnected(); });
}

bool ConnectedSdk::becomeReady(bool workspaceIntel, bool aiRuntime)
{
    peer.ready();
    const auto ping = peer.takeRequest(QStringLiteral("ping"));
    const auto capabilities = peer.takeRequest(QStringLiteral("getCapabilities"));
    const auto enabled = [](bool value) { return QJsonObject {{QStringLiteral("enabled"), value}}; };
    const int frames = m_frames;
    peer.reply(ping, QJsonObject());
    peer.reply(capabilities,
               QJsonObject {{QStringLiteral("workspaceIntelligence"), enabled(workspaceIntel)},
                            {QStringLiteral("aiRuntime"), enabled(aiRuntime)}});
    return waitUntil([&] { return m_frames >= frames + 2; }) && sdk.isReady();
}

bool ConnectedSdk::lose()
{
    peer.drop();
    const bool isLost = waitUntil([this] { return !sdk.isConnected() && timer("reconnectTimer")->isActive(); });
    // A dropped connection is also reported as an error of the socket.
    const QStringList warnings = log.takeWarnings();
    return isLost && warnings.size() == 1 && warnings.first().startsWith(QLatin1String("WebSocket error:"));
}

bool ConnectedSdk::deliver(const QString &frame)
{
    const int before = m_frames;
    peer.sendRaw(frame);
    return waitUntil([&] { return m_frames > before; });
}

bool ConnectedSdk::deliverReply(quint64 id, const QString &payload)
{
    return deliver(QStringLiteral(R"({"type":"response","id":%1,"payload":%2})").arg(QString::number(id), payload));
}

QStringList ConnectedSdk::waitForSignals(int count)
{
    waitUntil([&] { return emitted.entries().size() >= count; });
    return emitted.take();
}

QTimer *ConnectedSdk::timer(const char *name) const
{
    return sdk.findChild<QTimer *>(QLatin1String(name), Qt::FindDirectChildrenOnly);
}

void ConnectedSdk::expire(const char *name) const
{
    QVERIFY(QMetaObject::invokeMethod(timer(name), "timeout"));
}

void ConnectedSdkTest::initTestCase()
{
    TestSetup::setAboutData();
}

void ConnectedSdkTest::init()
{
    fixture = std::make_unique<ConnectedSdk>();
    QVERIFY(fixture->connect());
    QVERIFY(fixture->becomeReady());
    fixture->emitted.take();
    fixture->log.clear();
}

void ConnectedSdkTest::cleanup()
{
    const QStringList warnings = fixture->log.warnings();
    const bool isAllTaken = fixture->peer.isAllTaken();
    fixture.reset();
    QCOMPARE(warnings, QStringList());
    QVERIFY2(isAllTaken, "a request was sent that the test doesn't know of");
}
