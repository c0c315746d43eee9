// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "ConfigManager.h"
#include "LoomraSDK.h"
#include "MessageLog.h"
#include "ScriptedBridge.h"
#include "SignalLog.h"

#include <QObject>
#include <QTimer>

#include <memory>

//! A LoomraSDK with a scripted peer, connect-only and not initialised, so that it starts nothing. All that is heard of
//! it is written down.
class ConnectedSdk
{
public:
    ConnectedSdk();

    //! Opens a connection; "ready" has not come yet.
    bool connect();
    //! The peer says "ready"; ping and capabilities are taken, and answered with these capabilities.
    bool becomeReady(bool workspaceIntel = true, bool aiRuntime = true);
    //! The peer drops the connection, which is noticed and logged.
    bool lose();
    //! Sends a frame and returns when the client has dealt with it.
    bool deliver(const QString &frame);
    //! The same for a reply.
    //! @param payload JSON
    bool deliverReply(quint64 id, const QString &payload);
    //! The next signals, when there are so many; those heard before are forgotten.
    QStringList waitForSignals(int count);

    //! The timers that it keeps to itself: "reconnectTimer", "reminderTimer".
    QTimer *timer(const char *name) const;
    //! What the timer does when it runs out.
    void expire(const char *name) const;

    MessageLog log; // first, to see everything
    ScriptedBridge peer;
    ConfigManager config;
    LoomraSDK sdk {&config};
    SignalLog emitted {&sdk};
    SignalLog &heard = emitted; // the old name, still used by tst_LoomraSDKConnection

private:
    //! A second look at each frame, to know when the client has dealt with it.
    int m_frames = 0;
};

//! Tests that begin with a ready connection, each with one of its own. A warning that the test doesn't take, and a
//! request that it doesn't know of, fail it.
class ConnectedSdkTest : public QObject
{
    Q_OBJECT

protected:
    std::unique_ptr<ConnectedSdk> fixture;
    std::unique_ptr<ConnectedSdk> &c = fixture; // the old name, still used by tst_LoomraSDKConnection

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
};
