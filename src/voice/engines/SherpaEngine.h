// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SearchRoots.h"

#include <QString>
#include <QVector>

#include <chrono>

//! What distinguishes the engines that are programs of sherpa-onnx: one row of the table that drives SherpaWorker and
//! the loading of models. Each `const char *` is written to the log without quotes.
struct SherpaEngine
{
    //! A file of the model, and the program's option that takes its path.
    struct ModelFile
    {
        QLatin1String option;
        QLatin1String name;
    };

    //! Relative path of the program in an installation.
    QLatin1String program;
    //! Appended to the path of the temporary directory, so it begins with a slash.
    QLatin1String wavPattern;
    //! In the order of the arguments.
    QVector<ModelFile> modelFiles;
    //! For the whole run of the program.
    std::chrono::milliseconds runTimeout;
    //! Lines of the program's output that contain this are log lines.
    QLatin1String logWord;
    //! Searches the model's directory.
    QString (*resolveModelDir)(const QString &candidate, const SearchRoots &roots);

    // Errors of a transcription. The last one is followed by the program's output.
    QLatin1String notLoaded;
    QLatin1String startFailed;
    QLatin1String timedOut;
    QLatin1String runFailed;

    // Errors of loading a model, shown to the user. The last one is followed by the directory.
    QLatin1String unavailable;
    QLatin1String dirNotFound;
    QLatin1String loadFailed;

    // Log lines. All but the first are followed by a value.
    const char *programNotFound;
    const char *modelDirMissing;
    const char *incompleteModel;
    const char *loaded;
    const char *loading;
    const char *available;

    static const SherpaEngine &moonshine();
    static const SherpaEngine &nemotron();
};
