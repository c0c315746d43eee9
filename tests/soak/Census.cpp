// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Census.h"

#include <QAbstractEventDispatcher>
#include <QObject>
#include <QThread>
#include <QVariant>

#include <mutex>
#include <unordered_set>

//! Qt's hooks for debuggers, a part of its ABI. See private/qhooks_p.h, which needs Qt's private headers.
extern "C" Q_DECL_IMPORT quintptr qtHookData[];

namespace
{

constexpr int s_addObjectHook = 3;
constexpr int s_removeObjectHook = 4;

std::mutex s_mutex;

std::unordered_set<QObject *> &objects()
{
    // Never destroyed, because objects are removed even after main().
    static auto *const s_objects = new std::unordered_set<QObject *>;
    return *s_objects;
}

void note(QObject *object)
{
    const std::lock_guard lock(s_mutex);
    objects().insert(object);
}

void forget(QObject *object)
{
    const std::lock_guard lock(s_mutex);
    objects().erase(object);
}

bool isRunning(const QObject *object)
{
    // These classes are private.
    return (object->inherits("QQmlTimer") || object->inherits("QQuickAbstractAnimation"))
        && object->property("running").toBool();
}

} // namespace

namespace Census
{

void start()
{
    qtHookData[s_addObjectHook] = reinterpret_cast<quintptr>(&note);
    qtHookData[s_removeObjectHook] = reinterpret_cast<quintptr>(&forget);
}

QMap<QByteArray, int> byClass()
{
    const std::lock_guard lock(s_mutex);
    QMap<QByteArray, int> counts;
    for (const QObject *object : objects()) {
        ++counts[object->metaObject()->className()];
    }
    return counts;
}

QMap<QByteArray, int> runningTimers()
{
    const std::lock_guard lock(s_mutex);
    QThread *thread = QThread::currentThread();
    auto *dispatcher = QAbstractEventDispatcher::instance(thread);
    QMap<QByteArray, int> timers;
    for (QObject *object : objects()) {
        if (object->thread() != thread) {
            continue;
        }
        const int running = dispatcher->registeredTimers(object).size() + (isRunning(object) ? 1 : 0);
        if (running > 0) {
            timers[object->metaObject()->className()] += running;
        }
    }
    return timers;
}

} // namespace Census
