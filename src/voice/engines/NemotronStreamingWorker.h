// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

//! Turns speech to text while it is spoken. The engine is no part of this build: the model can't be loaded, the
//! sessions do nothing, and VoiceBridge never starts one, as live transcription isn't available. An engine is a
//! subclass that overrides the slots; everything around it stands.
//!
//! Without a parent, as it is moved to the workers' thread, where all slots run. finalizeSession() must always lead to
//! exactly one of transcriptionReady() and transcriptionFailed(), also when it follows a cancelSession(), as it does
//! where a capture with speech was cancelled. cancelSession() comes without a session too, and leads to no signal.
class NemotronStreamingWorker : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    //! A model is ready. Changes in loadModel() only.
    bool isLoaded() const { return m_loaded; }
    //! Name of the loaded model, empty without one.
    QString modelName() const { return m_modelName; }

public Q_SLOTS:
    //! Loads the model in the directory @p modelDir, in place of the one before. Blocks as long as it takes.
    virtual bool loadModel(const QString &modelDir);
    virtual void startSession() { }
    //! One chunk of a running session, 16 kHz, mono, signed 16 bit, little-endian. 50 ms each, speech or not.
    virtual void feedChunk(const QByteArray &pcm16Chunk) { Q_UNUSED(pcm16Chunk) }
    virtual void finalizeSession() { }
    virtual void cancelSession() { }

Q_SIGNALS:
    //! All that was understood of the session so far.
    void partialReady(const QString &text);
    //! @param elapsedMs milliseconds that the engine worked
    void transcriptionReady(const QString &text, double elapsedMs);
    void transcriptionFailed(const QString &error);

protected:
    QString m_modelName;
    bool m_loaded = false;
};
