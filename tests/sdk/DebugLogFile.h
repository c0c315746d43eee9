// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "ScopedEnvironment.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

//! The debug event log as it lies on the disk, in a home directory that is made for it: while this lives, HOME is
//! that one, and LOOMRA_DEBUG has a value of the test's.
class DebugLogFile
{
public:
    //! @param value of LOOMRA_DEBUG; null unsets it
    explicit DebugLogFile(const QByteArray &value);

    QString path() const;
    //! Everything in it, without the ends of lines.
    QList<QByteArray> lines() const;
    //! The lines that were written since the last call, each as "function: message data", the data as it stands.
    //! A line of another form than every line has fails the running test.
    QStringList takeEvents();
    //! The same of these functions alone; the others are forgotten.
    QStringList takeEventsOf(const QStringList &functions);

private:
    const QTemporaryDir m_home;
    const ScopedEnvironment m_homeVariable;
    const ScopedEnvironment m_debugVariable;
    int m_taken = 0;
};

//! Whether any reader of JSON takes it. Qt's own reads control characters within texts too, which others don't.
bool isStrictJson(const QByteArray &line);
