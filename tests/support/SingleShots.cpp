// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SingleShots.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTimerEvent>

namespace SingleShots
{

QObjectList pending()
{
    QObjectList shots;
    // Each is an object of a private class of Qt's, which ends with its timer.
    for (QObject *object : QAbstractEventDispatcher::instance()->children()) {
        if (object->inherits("QSingleShotTimer")) {
            shots.append(object);
        }
    }
    return shots;
}

void fire()
{
    const QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance();
    for (QObject *shot : pending()) {
        for (const auto &timer : dispatcher->registeredTimers(shot)) {
            QTimerEvent event(timer.timerId);
            QCoreApplication::sendEvent(shot, &event);
        }
    }
}

void cancel()
{
    qDeleteAll(pending());
}

} // namespace SingleShots
