// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

//! The built program as a user starts it: the environment variable TOVICTL_PROGRAM names it.
namespace Program
{

//! The result of a run.
struct Result
{
    bool finished = false; //!< it ended, possibly by a signal, before the timeout of run()
    bool crashed = false;
    int exitCode = -1; //!< the signal's number after a crash
    QByteArray output;
    QByteArray errors;
};

//! Path of the executable; aborts the test process with a message if the variable isn't set.
QString path();

//! The environment of the test without a display: a graphical program aborts at once.
QProcessEnvironment withoutDisplay();

//! Runs the program, or another one, until it ends or a timeout of 30 s, with separate output streams.
Result run(const QStringList &arguments, const QProcessEnvironment &environment, const QString &program = path());

} // namespace Program
