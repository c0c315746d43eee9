// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>

#include <functional>

class QQuickWindow;

//! Sees the frames of a window. The window must be rendered on the main thread (QSG_RENDER_LOOP=basic), so that between
//! the start of a frame and its end nothing else happens, and what holds at its end is what it shows.
class FrameWatch : public QObject
{
    Q_OBJECT

public:
    explicit FrameWatch(QQuickWindow *window);

    //! Frames swapped so far.
    int count() const { return m_count; }
    //! When the last one was swapped, by Clock.
    qint64 lastSwapped() const { return m_swapped; }
    //! How long the last one took, from the request to draw it until it was swapped: layout, drawing and waiting for
    //! the graphics. In ns.
    qint64 lastDuration() const { return m_swapped - m_begun; }

    //! Waits for a swapped frame in which the condition holds. Ends the benchmark if none comes.
    //! @return when it was swapped
    qint64 waitForFrame(const std::function<bool()> &condition = {});

    //! Waits until no frame was swapped for so long. Ends the benchmark if the window doesn't come to rest.
    void waitUntilStill(int milliseconds = 50);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    qint64 m_begun = 0;
    qint64 m_swapped = 0;
    int m_count = 0;
};
