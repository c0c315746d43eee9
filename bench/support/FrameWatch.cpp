// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FrameWatch.h"

#include "Clock.h"
#include "EventLoop.h"
#include "Figures.h"

#include <QEvent>
#include <QQuickWindow>

using namespace std::chrono_literals;

namespace
{

constexpr std::chrono::nanoseconds s_timeout = 20s;

}

FrameWatch::FrameWatch(QQuickWindow *window)
{
    window->installEventFilter(this);
    // Direct, because the frame ends when the signal is emitted.
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
        notMeasured("the expected frame was never swapped");
    }
    return m_swapped;
}

void FrameWatch::waitUntilStill(std::chrono::milliseconds quietTime)
{
    const qint64 limit = Clock::now() + s_timeout.count();
    int before = m_count;
    do {
        if (Clock::now() > limit) {
            notMeasured("the window did not come to rest");
        }
        before = m_count;
        EventLoop::run(quietTime);
    } while (m_count > before);
}
