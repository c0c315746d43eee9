// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentBridgeParts.h"

#include "AgentBridge.h"

#include <QTest>
#include <QTimer>
#include <QWebSocket>

QTimer *timerOf(const AgentBridge &agent)
{
    return agent.findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
}

QWebSocket *socketOf(const AgentBridge &agent)
{
    return agent.findChild<QWebSocket *>(QString(), Qt::FindDirectChildrenOnly);
}

void endPause(const AgentBridge &agent)
{
    QTimer *timer = timerOf(agent);
    QVERIFY(timer->isActive());
    timer->stop();
    QVERIFY(QMetaObject::invokeMethod(timer, "timeout"));
}
