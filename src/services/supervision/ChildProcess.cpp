// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ChildProcess.h"

#include <sys/prctl.h>
#include <unistd.h>

ChildProcess::ChildProcess(int signal, QObject *parent)
    : QProcess(parent)
    , m_signal(signal)
    , m_ownId(::getpid())
{
}

void ChildProcess::setupChildProcess()
{
    ::prctl(PR_SET_PDEATHSIG, m_signal);
    // This process may have ended before the call.
    if (::getppid() != m_ownId) {
        ::_exit(1);
    }
}
