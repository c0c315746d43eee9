// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SearchRoots.h"
#include "SherpaEngine.h"

#include <QByteArray>
#include <QObject>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <mutex>

//! Turns speech to text by one run of a sherpa-onnx program for each utterance. What the engines differ in is a row of
//! a table.
//!
//! Without a parent, as it is moved to the workers' thread. transcribe() runs there; all else is for the main thread.
class SherpaWorker : public QObject
{
    Q_OBJECT

public:
    //! @param engine must outlive the worker
    //! @param runTimeout what a run may take, in ms
    SherpaWorker(const SherpaEngine &engine, const SearchRoots &roots, int runTimeout);

    const SherpaEngine &engine() const { return m_engine; }

    //! What of the engine is there.
    struct Availability
    {
        bool program; //!< with its libraries
        bool model; //!< the directory, whatever is in it

        bool available() const { return program && model; }
    };
    //! Looks at the disk, as do all of the following.
    Availability availability() const;
    //! The candidate if it is a directory, otherwise where models are expected; empty where there is none.
    QString resolveModelDir(const QString &candidate) const;

    //! Takes the model in the directory @p modelDir, in place of the one before. When something is missing it warns of
    //! that, returns false, and nothing is loaded. The program itself reads the model, at each run anew.
    bool load(const QString &modelDir);
    bool isLoaded() const { return model().isLoaded(); }
    //! The name of the model's directory, empty without a model.
    QString modelName() const { return model().name; }

public Q_SLOTS:
    //! Ends with exactly one of the two signals. Blocks until the program has ended, at most for the run's time-out
    //! and 15 seconds.
    //! @param pcm16Data 16 kHz, mono, signed 16 bit, little-endian
    void transcribe(const QByteArray &pcm16Data);

Q_SIGNALS:
    //! @param elapsedMs milliseconds that the program ran
    void transcriptionReady(const QString &text, double elapsedMs);
    void transcriptionFailed(const QString &error);

private:
    //! What a run is made of: all of it, or nothing.
    struct Model
    {
        QString name;
        QString sherpaBinary;
        QString sherpaLibDir;
        //! The program's arguments but the last one.
        QStringList arguments;
        QProcessEnvironment environment;

        bool isLoaded() const { return !sherpaBinary.isEmpty(); }
    };
    Model model() const;
    void setModel(const Model &model);

    struct Result;
    Result run(const Model &model, const QByteArray &pcm16Data) const;

    const SherpaEngine &m_engine;
    const SearchRoots m_roots;
    const int m_runTimeout;

    // After a cancel a transcription may still be waiting for its turn when the next model is loaded. ThreadSanitizer
    // knows of this kind of mutex only.
    mutable std::mutex m_modelMutex;
    Model m_model;
};
