// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

//! The built program as a user starts it: TOVICTL_PROGRAM in the environment of the tests tells where it lies.
namespace Program
{

//! What is left of a run that has ended.
struct Result
{
    bool finished = false; //!< it ended, be it by a signal, before the patience of run() did
    bool crashed = false;
    int exitCode = -1; //!< the signal's number after a crash
    QByteArray output;
    QByteArray errors;
};

//! Path of the executable; ends the test process with a message if the environment doesn't tell it.
QString path();

//! The environment of the test, without whatever names a display: a program that opens one ends at once.
QProcessEnvironment withoutDisplay();

//! Runs the program, or another one, to its end (at most 30 s) and keeps the two output streams apart.
Result run(const QStringList &arguments, const QProcessEnvironment &environment, const QString &program = path());

} // namespace Program
