// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>

//! Runs other programs.
namespace Child
{

struct Result
{
    //! From just before the start until the end is noticed, in ns.
    qint64 duration = 0;
    QByteArray output;
};

//! The lines "NAME VALUE" of the output. A name may have several values, in order.
QMap<QByteArray, QList<QByteArray>> valuesOf(const Result &result);

//! Runs a program to its end and captures its standard output; standard error is not redirected. The environment
//! variable BENCH_STARTED has the time of the start by Clock. Ends the benchmark if the program can't be started or its
//! exit status isn't 0.
//! @param arguments the path of the program comes first
Result run(const QList<QByteArray> &arguments);

//! The names of the libraries that the loader would map for a program, sorted.
QList<QByteArray> librariesOf(const QByteArray &program);

//! The path of another program in the folder of this one.
QByteArray beside(const char *name);

} // namespace Child
