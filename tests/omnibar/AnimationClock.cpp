// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AnimationClock.h"

#include <QCoreApplication>
#include <QTimerEvent>

using namespace std::chrono_literals;

namespace
{

//! Between two frames of an animation. Qt's own clock takes 16 ms.
constexpr auto s_tick = 50ms;

AnimationClock *s_clock = nullptr;

} // namespace

void AnimationClock::install()
{
    Q_ASSERT(!s_clock);
    s_clock = new AnimationClock;
    s_clock->setParent(QCoreApplication::instance());
    s_clock->QAnimationDriver::install();
}

void AnimationClock::skip(std::chrono::milliseconds time)
{
    if (s_clock->isRunning()) {
        s_clock->m_skipped += time;
        s_clock->advance();
    }
}

qint64 AnimationClock::elapsed() const
{
    return isRunning() ? m_sinceStart.elapsed() + m_skipped.count() : 0;
}

void AnimationClock::start()
{
    m_sinceStart.start();
    m_skipped = 0ms;
    m_tick.start(static_cast<int>(s_tick.count()), Qt::PreciseTimer, this);
    QAnimationDriver::start();
}

void AnimationClock::stop()
{
    m_tick.stop();
    QAnimationDriver::stop();
}

void AnimationClock::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_tick.timerId()) {
        advance();
    }
}
