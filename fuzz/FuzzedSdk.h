// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "ConfigManager.h"
#include "LoomraSDK.h"

#include <QString>

#include <functional>

//! A LoomraSDK that is ready and may use everything, and what must hold of it whatever the bridge says. It is connected
//! to the peer in this process, which reads what is sent and says nothing.
class FuzzedSdk
{
public:
    FuzzedSdk();

    //! Opens a request, delivers the frame, and checks that the client still serves.
    //! @param choice which operation; any value
    //! @param frame may name the request's id by Feeding::IdPlaceholder
    void take(quint8 choice, const QString &frame);

    //! Whether it should be made anew: open requests stay by design, and so many ids would meet the kept arguments.
    bool isWornOut() const;

private:
    void checkSignals();
    void deliver(const QString &frame);
    //! Delivers the frame for the next ids in turn, one of which is what an open request got.
    void deliverForNextIds(const QString &frame, const std::function<bool()> &isDone);
    void makeCapable();
    //! A fresh request is answered; finds out by the way which id comes next.
    void checkThatItAnswers();

    ConfigManager m_config;
    LoomraSDK m_sdk;
    int m_nextId = 1;
    QString m_deleted;
};
