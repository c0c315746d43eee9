// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "WakeWord.h"

#include "UserUnit.h"

#include <QDBusConnection>
#include <QDebug>

namespace
{

QString unit()
{
    return QStringLiteral("tovi-wakeword.service");
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
    UserUnit::start(unit());
    qDebug("VoiceBridge: requested tovi-wakeword.service start");
}

void WakeWord::stopService()
{
    UserUnit::stop(unit());
    qDebug("VoiceBridge: requested tovi-wakeword.service stop");
}
