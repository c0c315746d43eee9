// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

//! Transcribes speech while the user speaks. This build has no engine for it: the model can't be loaded, sessions do
//! nothing, and VoiceBridge never starts one because live transcription isn't available. An engine is a subclass that
//! overrides the slots.
//!
//! Has no parent because it is moved to the workers' thread, on which all slots run. finalizeSession() must always lead
//! to exactly one of transcriptionReady() and transcriptionFailed(), even after cancelSession(): that is the order of
//! calls when a capture with speech is cancelled. cancelSession() may be called without a session, and emits nothing.
class NemotronStreamingWorker : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    //! Changes only in loadModel().
    bool isLoaded() const { return m_loaded; }
    //! Empty if no model is loaded.
    QString modelName() const { return m_modelName; }

public Q_SLOTS:
    //! Replaces the loaded model by the one in the directory @p modelDir. Blocks until it is loaded.
    virtual bool loadModel(const QString &modelDir);
    virtual void startSession() { }
    //! The next 50 ms of the running session, speech or not. 16 kHz, mono, signed 16 bit, little-endian.
    virtual void feedChunk(const QByteArray &pcm16Chunk) { Q_UNUSED(pcm16Chunk) }
    virtual void finalizeSession() { }
    virtual void cancelSession() { }

Q_SIGNALS:
    //! The transcript of the session so far.
    void partialReady(const QString &text);
    //! @param elapsedMs engine time in milliseconds
    void transcriptionReady(const QString &text, double elapsedMs);
    void transcriptionFailed(const QString &error);

protected:
    QString m_modelName;
    bool m_loaded = false;
};
