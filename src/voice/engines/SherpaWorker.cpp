// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SherpaWorker.h"

#include "ModelPaths.h"
#include "SherpaOutput.h"
#include "Transcription.h"
#include "WavFile.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryFile>

#include <chrono>

namespace
{

const QLatin1String s_noTempFile("Cannot create temp WAV file");
const QLatin1String s_writeFailed("Failed to write temp WAV");
const QString s_libraryPath = QStringLiteral("LD_LIBRARY_PATH");

constexpr int s_startPatience = 5000; // ms
//! For a program that was killed, in ms. It always ends, so the wait is as short as it can be; this much only a very
//! busy machine takes.
constexpr int s_endPatience = 10000;
constexpr int s_shownOutput = 300; // characters of a failed program's output

//! The surroundings of this process, with the libraries in front. Main thread: opening the microphone changes a
//! variable of this process for a moment, and the list of them knows no lock.
QProcessEnvironment surroundings(const QString &libDir)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString before = environment.value(s_libraryPath);
    environment.insert(s_libraryPath, before.isEmpty() ? libDir : QString(libDir + QLatin1Char(':') + before));
    return environment;
}

//! Qt warns of a process that still runs when its object goes.
void end(QProcess &process)
{
    process.kill();
    process.waitForFinished(s_endPatience);
}

} // namespace

//! Of a transcription: an error, or else the rest.
struct SherpaWorker::Result
{
    QString error {};
    QString text {};
    double elapsedMs = 0;
};

SherpaWorker::SherpaWorker(const SherpaEngine &engine, const SearchRoots &roots, int runTimeout)
    : m_engine(engine)
    , m_roots(roots)
    , m_runTimeout(runTimeout)
{
}

SherpaWorker::Availability SherpaWorker::availability() const
{
    return {!ModelPaths::findSherpaBinary(m_engine.program, m_roots).isEmpty(), !resolveModelDir(QString()).isEmpty()};
}

QString SherpaWorker::resolveModelDir(const QString &candidate) const
{
    return m_engine.resolveModelDir(candidate, m_roots);
}

bool SherpaWorker::load(const QString &modelDir)
{
    setModel({});
    Model model;
    model.sherpaBinary = ModelPaths::findSherpaBinary(m_engine.program, m_roots);
    model.sherpaLibDir = ModelPaths::findSherpaLibDir(m_engine.program, m_roots);
    if (model.sherpaBinary.isEmpty() || model.sherpaLibDir.isEmpty()) {
        qWarning() << m_engine.programNotFound;
        return false;
    }
    if (!QFileInfo(modelDir).isDir()) {
        qWarning() << m_engine.modelDirMissing << modelDir;
        return false;
    }
    const QDir dir(modelDir);
    for (const SherpaEngine::ModelFile &file : m_engine.modelFiles) {
        const QString path = dir.absoluteFilePath(file.name);
        if (!QFileInfo::exists(path)) {
            qWarning() << m_engine.incompleteModel << modelDir;
            return false;
        }
        model.arguments.append(file.option + path);
    }
    model.environment = surroundings(model.sherpaLibDir);
    model.name = dir.dirName();
    setModel(model);
    qDebug() << m_engine.loaded << model.name << "sherpa:" << model.sherpaBinary;
    return true;
}

void SherpaWorker::transcribe(const QByteArray &pcm16Data)
{
    const Result result = run(model(), pcm16Data);
    if (result.error.isEmpty()) {
        Q_EMIT transcriptionReady(result.text, result.elapsedMs);
    } else {
        Q_EMIT transcriptionFailed(result.error);
    }
}

SherpaWorker::Result SherpaWorker::run(const Model &model, const QByteArray &pcm16Data) const
{
    if (!model.isLoaded()) {
        return {m_engine.notLoaded};
    }
    if (pcm16Data.size() < Transcription::shortestAudio) {
        return {Transcription::audioTooShort};
    }

    QTemporaryFile wavFile(QDir::tempPath() + m_engine.wavPattern);
    if (!wavFile.open()) {
        return {s_noTempFile};
    }
    const QByteArray wav = WavFile::fromPcm(pcm16Data);
    // Little is only in a buffer until it is flushed.
    if (wavFile.write(wav) != wav.size() || !wavFile.flush()) {
        return {s_writeFailed};
    }
    wavFile.close();

    QProcess sherpa;
    sherpa.setProgram(model.sherpaBinary);
    sherpa.setArguments(model.arguments + QStringList {wavFile.fileName()});
    sherpa.setProcessEnvironment(model.environment);
    const auto start = std::chrono::steady_clock::now();
    sherpa.start(QIODevice::ReadWrite);
    if (!sherpa.waitForStarted(s_startPatience)) {
        end(sherpa);
        return {m_engine.startFailed};
    }
    if (!sherpa.waitForFinished(m_runTimeout)) {
        end(sherpa);
        return {m_engine.timedOut};
    }
    const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;

    const QString errors = QString::fromUtf8(sherpa.readAllStandardError());
    const QString output = QString::fromUtf8(sherpa.readAllStandardOutput()) + errors;
    // Of a program that crashed this is the number of the signal.
    if (sherpa.exitCode() != 0) {
        return {m_engine.runFailed + output.left(s_shownOutput)};
    }
    const QString text = SherpaOutput::transcriptIn(output, m_engine.logWord);
    if (text.isEmpty()) {
        return {Transcription::noSpeech};
    }
    return {QString(), text, elapsed.count()};
}

SherpaWorker::Model SherpaWorker::model() const
{
    const std::lock_guard lock(m_modelMutex);
    return m_model;
}

void SherpaWorker::setModel(const Model &model)
{
    const std::lock_guard lock(m_modelMutex);
    m_model = model;
}
