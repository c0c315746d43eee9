// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AccessibleRowOrder.h"
#include "TestRegistry.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <algorithm>
#include <memory>
#include <thread>

namespace
{

//! A list of which only a few rows are in view.
constexpr char s_list[] = "import QtQuick 2.15\n"
                          "ListView { width: 100; height: 100; cacheBuffer: 0; model: 40\n"
                          "    delegate: Item { width: 100; height: 20 } }";

bool isSorted(const QQuickItem *list)
{
    const QList<QQuickItem *> rows = list->property("contentItem").value<QQuickItem *>()->childItems();
    return std::is_sorted(rows.cbegin(), rows.cend(),
                          [](const QQuickItem *one, const QQuickItem *other) { return one->y() < other->y(); });
}

} // namespace

class tst_AccessibleRowOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QAccessible::setActive(false); }

    void sortsWhileActive();
    void windowIsGoneAfterItsFrame();
};

void tst_AccessibleRowOrder::sortsWhileActive()
{
    AccessibleRowOrder order;
    QQuickWindow window;
    window.resize(100, 100);
    window.show();
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(s_list, QUrl());
    const std::unique_ptr<QObject> object(component.create());
    auto *list = qobject_cast<QQuickItem *>(object.get());
    QVERIFY2(list, qPrintable(component.errorString()));
    list->setParentItem(window.contentItem());
    // A row at a time, because rows that come into view together are created from top to bottom.
    for (int y = 400; y >= 200; y -= 20) {
        list->setProperty("contentY", y);
        window.grabWindow();
    }
    QVERIFY(!isSorted(list));

    QAccessible::setActive(true);
    window.requestUpdate();
    QTRY_VERIFY(isSorted(list));
}

//! With a renderer in another thread, the signal arrives later than it is emitted.
void tst_AccessibleRowOrder::windowIsGoneAfterItsFrame()
{
    AccessibleRowOrder order;
    auto window = std::make_unique<QQuickWindow>();
    QAccessible::setActive(true);
    std::thread([&] { Q_EMIT window->frameSwapped(); }).join();
    window.reset();
    QCoreApplication::sendPostedEvents(&order);
}

REGISTER_TEST(tst_AccessibleRowOrder, QGuiApplication)

#include "tst_AccessibleRowOrder.moc"
