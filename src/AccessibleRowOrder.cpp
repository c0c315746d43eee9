// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AccessibleRowOrder.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>

namespace
{

void sortRows(const QQuickItem *content)
{
    const QList<QQuickItem *> rows = content->childItems();
    const auto isAbove = [](const QQuickItem *one, const QQuickItem *other) { return one->y() < other->y(); };
    if (std::is_sorted(rows.cbegin(), rows.cend(), isAbove)) {
        return;
    }
    QList<QQuickItem *> sorted = rows;
    std::stable_sort(sorted.begin(), sorted.end(), isAbove);
    for (int i = 1; i < sorted.size(); ++i) {
        sorted.at(i)->stackAfter(sorted.at(i - 1));
    }
}

} // namespace

AccessibleRowOrder::AccessibleRowOrder()
{
    // Asking now whether accessibility is active would make Qt look for the bus too early: see AccessibilityBus.
    QAccessible::installActivationObserver(this);
}

AccessibleRowOrder::~AccessibleRowOrder()
{
    QAccessible::removeActivationObserver(this);
}

void AccessibleRowOrder::sort(QQuickItem *root)
{
    if (!root->isVisible()) {
        return;
    }
    if (root->inherits("QQuickListView")) {
        sortRows(root->property("contentItem").value<QQuickItem *>());
    }
    const QList<QQuickItem *> children = root->childItems();
    for (QQuickItem *child : children) {
        sort(child);
    }
}

bool AccessibleRowOrder::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        if (auto *window = qobject_cast<QQuickWindow *>(watched)) {
            watch(window);
        }
    }
    return QObject::eventFilter(watched, event);
}

void AccessibleRowOrder::accessibilityActiveChanged(bool active)
{
    m_isActive = active;
    if (!active) {
        return;
    }
    qApp->installEventFilter(this);
    const QWindowList windows = QGuiApplication::allWindows();
    for (QWindow *each : windows) {
        if (auto *window = qobject_cast<QQuickWindow *>(each)) {
            watch(window);
        }
    }
}

void AccessibleRowOrder::watch(QQuickWindow *window)
{
    // After the frame, because some lists create their rows just before they are drawn.
    disconnect(window, &QQuickWindow::frameSwapped, this, nullptr);
    // A renderer with its own thread emits the signal there, so the window may be gone when it arrives.
    connect(window, &QQuickWindow::frameSwapped, this, [this, window = QPointer<QQuickWindow>(window)] {
        if (m_isActive && window) {
            sort(window->contentItem());
        }
    });
}
