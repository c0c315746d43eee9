// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Measures the overhead of the whisper worker: the time of a transcription compared with that of whisper_full() in it.
// The model is tiny, so that the worker's share is as large as possible.

#include "support/Clock.h"
#include "support/Figures.h"
#include "support/Statistics.h"

#include "TinyModel.h"
#include "WhisperWorker.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <vector>

namespace
{

constexpr int s_runs = 40;
constexpr int s_warmUps = 3;
constexpr int s_bytes = 30 * 32000; // the longest capture, 30 s

QByteArray noise()
{
    QByteArray pcm(s_bytes, '\0');
    for (int i = 0; i < pcm.size(); ++i) {
        pcm[i] = static_cast<char>(i * 7919 % 251);
    }
    return pcm;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir directory;
    WhisperWorker worker;
    if (!worker.loadModel(
            TinyModel::write(directory.filePath(QStringLiteral("tiny.bin")), TinyModel::saying({"open", " it"})))) {
        notMeasured("the library does not load the model");
    }

    double library = 0; // ms
    QObject::connect(&worker, &WhisperWorker::transcriptionReady,
                     [&library](const QString &, double elapsedMs) { library = elapsedMs; });
    const QByteArray pcm = noise();
    std::vector<double> libraryTimes;
    std::vector<double> workerTimes;
    std::vector<double> shares;
    for (int i = -s_warmUps; i < s_runs; ++i) {
        library = 0;
        const qint64 started = Clock::now();
        worker.transcribe(pcm);
        const double whole = Clock::milliseconds(Clock::now() - started);
        if (library <= 0) {
            notMeasured("a transcription failed");
        }
        if (i >= 0) {
            libraryTimes.push_back(library);
            workerTimes.push_back(whole - library);
            shares.push_back((whole - library) / library * 100);
        }
    }
    Figures::plain("whisper.full", Statistics::median(libraryTimes), "ms");
    Figures::plain("whisper.worker", Statistics::median(workerTimes), "ms");
    Figures::bounded("whisper.worker-share", Statistics::median(shares), "%", 1);
}
