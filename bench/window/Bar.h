// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Application.h"
#include "support/FrameWatch.h"
#include "support/Peer.h"

#include <QVariant>

#include <memory>

class AgentBridge;
class VoiceBridge;
class QQuickItem;
class QQuickWindow;

//! The real program in this process, controlled by the benchmark's main(). The cursor doesn't blink, because that would
//! draw additional frames.
class Bar
{
public:
    //! Opens the window and waits until it is active, idle and connected to the peer.
    Bar(int &argc, char **argv);
    ~Bar();

    QQuickWindow *window() const { return m_window; }
    Peer &peer() { return m_peer; }
    FrameWatch &frames() { return *m_frames; }
    AgentBridge *agent() const;
    VoiceBridge *voice() const;

    //! An item of the window by its objectName. Ends the benchmark if there is none.
    QQuickItem *item(const char *name) const;
    //! Calls a function of the window. Invalid arguments are not passed.
    void call(const char *function, const QVariant &first = {}, const QVariant &second = {});

    //! The number of rows in the conversation.
    int rowCount() const;
    //! Whether the last row has been created and is inside the visible part of the list. It may still be transparent,
    //! because rows fade in.
    bool isLastRowBuilt() const { return lastRow(); }
    //! Whether the last row is visible.
    bool isLastRowShown() const;
    //! Waits for the frame that shows the last row. @return the time of its swap, by Clock
    qint64 waitForLastRow();

private:
    QQuickItem *lastRow() const;

    Application m_application;
    Peer m_peer; // needs an application object; until it listens, the chat client retries
    QQuickWindow *const m_window;
    std::unique_ptr<FrameWatch> m_frames;
};
