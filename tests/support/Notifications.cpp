// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Notifications.h"

#include "Json.h"
#include "Timeouts.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QTest>

namespace
{

//! Replies arrive in order, so after this call this process has received those to all earlier calls.
void receiveReplies()
{
    const QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("GetServerInformation"));
    QDBusConnection::sessionBus().call(question, QDBus::BlockWithGui, Timeouts::Default);
    QCoreApplication::processEvents();
}

} // namespace

Notifications::Notifications()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/NotificationServer"), QStringList());
    m_isRunning = QTest::qWaitFor([this] { return m_process.canReadLine(); }, Timeouts::Default);
    m_process.readLine();
}

Notifications::~Notifications()
{
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(Timeouts::Default)) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

QList<QJsonObject> Notifications::calls()
{
    while (m_process.canReadLine()) {
        m_calls.append(json(m_process.readLine()));
    }
    return m_calls;
}

QJsonObject Notifications::take()
{
    if (!QTest::qWaitFor([this] { return !calls().isEmpty(); }, Timeouts::Default)) {
        return {};
    }
    receiveReplies();
    return m_calls.takeFirst();
}

QJsonObject Notifications::takeShown()
{
    QJsonObject call;
    do {
        call = take();
    } while (call.value(QLatin1String("call")) == QLatin1String("CloseNotification"));
    return call;
}

void Notifications::invoke(const QJsonObject &notify, const QString &action)
{
    const int number = notify.value(QLatin1String("number")).toInt();
    m_process.write(QByteArray::number(number) + ' ' + action.toUtf8() + '\n');
}
