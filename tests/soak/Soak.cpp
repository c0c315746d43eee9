// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Soak.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <cstdlib>

using namespace std::chrono_literals;

namespace
{

constexpr auto s_retryInterval = 5ms;

const char *s_task = "start";

//! Waits for events and processes them. Without an event loop, what deleteLater() was called for outside of an event
//! stays.
void processEvents()
{
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QQuickItem *childNamed(const QQuickItem *parent, const QString &name)
{
    const QList<QQuickItem *> children = parent->childItems();
    for (QQuickItem *child : children) {
        if (child->objectName() == name) {
            return child;
        }
        if (QQuickItem *found = childNamed(child, name)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

namespace Soak
{

void (*reportState)() = nullptr;

void setTask(const char *name)
{
    s_task = name;
}

void fail(const QByteArray &why)
{
    std::fflush(stdout);
    std::fprintf(stderr, "soak: %s: %s\n", s_task, why.constData());
    if (reportState) {
        reportState();
    }
    // No unwinding: threads and windows are in an unknown state.
    std::_Exit(EXIT_FAILURE);
}

void waitFor(const char *what, const std::function<bool()> &condition, std::chrono::milliseconds timeout)
{
    if (condition()) {
        return;
    }
    bool isOver = false;
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, [&isOver] { isOver = true; });
    limit.start(timeout);
    while (!condition()) {
        if (isOver) {
            fail(QByteArray("timeout, waited for: ") + what);
        }
        processEvents();
    }
}

void runEvents(std::chrono::milliseconds duration)
{
    bool isOver = false;
    QTimer::singleShot(duration, [&isOver] { isOver = true; });
    while (!isOver) {
        processEvents();
    }
}

void hurryReconnects()
{
    const QList<QTimer *> timers = qApp->findChildren<QTimer *>(QStringLiteral("reconnectTimer"));
    if (timers.size() != 2) {
        fail("the clients have no retry timers of this name");
    }
    for (QTimer *timer : timers) {
        timer->setInterval(s_retryInterval);
    }
}

} // namespace Soak

SoakWindow::SoakWindow()
{
    // The program ends by these through exec(), which isn't called here.
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        std::signal(number, SIG_DFL);
    }
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *window : windows) {
        if (auto *quickWindow = qobject_cast<QQuickWindow *>(window)) {
            m_window = quickWindow;
        }
    }
    if (!m_window) {
        Soak::fail("the program opened no window");
    }
    Soak::waitFor("an active window", [this] { return m_window->isActive(); });
}

QQuickItem *SoakWindow::find(const char *name) const
{
    return childNamed(m_window->contentItem(), QLatin1String(name));
}

QQuickItem *SoakWindow::item(const char *name) const
{
    QQuickItem *item = find(name);
    if (!item) {
        Soak::fail(QByteArray("the window has no ") + name);
    }
    return item;
}

QVariant SoakWindow::get(const char *property) const
{
    return m_window->property(property);
}

QObject *SoakWindow::object(const char *property) const
{
    auto *object = get(property).value<QObject *>();
    if (!object) {
        Soak::fail(QByteArray("the window has no object ") + property);
    }
    return object;
}

void SoakWindow::set(const char *property, const QVariant &value)
{
    m_window->setProperty(property, value);
}

void SoakWindow::call(const char *function, const QVariant &first, const QVariant &second, const QVariant &third)
{
    const auto argument = [](const QVariant &value) {
        return value.isValid() ? Q_ARG(QVariant, value) : QGenericArgument();
    };
    if (!QMetaObject::invokeMethod(m_window, function, argument(first), argument(second), argument(third))) {
        Soak::fail(QByteArray("the window has no function ") + function);
    }
}
