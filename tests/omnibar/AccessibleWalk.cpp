// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AccessibleWalk.h"

#include "AccessibleItems.h"
#include "OmniBarFixture.h"

#include <QAccessible>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSet>

using namespace AccessibleItems;

namespace
{

//! Everything that assistive technology finds from the window down.
void collect(QAccessibleInterface *accessible, QSet<QObject *> *found)
{
    if (!accessible) {
        return;
    }
    found->insert(accessible->object());
    for (int child = 0; child < accessible->childCount(); ++child) {
        collect(accessible->child(child), found);
    }
}

QSet<QObject *> reachableFrom(QQuickWindow *window)
{
    QSet<QObject *> reachable;
    collect(QAccessible::queryAccessibleInterface(window), &reachable);
    return reachable;
}

} // namespace

namespace AccessibleWalk
{

QStringList faults(QQuickWindow *window, const Toolkit &toolkit)
{
    return controlFaults(window, toolkit) + textFaults(window) + tabFaults(window, toolkit);
}

QStringList controlFaults(QQuickWindow *window, const Toolkit &toolkit)
{
    QStringList wrong;
    const QSet<QObject *> reachable = reachableFrom(window);
    const QList<QQuickItem *> controls = OmniBarFixture::itemsWhere(window->contentItem(), [](QQuickItem *item) {
        return isSeen(item) && !isPart(item) && (isControl(item) || isBareClickArea(item));
    });
    for (QQuickItem *item : controls) {
        if (toolkit.types.contains(typeOf(item))) {
            continue;
        }
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
        if (!accessible) {
            wrong.append(described(item) + QStringLiteral(" is unknown"));
            continue;
        }
        // Qt hides the name of a password's field along with its text.
        if (accessible->text(QAccessible::Name).trimmed().isEmpty() && !accessible->state().passwordEdit) {
            wrong.append(described(item) + QStringLiteral(" has no name"));
        }
        if (!rolesOf(item).contains(accessible->role())) {
            wrong.append(described(item) + QStringLiteral(" has the role %1").arg(accessible->role()));
        }
        if (!reachable.contains(item)) {
            wrong.append(described(item) + QStringLiteral(" is out of reach"));
        }
    }
    if (controls.isEmpty()) {
        wrong.append(QStringLiteral("there are no controls"));
    }
    return wrong;
}

QStringList textFaults(QQuickWindow *window)
{
    QString accessibleTexts;
    const QSet<QObject *> reachable = reachableFrom(window);
    for (QObject *object : reachable) {
        const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(object);
        for (const QAccessible::Text text : {QAccessible::Name, QAccessible::Description, QAccessible::Value}) {
            accessibleTexts += accessible->text(text).simplified() + QLatin1Char('\n');
        }
    }
    QStringList missing;
    const QList<QQuickItem *> texts = OmniBarFixture::itemsWhere(window->contentItem(), [](QQuickItem *item) {
        // A placeholder repeats the name or the description of its field.
        return item->inherits("QQuickText") && !item->inherits("QQuickPlaceholderText") && isSeen(item)
            && item->objectName() != QLatin1String("words");
    });
    for (QQuickItem *item : texts) {
        QString text = item->property("text").toString().simplified();
        if (item->property("textFormat").toInt() != Qt::PlainText) {
            text.remove(QStringLiteral("<b>")).remove(QStringLiteral("</b>"));
        }
        // Named in words.
        const bool isThumb = text.startsWith(QStringLiteral("👍")) || text.startsWith(QStringLiteral("👎"));
        if (text.size() > 1 && !isThumb && !accessibleTexts.contains(text)) {
            missing.append(described(item) + QStringLiteral(" shows a text that can't be found: ") + text);
        }
    }
    return missing;
}

} // namespace AccessibleWalk
