// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QDir>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

//! A stand-in for one of the sherpa-onnx programs. Installs the program, its libraries and its model in a home, and
//! removes them when this object is deleted. The program records its input and behaves as the test says.
//!
//! Errors in its set-up fail the running test.
class SherpaStandIn
{
public:
    enum class Engine
    {
        Moonshine,
        Nemotron,
    };

    //! Prints nothing by default.
    explicit SherpaStandIn(Engine engine, const QString &home = QDir::homePath());
    //! Calls releaseAll() and removes what was installed, except the directory of the libraries, which both engines
    //! share.
    ~SherpaStandIn();
    Q_DISABLE_COPY_MOVE(SherpaStandIn)

    QString program() const { return m_program; }
    QString libDir() const { return m_libDir; }
    QString modelDir() const { return m_modelDir; }
    QStringList modelFiles() const { return m_modelFiles; }

    // Behaviour of the following runs.

    //! Prints this transcript like the real program, as JSON between log lines.
    void says(const QString &transcript);
    //! Prints exactly this and exits.
    void prints(const QByteArray &output, const QByteArray &errors = QByteArray(), int exitCode = 0);
    //! Prints this and is killed by a signal.
    void crashes(const QByteArray &output = QByteArray());
    //! Runs until it is killed.
    void hangs();
    //! Is an executable file that the system can't run.
    void cannotStart();
    //! @param script shell script, in which `waitForRelease` waits for a release()
    void behaves(const QByteArray &script);

    //! From now on each run waits for its own release() before it does anything visible.
    void hold() { m_isHeld = true, write(); }
    //! Releases one waiting run, or else the next run that waits.
    void release();
    //! Releases all runs, also later ones. Needed before waiting for the end of a worker that may be running one.
    void releaseAll();

    // Recorded input. Complete once the run is counted, which happens before it waits.

    int runs() const { return processIds().size(); }
    QList<qint64> processIds() const;
    //! These three are from the last run.
    QStringList arguments() const;
    QByteArray wav() const;
    QByteArray libraryPath() const;

private:
    QString note(const char *name) const { return m_notes.filePath(QString::fromLatin1(name)); }
    void write() const;

    const QTemporaryDir m_notes;
    const QByteArray m_logWord;
    const QString m_program;
    const QString m_libDir;
    const QString m_modelDir;
    const QStringList m_modelFiles;
    QByteArray m_interpreter;
    QByteArray m_behaviour;
    bool m_isHeld = false;
    int m_gate = -1;
};
