// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SherpaWorker.h"

#include "ChildProcess.h"
#include "ModelPaths.h"
#include "SherpaOutput.h"
#include "Transcription.h"
#include "WavFile.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include <csignal>
#include <cstdlib>
#include <set>

#include <unistd.h>

namespace
{

const QLatin1String s_noTempFile("Cannot create temp WAV file");
const QLatin1String s_writeFailed("Failed to write temp WAV");
const QString s_libraryPath = QStringLiteral("LD_LIBRARY_PATH");

//! The interval at which a wait checks for abort().
constexpr std::chrono::milliseconds s_abortInterval {50};

//! In bytes. A program that prints more is out of control, and would fill the memory until the timeout.
constexpr qint64 s_maxOutput = 16 << 20;
constexpr int s_maxShownOutput = 300; // characters of a failed program's output

//! The environment of this process with @p libDir at the front of the library path. Called on the main thread, which
//! sets a variable while it opens the microphone: the program must not inherit it.
QProcessEnvironment programEnvironment(const QString &libDir)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString inherited = environment.value(s_libraryPath);
    environment.insert(s_libraryPath, inherited.isEmpty() ? libDir : QString(libDir + QLatin1Char(':') + inherited));
    return environment;
}

//! The output of both channels that wasn't read yet, in bytes.
qint64 bufferedOutput(QProcess &process)
{
    qint64 bytes = 0;
    for (const QProcess::ProcessChannel channel : {QProcess::StandardError, QProcess::StandardOutput}) {
        process.setReadChannel(channel);
        bytes += process.bytesAvailable();
    }
    return bytes;
}

//! QProcess waits in milliseconds, as int.
int milliseconds(std::chrono::milliseconds timeout)
{
    return static_cast<int>(timeout.count());
}

//! Waits for the end because Qt warns when the object of a running process is deleted.
void killAndWait(QProcess &process)
{
    process.kill();
    process.waitForFinished(milliseconds(SherpaWorker::KillTimeout));
}

//! The user's voice for a program. The file is also removed if the process ends by exit(), which runs no destructors of
//! other threads: Qt calls it when the connection to the display is lost.
class AudioFile : public QTemporaryFile
{
public:
    explicit AudioFile(const QString &pattern)
        : QTemporaryFile(pattern)
    {
    }
    ~AudioFile() override
    {
        const std::lock_guard lock(existing().mutex);
        existing().paths.erase(m_path);
    }
    Q_DISABLE_COPY_MOVE(AudioFile)

    bool create()
    {
        const std::lock_guard lock(existing().mutex);
        if (!open()) {
            return false;
        }
        m_path = QFile::encodeName(fileName());
        existing().paths.insert(m_path);
        return true;
    }

private:
    struct Existing
    {
        std::mutex mutex;
        std::set<QByteArray> paths;
    };
    static Existing &existing()
    {
        // Never deleted, because a thread may use it while exit() runs.
        static Existing *const s_existing = [] {
            std::atexit([] {
                const std::lock_guard lock(existing().mutex);
                for (const QByteArray &path : existing().paths) {
                    ::unlink(path.constData());
                }
            });
            return new Existing;
        }();
        return *s_existing;
    }

    QByteArray m_path;
};

} // namespace

//! The outcome of a transcription: either an error or a text.
struct SherpaWorker::Result
{
    QString error {};
    QString text {};
    double elapsedMs = 0;
};

SherpaWorker::SherpaWorker(const SherpaEngine &engine, std::chrono::milliseconds runTimeout)
    : m_engine(engine)
    , m_runTimeout(runTimeout)
{
}

SherpaWorker::~SherpaWorker()
{
    // Runs on the workers' thread, but the model was set on the main thread.
    const std::lock_guard lock(m_modelMutex);
}

SherpaWorker::Availability SherpaWorker::availability(const SearchRoots &roots) const
{
    return {!ModelPaths::findSherpaBinary(m_engine.program, roots).isEmpty(),
            !resolveModelDir(QString(), roots).isEmpty()};
}

QString SherpaWorker::resolveModelDir(const QString &candidate, const SearchRoots &roots) const
{
    return m_engine.resolveModelDir(candidate, roots);
}

bool SherpaWorker::load(const QString &modelDir, const SearchRoots &roots)
{
    setModel({});
    Model model;
    model.sherpaBinary = ModelPaths::findSherpaBinary(m_engine.program, roots);
    model.sherpaLibDir = ModelPaths::findSherpaLibDir(m_engine.program, roots);
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
    model.environment = programEnvironment(model.sherpaLibDir);
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

bool SherpaWorker::waitForEnd(QProcess &process) const
{
    const QDeadlineTimer timeout(m_runTimeout);
    while (!m_aborted && !timeout.hasExpired()) {
        if (process.waitForFinished(milliseconds(s_abortInterval))) {
            return true;
        }
        if (bufferedOutput(process) > s_maxOutput) {
            process.kill();
            return process.waitForFinished(milliseconds(KillTimeout)); // as if it had crashed
        }
    }
    return false;
}

SherpaWorker::Result SherpaWorker::run(const Model &model, const QByteArray &pcm16Data) const
{
    if (!model.isLoaded()) {
        return {m_engine.notLoaded};
    }
    if (pcm16Data.size() < Transcription::MinimumBytes) {
        return {Transcription::AudioTooShort};
    }

    AudioFile wavFile(QDir::tempPath() + m_engine.wavPattern);
    if (!wavFile.create()) {
        return {s_noTempFile};
    }
    const QByteArray wav = WavFile::fromPcm(pcm16Data);
    // A short file is only in the buffer until it is flushed.
    if (wavFile.write(wav) != wav.size() || !wavFile.flush()) {
        return {s_writeFailed};
    }
    wavFile.close();

    ChildProcess sherpa(SIGKILL);
    sherpa.setProgram(model.sherpaBinary);
    sherpa.setArguments(model.arguments + QStringList {wavFile.fileName()});
    sherpa.setProcessEnvironment(model.environment);
    const auto start = std::chrono::steady_clock::now();
    sherpa.start(QIODevice::ReadWrite);
    if (!sherpa.waitForStarted(milliseconds(StartTimeout))) {
        killAndWait(sherpa);
        return {m_engine.startFailed};
    }
    if (!waitForEnd(sherpa)) {
        killAndWait(sherpa);
        return {m_engine.timedOut};
    }
    const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;

    const QString errors = QString::fromUtf8(sherpa.readAllStandardError());
    const QString output = QString::fromUtf8(sherpa.readAllStandardOutput()) + errors;
    // If the program crashed, this is the number of the signal.
    if (sherpa.exitCode() != 0) {
        return {m_engine.runFailed + output.left(s_maxShownOutput)};
    }
    const QString text = SherpaOutput::transcriptIn(output, m_engine.logWord);
    if (text.isEmpty()) {
        return {Transcription::NoSpeech};
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
