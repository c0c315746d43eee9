// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ModelPaths.h"

#include "SttBackends.h"

#include <QFileInfo>

namespace
{

const QLatin1String s_moonshineModel("sherpa-onnx-moonshine-tiny-en-quantized-2026-02-27");
const QLatin1String s_nemotronModel("sherpa-onnx-nemotron-speech-streaming-en-0.6b-560ms-int8-2026-04-25");

// Where developers keep models and sherpa-onnx, below the home.
const QLatin1String s_sherpaModels("/experiments/whisper-voice-test/models/");
const QLatin1String s_whisperModels("/experiments/whisper-voice-test/whisper.cpp/models/");
const QLatin1String s_sherpaInstallations[] = {
    QLatin1String("/experiments/sherpa-onnx-prebuilt-v1.12.28"),
    QLatin1String("/experiments/sherpa-onnx/build"),
};

QLatin1String whisperFileName(const QString &backend)
{
    return backend == SttBackends::WhisperSmallQ5 ? QLatin1String("ggml-small.en-q5_1.bin")
        : backend == SttBackends::WhisperSmall    ? QLatin1String("ggml-small.en.bin")
                                                  : QLatin1String("ggml-base.en.bin");
}

bool isDirectory(const QString &path)
{
    return QFileInfo(path).isDir();
}

bool isFile(const QString &path)
{
    return QFileInfo(path).isFile();
}

//! The first of the paths that passes the check.
QString firstOf(std::initializer_list<QString> paths, bool (*accepts)(const QString &))
{
    for (const QString &path : paths) {
        if (accepts(path)) {
            return path;
        }
    }
    return QString();
}

QString in(const QString &directory, QLatin1String name)
{
    return directory + QLatin1Char('/') + name;
}

QString resolveModelDir(const QString &candidate, QLatin1String name, const SearchRoots &roots)
{
    return firstOf(
        {candidate, roots.home + s_sherpaModels + name, in(roots.userModels(), name), in(roots.packagedModels(), name)},
        isDirectory);
}

} // namespace

QString ModelPaths::resolveWhisperModelPath(const QString &backend, const SearchRoots &roots)
{
    const QLatin1String name = whisperFileName(backend);
    // Intentional: unlike with model directories, a packaged model comes before the user's.
    return firstOf(
        {in(roots.packagedModels(), name), in(roots.userModels(), name), roots.home + s_whisperModels + name}, isFile);
}

QString ModelPaths::resolveMoonshineModelDir(const QString &candidate, const SearchRoots &roots)
{
    return resolveModelDir(candidate, s_moonshineModel, roots);
}

QString ModelPaths::resolveNemotronModelDir(const QString &candidate, const SearchRoots &roots)
{
    return resolveModelDir(candidate, s_nemotronModel, roots);
}

QString ModelPaths::resolveStreamingModelDir(const SearchRoots &roots)
{
    return firstOf({roots.home + s_sherpaModels + s_nemotronModel, in(roots.userModels(), s_nemotronModel)},
                   isDirectory);
}

QString ModelPaths::findSherpaLibDir(const QString &program, const SearchRoots &roots)
{
    for (const QLatin1String installation : s_sherpaInstallations) {
        const QString root = roots.home + installation + QLatin1Char('/');
        const QString lib = root + QLatin1String("lib");
        if (QFileInfo(root + program).isExecutable() && isDirectory(lib)) {
            return lib;
        }
    }
    return QString();
}

QString ModelPaths::findSherpaBinary(const QString &program, const SearchRoots &roots)
{
    const QString lib = findSherpaLibDir(program, roots);
    return lib.isEmpty() ? QString() : QFileInfo(lib).path() + QLatin1Char('/') + program;
}
