// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "EngineUnderTest.h"

#include "IsolatedRoots.h"
#include "MessageLog.h"
#include "ScopedEnvironment.h"

#include <QTemporaryDir>

#include <optional>

//! Base class for tests of SherpaWorker. Each test function gets a directory for temporary files, which must be empty
//! at its end, and must take all warnings from the log.
class SherpaWorkerFixture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

protected:
    static constexpr int s_minimumBytes = 3200;
    static const QByteArray s_audio;

    // Results of outcomesOf().
    static QStringList ready(const char *text);
    static QStringList failed(const QString &error);

    //! Installs the stand-in for an engine and returns a worker that has loaded its model.
    std::unique_ptr<SherpaWorker> loaded(const EngineUnderTest *tested);
    QStringList tempFiles() const;

    std::optional<QTemporaryDir> m_temp;
    std::optional<SherpaStandIn> m_standIn;
    std::optional<MessageLog> m_log;

private:
    std::optional<ScopedEnvironment> m_tempVariable;
};
