// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QMutex>
#include <QObject>
#include <QString>

struct whisper_context;

//! Transcribes a finished capture with libwhisper, in this process. In a build without the library, loading a model
//! always fails.
//!
//! Has no parent because it is moved to the workers' thread, on which transcribe() runs and the signals are emitted. A
//! mutex is held during the whole transcription: loading a model from another thread waits for it.
class WhisperWorker : public QObject
{
    Q_OBJECT

public:
    WhisperWorker() = default;
    //! Waits for a running transcription.
    ~WhisperWorker() override;

    //! Replaces the loaded model by the file at @p path. Without success no model is loaded afterwards. Blocks until a
    //! running transcription has ended and the file is loaded. Any thread.
    //! @return false if the library can't load the file or isn't part of this build
    bool loadModel(const QString &path);

public Q_SLOTS:
    //! Emits exactly one of the two signals. Blocks until then.
    //! @param pcm16Data 16 kHz, mono, signed 16 bit, little-endian; at least 0.1 s
    void transcribe(const QByteArray &pcm16Data);

Q_SIGNALS:
    //! @param text as the model returned it, with its markers for noise; never empty
    //! @param elapsedMs time of the recognition itself in milliseconds
    void transcriptionReady(const QString &text, double elapsedMs);
    void transcriptionFailed(const QString &error);

private:
    //! Null if no model is loaded. Guarded by the mutex.
    whisper_context *m_whisperContext = nullptr;
    QMutex m_contextMutex;
};
