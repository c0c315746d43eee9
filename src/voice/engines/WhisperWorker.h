// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QMutex>
#include <QObject>
#include <QString>

struct whisper_context;

//! Turns a finished capture to text with libwhisper, in this process. Without the library in the build no model can be
//! loaded, and all else stands.
//!
//! Without a parent, as it is moved to the workers' thread, where transcribe() and the signals are. One context, under
//! a mutex that is held through a whole transcription: a load from another thread waits for that.
class WhisperWorker : public QObject
{
    Q_OBJECT

public:
    WhisperWorker() = default;
    //! Waits for a running transcription, and frees the model.
    ~WhisperWorker() override;

    //! Loads the model file at @p path in place of the one before, which is gone even if this fails. Blocks as long as
    //! it takes, and before that until a running transcription is over. Any thread.
    //! @return false where the library can't make a model of the file, or isn't in the build
    bool loadModel(const QString &path);

public Q_SLOTS:
    //! Leads to exactly one of the two signals. Blocks as long as it takes.
    //! @param pcm16Data 16 kHz, mono, signed 16 bit, little-endian; at least 0.1 s
    void transcribe(const QByteArray &pcm16Data);

Q_SIGNALS:
    //! @param text as the model gave it, markers of noise and all; never empty
    //! @param elapsedMs milliseconds that the recognition itself took
    void transcriptionReady(const QString &text, double elapsedMs);
    void transcriptionFailed(const QString &error);

private:
    //! Null when no model is loaded. Changes under the mutex only.
    whisper_context *m_whisperContext = nullptr;
    QMutex m_contextMutex;
};
