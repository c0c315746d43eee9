// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "AgentBridge.h"

#include <QString>

//! An AgentBridge that is connected to the peer in this process, and what must hold of it whatever the bridge says.
class FuzzedAgent
{
public:
    FuzzedAgent();

    //! Opens a request, delivers the frame, checks that the client still serves, and cancels what is left.
    //! @param choice which operation; any value
    //! @param frame may name the request's id by Feeding::IdPlaceholder
    void take(quint8 choice, const QString &frame);

private:
    void checkSignals();
    void deliver(const QString &frame);
    void checkState() const;
    void checkThatItAnswers();
    void cancelAll();

    AgentBridge m_agent;
    //! Every operation takes one id, and nothing else does.
    qint64 m_lastId = 0;
    QString m_replied;
};
