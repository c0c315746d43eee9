// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "MessageLog.h"
#include "TestedSherpa.h"

#include <QTemporaryDir>

#include <optional>

//! What the tests of the engines that are programs of their own share. Each test function has a directory of its own
//! for temporary files, which must be empty in the end, and no warning may have come that it hasn't taken.
class SherpaTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

protected:
    static constexpr int s_shortestAudio = 3200; // bytes
    static const QByteArray s_audio;

    // What outcomesOf() gives.
    static QStringList ready(const char *text);
    static QStringList failed(const QString &error);

    //! Installs the engine, and loads its model.
    std::unique_ptr<SherpaWorker> loaded(const TestedSherpa *tested);
    QStringList tempFiles() const;

    std::optional<QTemporaryDir> m_temp;
    std::optional<SherpaStandIn> m_standIn;
    std::optional<MessageLog> m_log;

private:
    std::optional<ChangedVariable> m_tempVariable;
};
