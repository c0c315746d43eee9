// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "WakeWord.h"

#include <QDBusConnection>
#include <QDebug>
#include <QProcess>

namespace
{

void askManager(const char *verb)
{
    QProcess::startDetached(QStringLiteral("systemctl"),
                            {QStringLiteral("--user"), QLatin1String(verb), QStringLiteral("tovi-wakeword.service")});
    qDebug("VoiceBridge: requested tovi-wakeword.service %s", verb);
}

} // namespace

void WakeWord::connectSignal(QObject *listener)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qWarning("VoiceBridge: cannot connect to D-Bus session bus for wake word");
        return;
    }
    bus.connect(QString(), QStringLiteral("/org/kde/loomra/WakeWord"), QStringLiteral("org.kde.loomra.WakeWord"),
                QStringLiteral("Activated"), listener, SLOT(onWakeWordActivated(QString)));
    qDebug("VoiceBridge: listening for wake word D-Bus signal");
}

void WakeWord::startService()
{
    askManager("start");
}

void WakeWord::stopService()
{
    askManager("stop");
}
