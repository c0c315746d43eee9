// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Presses.h"

#include "OmniBarFixture.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QWheelEvent>

void press(OmniBarFixture &bar, QQuickItem *button, By by)
{
    if (by == By::Mouse) {
        bar.click(button);
        return;
    }
    if (by == By::Assistance) {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(button);
        accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        return;
    }
    bar.focus(button);
    bar.key(by == By::Return ? Qt::Key_Return : by == By::Enter ? Qt::Key_Enter : Qt::Key_Space);
}

void turnWheel(OmniBarFixture &bar, QQuickItem *item, int steps)
{
    const QPointF place = bar.place(item).center();
    const QPoint angle(0, steps * 120);
    QWheelEvent event(place, bar.window()->mapToGlobal(place.toPoint()), {}, angle, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(bar.window(), &event);
}
