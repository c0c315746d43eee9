// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "ScopedEnvironment.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

//! The file of the debug event log. While this object lives, HOME is a temporary directory and LOOMRA_DEBUG has the
//! given value.
class DebugLogFile
{
public:
    //! @param value of LOOMRA_DEBUG; null unsets it
    explicit DebugLogFile(const QByteArray &value);

    QString path() const;
    //! All lines, without their ends.
    QList<QByteArray> lines() const;
    //! The lines that were written since the last call, each as "function: message data". A malformed line fails the
    //! running test.
    QStringList takeEvents();
    //! The same for these functions only; other lines are dropped.
    QStringList takeEventsOf(const QStringList &functions);

private:
    const QTemporaryDir m_home;
    const ScopedEnvironment m_homeVariable;
    const ScopedEnvironment m_debugVariable;
    int m_taken = 0;
};

//! Whether it is valid JSON. Unlike Qt's parser this rejects control characters in texts, as the standard demands.
bool isStrictJson(const QByteArray &line);
