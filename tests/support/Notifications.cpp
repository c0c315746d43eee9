// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Notifications.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QTest>

namespace
{

constexpr int s_patience = 10000; // ms

} // namespace

Notifications::Notifications()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/NotificationServer"), QStringList());
    m_isRunning = QTest::qWaitFor([this] { return m_process.canReadLine(); }, s_patience);
    m_process.readLine();
}

Notifications::~Notifications()
{
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(s_patience)) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

QList<QJsonObject> Notifications::calls()
{
    while (m_process.canReadLine()) {
        m_calls.append(QJsonDocument::fromJson(m_process.readLine()).object());
    }
    return m_calls;
}

QJsonObject Notifications::take()
{
    return QTest::qWaitFor([this] { return !calls().isEmpty(); }, s_patience) ? m_calls.takeFirst() : QJsonObject();
}

void Notifications::invoke(const QJsonObject &notify, const QString &action)
{
    const int number = notify.value(QLatin1String("number")).toInt();
    m_process.write(QByteArray::number(number) + ' ' + action.toUtf8() + '\n');
}
