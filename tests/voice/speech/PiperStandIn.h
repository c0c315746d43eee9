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

//! A stand-in for piper and its voice, where they are searched for under a home. It writes down what it is given, and
//! does what it is told to. While it lives, speech is installed.
//!
//! What goes wrong in making it fails the running test.
class PiperStandIn
{
public:
    //! Takes its text for sound at first: what it is to say comes out again, unchanged.
    explicit PiperStandIn(const QString &home = QDir::homePath());
    ~PiperStandIn();
    Q_DISABLE_COPY_MOVE(PiperStandIn)

    //! Whether the system has no piper and no voice of its own, which would be found before those of a test.
    static bool systemHasNone();

    QString program() const { return m_program; }
    QString voice() const { return m_voice; }

    // What it does, in all runs from now on.

    //! Makes real speech of its text, 22050 Hz, mono, signed 16 bit.
    void speaks();
    //! Reads its text and ends like this, without a sound.
    void exits(int code);
    //! Reads its text and dies of a signal.
    void crashes();
    //! Reads nothing and runs until it is killed.
    void hangs();
    //! Is an executable file, but one that the system can't run.
    void cannotStart();
    //! Is no longer there, when it had been found.
    void vanishes();
    //! @param script of the shell. "$notes" is a directory for what it notes down, see note().
    void behaves(const QByteArray &script);

    // What it was given.

    int runs() const { return processIds().size(); }
    QList<qint64> processIds() const;
    //! These two are of the last run. The text is there when all of it was read, empty before.
    QStringList arguments() const;
    QString text() const;
    //! A path for a behaviour of the test's own.
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
    //! Plays at once: what it is given it writes down, and it ends when that ends.
    PaplayStandIn();

    // What it does, in all runs from now on.

    //! Is still playing until it is killed.
    void playsOn();
    //! Ends at once, without reading.
    void exits(int code);
    //! Dies of a signal, without reading.
    void crashes();

    // What it was given.

    int runs() const { return processIds().size(); }
    QList<qint64> processIds() const;
    //! These two are of the last run, the sound when it has ended.
    QStringList arguments() const;
    QByteArray sound() const;

private:
    void behaves(const QByteArray &script);

    FakePath m_path;
};
