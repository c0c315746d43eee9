// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "MessageLog.h"
#include "WhisperStandIn.h"
#include "WhisperWorker.h"

#include <QByteArray>
#include <QObject>
#include <QTemporaryDir>

#include <memory>

//! Base class for tests of WhisperWorker with the stand-in for libwhisper. Resets the stand-in before each test
//! function. After each there must be no warning and no context left. The tests call the worker's slots directly, on
//! their own thread.
class WhisperWorkerFixture : public QObject
{
    Q_OBJECT

protected:
    //! Creates a file that the stand-in accepts as a model, and returns its path.
    QString model(const QString &name = QStringLiteral("model.bin"));
    //! A worker that has loaded that model.
    std::unique_ptr<WhisperWorker> loaded();

    //! Silent audio, by default the shortest that is accepted.
    static QByteArray silence(int bytes = 3200);
    //! The entry of a SignalLog for a failed transcription.
    static QString failed(const char *error);

private Q_SLOTS:
    void init();
    void cleanup();

private:
    const QTemporaryDir m_directory;
    std::unique_ptr<MessageLog> m_log;
};
