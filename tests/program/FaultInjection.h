// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "FaultState.h"

#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryFile>

#include <chrono>

//! Faults of the machine that a started program sees, and that a test can change while it runs: the time of day, and
//! the disk of some folders. They reach its child processes too. Root isn't exempt from them, as it would be from
//! permissions.
//!
//! Errors in the set-up fail the running test.
class FaultInjection
{
public:
    FaultInjection();
    Q_DISABLE_COPY_MOVE(FaultInjection)

    //! Adds what a program needs to see the faults.
    //! @param folders absolute paths whose disk setDisk() affects
    void addTo(QProcessEnvironment &environment, const QStringList &folders = {});

    //! How far the clock is ahead of the real one; negative values set it back. Timers aren't affected.
    void setClock(std::chrono::seconds ahead);
    void setDisk(FaultState::Disk disk);

private:
    QTemporaryFile m_file;
    FaultState *m_state = nullptr;
};
