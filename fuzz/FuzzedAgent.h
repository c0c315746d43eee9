// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "AgentBridge.h"

#include <QString>

//! An AgentBridge connected to the peer in this process, with the invariants that hold for any input.
class FuzzedAgent
{
public:
    FuzzedAgent();

    //! Opens a request, delivers the frame, checks that a new prompt is still answered, and cancels what is open.
    //! @param choice selects the operation; any value is valid
    //! @param frame may contain Feeding::IdPlaceholder for the id of the request
    void take(quint8 choice, const QString &frame);

private:
    void checkSignals();
    void deliver(const QString &frame);
    void checkState() const;
    void checkThatItAnswers();
    void cancelAll();

    AgentBridge m_agent;
    //! The id of the last request. Each operation uses one id.
    qint64 m_lastId = 0;
    QString m_replied;
};
