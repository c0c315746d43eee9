// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ObjectWalk.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QSet>
#include <QTimer>
#include <QVariant>

namespace ObjectWalk
{

namespace
{

bool isRunning(const QObject *object)
{
    if (const auto *timer = qobject_cast<const QTimer *>(object)) {
        return timer->isActive();
    }
    // These classes are private.
    const bool moves = object->inherits("QQuickAbstractAnimation") || object->inherits("QQmlTimer");
    return moves && object->property("running").toBool();
}

//! The names of the nearest parents, to find the object.
QString placeOf(const QObject *object)
{
    QStringList names;
    for (const QObject *above = object->parent(); above && names.size() < 3; above = above->parent()) {
        names.prepend(above->objectName().isEmpty() ? QString::fromLatin1(above->metaObject()->className())
                                                    : above->objectName());
    }
    return names.join(QLatin1Char('/'));
}

void walk(QObject *object, QSet<QObject *> &seen, QStringList &running)
{
    if (!object || seen.contains(object)) {
        return;
    }
    seen.insert(object);
    if (isRunning(object)) {
        running.append(QString::fromLatin1(object->metaObject()->className()) + QStringLiteral(" in ")
                       + placeOf(object));
    }
    for (QObject *child : object->children()) {
        walk(child, seen, running);
    }
    // Items that a view or loader created are children only in the scene.
    if (auto *window = qobject_cast<QQuickWindow *>(object)) {
        walk(window->contentItem(), seen, running);
    }
    if (auto *item = qobject_cast<QQuickItem *>(object)) {
        const QList<QQuickItem *> items = item->childItems();
        for (QQuickItem *child : items) {
            walk(child, seen, running);
        }
    }
}

} // namespace

QStringList runningIn(const QList<QObject *> &roots)
{
    QSet<QObject *> seen;
    QStringList running;
    for (QObject *root : roots) {
        walk(root, seen, running);
    }
    return running;
}

} // namespace ObjectWalk
