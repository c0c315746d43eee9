// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QProcess>

#include <sys/types.h>

//! A process that doesn't outlive this one, however this one ends. Destructors aren't enough: Qt calls exit() when the
//! connection to the display is lost, and a crash calls nothing at all.
//!
//! Start it on a thread that lives as long as the process is needed, because it also ends with that thread.
class ChildProcess : public QProcess
{
public:
    //! @param signal sent to the process when this one has ended, such as SIGTERM
    explicit ChildProcess(int signal, QObject *parent = nullptr);

protected:
    void setupChildProcess() override;

private:
    const int m_signal;
    const pid_t m_ownId;
};
