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

#include <atomic>
#include <chrono>
#include <mutex>

class QProcess;

//! Transcribes speech by running a sherpa-onnx program once for each utterance. SherpaEngine has the differences
//! between the engines.
//!
//! Has no parent because it is moved to the workers' thread, on which transcribe() runs. Everything else is called on
//! the main thread.
class SherpaWorker : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds StartTimeout {5000};
    //! For the end of a killed program. Only a very busy machine needs that long.
    static constexpr std::chrono::milliseconds KillTimeout {10000};

    //! @param engine must outlive the worker
    //! @param runTimeout for each run of the program
    SherpaWorker(const SherpaEngine &engine, std::chrono::milliseconds runTimeout);
    ~SherpaWorker() override;
    Q_DISABLE_COPY_MOVE(SherpaWorker)

    const SherpaEngine &engine() const { return m_engine; }

    //! Which parts of the engine are installed.
    struct Availability
    {
        bool program; //!< with its libraries
        bool model; //!< the directory, whatever its content

        bool available() const { return program && model; }
    };
    //! Searches the disk, as do the following functions.
    Availability availability(const SearchRoots &roots) const;
    //! The candidate if it is a directory, otherwise the installed model's directory, empty if there is none.
    QString resolveModelDir(const QString &candidate, const SearchRoots &roots) const;

    //! Replaces the loaded model by the one in the directory @p modelDir. If files are missing it logs a warning and
    //! returns false, and no model is loaded. Only checks that the files exist: the program reads them at each run.
    bool load(const QString &modelDir, const SearchRoots &roots);
    bool isLoaded() const { return model().isLoaded(); }
    //! The name of the model's directory, empty if no model is loaded.
    QString modelName() const { return model().name; }

    //! Ends the running program and those of all later calls of transcribe(), which then fail. Call it before
    //! this process ends, which would otherwise wait for a program that hangs.
    void abort() { m_aborted = true; }

public Q_SLOTS:
    //! Emits exactly one of the two signals. Blocks until the program has ended, for no longer than the run timeout and
    //! 15 seconds.
    //! @param pcm16Data 16 kHz, mono, signed 16 bit, little-endian
    void transcribe(const QByteArray &pcm16Data);

Q_SIGNALS:
    //! @param elapsedMs run time of the program in milliseconds
    void transcriptionReady(const QString &text, double elapsedMs);
    void transcriptionFailed(const QString &error);

private:
    //! What a run needs. Complete, or empty if no model is loaded.
    struct Model
    {
        QString name;
        QString sherpaBinary;
        QString sherpaLibDir;
        //! The program's arguments except the last one, the audio file.
        QStringList arguments;
        QProcessEnvironment environment;

        bool isLoaded() const { return !sherpaBinary.isEmpty(); }
    };
    Model model() const;
    void setModel(const Model &model);

    struct Result;
    //! Waits for the end of the program until the run timeout or abort(), and kills one that prints without end.
    //! @return whether it has ended
    bool waitForEnd(QProcess &process) const;
    Result run(const Model &model, const QByteArray &pcm16Data) const;

    const SherpaEngine &m_engine;
    const std::chrono::milliseconds m_runTimeout;
    std::atomic<bool> m_aborted = false;

    // After a cancel a transcription may still be queued while the next model is loaded. Not a QMutex, whose locking
    // ThreadSanitizer doesn't see.
    mutable std::mutex m_modelMutex;
    Model m_model;
};
