// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>

//! A program that is run once, to its end.
namespace Child
{

struct Result
{
    //! From just before the start until the end was seen, in ns.
    qint64 duration = 0;
    QByteArray output;
};

//! The lines "name value" of a result's output; a name that comes several times keeps all its values in order.
QMap<QByteArray, QList<QByteArray>> valuesOf(const Result &result);

//! Starts the program, reads its standard output and waits for its end. It finds the time of its start, by Clock, in
//! the environment variable BENCH_STARTED. Standard error is this process's own. Ends the benchmark if the program
//! can't be started or ends with another status than 0.
//! @param arguments the program's path first
Result run(const QList<QByteArray> &arguments);

//! The libraries that the loader would map for a program, by name and sorted.
QList<QByteArray> librariesOf(const QByteArray &program);

//! The path of another program of the build that this one lies beside.
QByteArray beside(const char *name);

} // namespace Child
