// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "ConfigManager.h"
#include "LoomraSDK.h"

#include <QString>

#include <functional>

//! A LoomraSDK that is ready and has all capabilities, with the invariants that hold for any input. It is connected to
//! the peer in this process, which never replies.
class FuzzedSdk
{
public:
    FuzzedSdk();

    //! Opens a request, delivers the frame, and checks that a new request is still answered.
    //! @param choice selects the operation; any value is valid
    //! @param frame may contain Feeding::IdPlaceholder for the id of the request
    void take(quint8 choice, const QString &frame);

    //! Whether the object should be replaced: unanswered requests stay open by design, and the ids would reach the
    //! range that stands for kept arguments.
    bool isWornOut() const;

private:
    void checkSignals();
    void deliver(const QString &frame);
    //! Delivers the frame with one id after another until the condition holds: the exact id of the open request isn't
    //! known.
    void deliverForNextIds(const QString &frame, const std::function<bool()> &isDone);
    void makeCapable();
    //! Checks that a new request is answered, and finds out which id comes next.
    void checkThatItAnswers();

    ConfigManager m_config;
    LoomraSDK m_sdk;
    int m_nextId = 1;
    QString m_deleted;
};
