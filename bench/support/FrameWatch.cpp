// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FrameWatch.h"

#include "Clock.h"
#include "EventLoop.h"
#include "Figures.h"

#include <QEvent>
#include <QQuickWindow>

namespace
{

constexpr int s_longestUnrest = 20000; // ms

}

FrameWatch::FrameWatch(QQuickWindow *window)
{
    window->installEventFilter(this);
    // Direct: the frame is over when the signal comes, not when the event loop gets to it.
    connect(
        window, &QQuickWindow::frameSwapped, this,
        [this] {
            m_swapped = Clock::now();
            ++m_count;
        },
        Qt::DirectConnection);
}

bool FrameWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::UpdateRequest) {
        m_begun = Clock::now();
    }
    return QObject::eventFilter(watched, event);
}

qint64 FrameWatch::waitForFrame(const std::function<bool()> &condition)
{
    int seen = m_count;
    const bool came = EventLoop::until([&] {
        const bool isNew = m_count > seen;
        seen = m_count;
        return isNew && (!condition || condition());
    });
    if (!came) {
        notMeasured("the frame that was waited for never came");
    }
    return m_swapped;
}

void FrameWatch::waitUntilStill(int milliseconds)
{
    const qint64 limit = Clock::now() + s_longestUnrest * qint64(1000000);
    int before = m_count;
    do {
        if (Clock::now() > limit) {
            notMeasured("the window did not come to rest");
        }
        before = m_count;
        EventLoop::run(milliseconds);
    } while (m_count > before);
}
