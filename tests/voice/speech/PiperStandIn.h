// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "FakePath.h"

#include <QByteArray>
#include <QDir>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

//! A stand-in for piper. Installs the program and a voice in a home, and removes them when this object is deleted. The
//! program records its input and behaves as the test says.
//!
//! Errors in its set-up fail the running test.
class PiperStandIn
{
public:
    //! By default it outputs its text unchanged, as if that were audio.
    explicit PiperStandIn(const QString &home = QDir::homePath());
    ~PiperStandIn();
    Q_DISABLE_COPY_MOVE(PiperStandIn)

    QString program() const { return m_program; }
    QString voice() const { return m_voice; }

    // Behaviour of the following runs.

    //! Outputs real speech: 22050 Hz, mono, signed 16 bit.
    void speaks();
    //! Outputs a pure tone in the same format.
    void sounds(int frequency, int seconds);
    //! Reads its text and exits without output.
    void exits(int code);
    //! Reads its text and is killed by a signal.
    void crashes();
    //! Doesn't read, and runs until it is killed.
    void hangs();
    //! Is an executable file that the system can't run.
    void cannotStart();
    //! Is removed after it was found.
    void vanishes();
    //! @param script shell script, in which "$notes" is the directory of note()
    void behaves(const QByteArray &script);

    // Recorded input.

    int runs() const { return processIds().size(); }
    QList<qint64> processIds() const;
    //! These two are from the last run. The text is empty until all of it was read.
    QStringList arguments() const;
    QString text() const;
    //! The path of a file for behaves().
    QString note(const QString &name) const { return m_notes.filePath(name); }

private:
    void write(const QByteArray &interpreter, const QByteArray &script) const;

    const QTemporaryDir m_notes;
    const QString m_program;
    const QString m_voice;
};

//! A stand-in for paplay, the first on PATH.
class PaplayStandIn
{
public:
    //! By default it records its input and exits when that ends.
    PaplayStandIn();

    // Behaviour of the following runs.

    //! Plays until it is killed.
    void playsOn();
    //! Exits at once, without reading.
    void exits(int code);
    //! Is killed by a signal, without reading.
    void crashes();

    // Recorded input.

    int runs() const { return processIds().size(); }
    QList<qint64> processIds() const;
    //! These two are from the last run. The sound is complete when it has ended.
    QStringList arguments() const;
    QByteArray sound() const;

private:
    void behaves(const QByteArray &script);

    FakePath m_path;
};
