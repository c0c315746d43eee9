// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

//! A PulseAudio daemon beside the one of the test's surroundings, which a test can stop and kill. While it lives,
//! PULSE_SERVER leads to it. Its default source is the monitor of the null sink "mic".
//!
//! What goes wrong in making it fails the running test.
class PulseDaemon
{
public:
    PulseDaemon();
    ~PulseDaemon();
    Q_DISABLE_COPY_MOVE(PulseDaemon)

    //! It no longer answers, but its connections stay.
    void freeze();
    void thaw();
    //! Dies at once.
    void kill();

private:
    const QTemporaryDir m_directory;
    const QByteArray m_serverBefore;
    QProcess m_process;
};
