// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "ConfigManager.h"
#include "LoomraSDK.h"
#include "MessageLog.h"
#include "ScopedEnvironment.h"
#include "ScriptedBridge.h"
#include "SignalLog.h"

#include <QDir>
#include <QFile>
#include <QObject>
#include <QTemporaryDir>
#include <QTimer>

#include <memory>

//! Fixture: a LoomraSDK and a scripted peer, with a log of signals and messages. It is connect-only and not
//! initialised, so it starts no process.
class ConnectedSdk
{
public:
    ConnectedSdk();

    //! Opens a connection, without "ready".
    bool connect();
    //! Sends "ready" from the peer, and answers the ping and the request for capabilities that follow.
    bool becomeReady(bool workspaceIntel = true, bool aiRuntime = true);
    //! Drops the connection from the peer's side and waits until the client has noticed.
    bool lose();
    //! Sends a frame and returns when the client has handled it.
    bool deliver(const QString &frame);
    //! The same for a reply.
    //! @param payload JSON
    bool deliverReply(quint64 id, const QString &payload);
    //! Waits for this number of signals, and takes all from the log.
    QStringList waitForSignals(int count);

    //! A private timer: "reconnectTimer" or "reminderTimer".
    QTimer *timer(const char *name) const;
    //! Emits the timer's timeout().
    void expire(const char *name) const;

    MessageLog log; // first, to catch every message
    //! The file of its own requests to systemctl, because one of an earlier fixture may still be written.
    const QTemporaryDir systemctlDirectory {QDir::homePath() + QStringLiteral("/systemctl-XXXXXX")};
    const ScopedEnvironment systemctlLog {"TOVICTL_SYSTEMCTL_LOG",
                                          QFile::encodeName(systemctlDirectory.filePath(QStringLiteral("log")))};
    ScriptedBridge peer;
    ConfigManager config;
    LoomraSDK sdk {&config};
    SignalLog emitted {&sdk};

private:
    //! Frames that the client has handled.
    int m_frames = 0;
};

//! Base of tests that start with a ready connection; each test function has a new one. A function fails if it leaves a
//! warning or a request untaken.
class ConnectedSdkTest : public QObject
{
    Q_OBJECT

protected:
    std::unique_ptr<ConnectedSdk> fixture;

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
};
