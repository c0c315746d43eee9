// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>

#include <chrono>
#include <functional>

class QQuickWindow;

//! Observes the frames of a window. The window must be rendered on the main thread (QSG_RENDER_LOOP=basic): then
//! nothing else happens during a frame, so that the state at its end is the state that it shows.
class FrameWatch : public QObject
{
    Q_OBJECT

public:
    explicit FrameWatch(QQuickWindow *window);

    //! The number of swapped frames.
    int count() const { return m_count; }
    //! The time of the last swap, by Clock.
    qint64 lastSwapped() const { return m_swapped; }
    //! The duration of the last frame from its update request to the swap, in ns: layout, drawing and waiting for the
    //! graphics.
    qint64 lastDuration() const { return m_swapped - m_begun; }

    //! Waits for a swapped frame in which the condition holds. Ends the benchmark after a timeout.
    //! @return the time of the swap
    qint64 waitForFrame(const std::function<bool()> &condition = {});

    //! Waits until no frame is swapped for this time. Ends the benchmark after a timeout.
    void waitUntilStill(std::chrono::milliseconds quietTime = std::chrono::milliseconds(50));

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    qint64 m_begun = 0;
    qint64 m_swapped = 0;
    int m_count = 0;
};
