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

//! What tests of the whisper worker against the stand-in of the library share: before each the stand-in is as new, and
//! after each nothing was warned of and no context is left over. The worker's slots are called directly, as the thread
//! that they run on is whoever calls.
class WhisperWorkerFixture : public QObject
{
    Q_OBJECT

protected:
    //! A file that the stand-in takes for a model.
    QString model(const QString &name = QStringLiteral("model.bin"));
    //! A worker with that model.
    std::unique_ptr<WhisperWorker> loaded();

    //! The shortest utterance that passes, or another number of bytes.
    static QByteArray silence(int bytes = 3200);
    //! What a SignalLog has of a failure.
    static QString failed(const char *error);

private Q_SLOTS:
    void init();
    void cleanup();

private:
    const QTemporaryDir m_directory;
    std::unique_ptr<MessageLog> m_log;
};
