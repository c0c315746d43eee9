// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QDir>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

//! A stand-in for one of the sherpa-onnx programs, with its libraries and its model, where they are searched for under
//! a home. It writes down what it is given, and does what it is told to. While it lives, the engine is installed.
//!
//! What goes wrong in making it fails the running test.
class SherpaStandIn
{
public:
    enum class Engine
    {
        Moonshine,
        Nemotron,
    };

    //! Prints nothing at first.
    explicit SherpaStandIn(Engine engine, const QString &home = QDir::homePath());
    //! As releaseAll(), and takes away what was installed, but for the directory of the libraries, which both
    //! engines share.
    ~SherpaStandIn();
    Q_DISABLE_COPY_MOVE(SherpaStandIn)

    //! Whether the system has no models of its own, which would be found beside those of a test.
    static bool systemHasNone();

    QString program() const { return m_program; }
    QString libDir() const { return m_libDir; }
    QString modelDir() const { return m_modelDir; }
    QStringList modelFiles() const { return m_modelFiles; }

    // What it does, in all runs from now on.

    //! Understands these words: JSON as the real program prints it, between lines of its log.
    void says(const QString &transcript);
    //! Prints just this, and ends.
    void prints(const QByteArray &output, const QByteArray &errors = QByteArray(), int exitCode = 0);
    //! Prints something and dies of a signal.
    void crashes(const QByteArray &output = QByteArray());
    //! Runs until it is killed.
    void hangs();
    //! Is an executable file, but one that the system can't run.
    void cannotStart();
    //! @param script of the shell. `waitForRelease` in it waits for a release().
    void behaves(const QByteArray &script);

    //! From now on each run waits for a release() of its own before it does anything visible.
    void hold() { m_isHeld = true, write(); }
    //! Lets one run go that waits, or the next one that will.
    void release();
    //! Lets everything go, now and later. Needed before waiting for the end of who may still run one of these.
    void releaseAll();

    // What it was given. Complete once the run is counted, which it is before it waits.

    int runs() const { return processIds().size(); }
    QList<qint64> processIds() const;
    //! These three are of the last run.
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
