// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SearchRoots.h"

#include <QString>
#include <QVector>

//! What distinguishes the engines that are programs of sherpa-onnx: one row of the table that SherpaWorker and the
//! loading of models work by. A `const char *` goes to the log as it stands.
struct SherpaEngine
{
    //! A file of the model, and the option by which the program is told of it.
    struct ModelFile
    {
        QLatin1String option;
        QLatin1String name;
    };

    //! Path of the program in an installation.
    QLatin1String program;
    //! Begins with the slash that follows the temporary directory.
    QLatin1String wavPattern;
    //! In the order of the arguments.
    QVector<ModelFile> modelFiles;
    //! ms from start to end
    int runTimeout;
    //! Marks a line of the program's log.
    QLatin1String logWord;
    //! The search for the model's directory.
    QString (*resolveModelDir)(const QString &candidate, const SearchRoots &roots);

    // Failures of a transcription. The last one goes before the program's output.
    QLatin1String notLoaded;
    QLatin1String startFailed;
    QLatin1String timedOut;
    QLatin1String runFailed;

    // Failures of loading a model, told to the user. The last one goes before the directory.
    QLatin1String unavailable;
    QLatin1String dirNotFound;
    QLatin1String loadFailed;

    // Lines of the log. All but the first go before a value.
    const char *programNotFound;
    const char *modelDirMissing;
    const char *incompleteModel;
    const char *loaded;
    const char *loading;
    const char *available;

    static const SherpaEngine &moonshine();
    static const SherpaEngine &nemotron();
};
