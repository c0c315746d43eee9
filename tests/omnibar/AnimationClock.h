// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QAnimationDriver>
#include <QBasicTimer>
#include <QElapsedTimer>

#include <chrono>

//! The clock of all animations in the process. It runs in real time, at a rate that draws fewer frames than a user
//! sees, and a test can put it forward, so that it needn't wait for a transition and draw each frame of it. Main thread
//! only.
class AnimationClock : public QAnimationDriver
{
    Q_OBJECT

public:
    //! Takes the place of Qt's own clock for the rest of the process. Call before anything is animated.
    static void install();
    //! Moves everything that is animated forward at once. QML timers that run beside an animation follow. Does nothing
    //! while nothing is animated.
    static void skip(std::chrono::milliseconds time);

    qint64 elapsed() const override;

protected:
    void start() override;
    void stop() override;
    void timerEvent(QTimerEvent *event) override;

private:
    AnimationClock() = default;

    QBasicTimer m_tick;
    QElapsedTimer m_sinceStart;
    std::chrono::milliseconds m_skipped {0};
};
