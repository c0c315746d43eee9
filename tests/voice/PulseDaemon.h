// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

//! A second PulseAudio daemon besides the one of the test environment, which a test can freeze and kill. PULSE_SERVER
//! is set to it until this object is deleted. Its null sinks are those of the test environment.
//!
//! Errors in its set-up fail the running test.
class PulseDaemon
{
public:
    PulseDaemon();
    ~PulseDaemon();
    Q_DISABLE_COPY_MOVE(PulseDaemon)

    //! Stops the process: it no longer replies, but its connections stay open.
    void freeze();
    void thaw();
    void kill();
    //! Starts it again after kill(), with the same socket.
    void start();

private:
    const QTemporaryDir m_directory;
    const QByteArray m_serverBefore;
    QProcess m_process;
};
