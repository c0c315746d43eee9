// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SherpaStandIn.h"

#include "Files.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace
{

const QString s_root = QStringLiteral("/experiments/sherpa-onnx-prebuilt-v1.12.28/");
const QString s_models = QStringLiteral("/.local/share/tovi-forkeldaos/models/");
const QByteArray s_shell = QByteArrayLiteral("/bin/sh");

//! Records everything before it counts the run.
const QByteArray s_prelude = QByteArrayLiteral("waitForRelease() { read -r _ < \"$notes/gate\"; }\n"
                                               "for word; do printf '%s\\n' \"$word\"; done > \"$notes/arguments\"\n"
                                               "printf '%s' \"$LD_LIBRARY_PATH\" > \"$notes/libraries\"\n"
                                               "cp \"$word\" \"$notes/wav\"\n"
                                               "echo $$ >> \"$notes/runs\"\n");

void require(bool holds, const QString &what)
{
    if (!holds) {
        QTest::qFail(qPrintable(what), __FILE__, __LINE__);
    }
}

//! Fails the running test if the file can't be written.
void requireFile(const QString &path, const QByteArray &content)
{
    require(writeFile(path, content), path);
}

QByteArray quoted(QString argument)
{
    return '\'' + QFile::encodeName(argument.replace(QLatin1Char('\''), QLatin1String("'\\''"))) + '\'';
}

} // namespace

SherpaStandIn::SherpaStandIn(Engine engine, const QString &home)
    : m_notes(home + QStringLiteral("/sherpa-XXXXXX"))
    , m_logWord(engine == Engine::Moonshine ? "OfflineRecognizer" : "OnlineRecognizer")
    , m_program(home + s_root
                + (engine == Engine::Moonshine ? QStringLiteral("bin/sherpa-onnx-offline")
                                               : QStringLiteral("bin/sherpa-onnx")))
    , m_libDir(home + s_root + QStringLiteral("lib"))
    , m_modelDir(home + s_models
                 + (engine == Engine::Moonshine
                        ? QStringLiteral("sherpa-onnx-moonshine-tiny-en-quantized-2026-02-27")
                        : QStringLiteral("sherpa-onnx-nemotron-speech-streaming-en-0.6b-560ms-int8-2026-04-25")))
    , m_modelFiles(engine == Engine::Moonshine
                       ? QStringList {QStringLiteral("encoder_model.ort"), QStringLiteral("decoder_model_merged.ort"),
                                      QStringLiteral("tokens.txt")}
                       : QStringList {QStringLiteral("encoder.int8.onnx"), QStringLiteral("decoder.int8.onnx"),
                                      QStringLiteral("joiner.int8.onnx"), QStringLiteral("tokens.txt")})
    , m_interpreter(s_shell)
{
    require(m_notes.isValid(), m_notes.errorString());
    const QByteArray gate = QFile::encodeName(note("gate"));
    require(::mkfifo(gate.constData(), S_IRUSR | S_IWUSR) == 0, note("gate"));
    // Both ends stay open: a release is kept until it is read, and opening the FIFO never blocks.
    m_gate = ::open(gate.constData(), O_RDWR | O_CLOEXEC);
    require(m_gate >= 0, note("gate"));
    for (const QString &dir : {m_libDir, m_modelDir, QFileInfo(m_program).path()}) {
        require(QDir().mkpath(dir), dir);
    }
    for (const QString &name : m_modelFiles) {
        requireFile(m_modelDir + QLatin1Char('/') + name, QByteArrayLiteral("model"));
    }
    write();
}

SherpaStandIn::~SherpaStandIn()
{
    releaseAll();
    QFile::remove(m_program);
    QDir(m_modelDir).removeRecursively();
}

void SherpaStandIn::says(const QString &transcript)
{
    const QByteArray json =
        QJsonDocument(QJsonObject {{QStringLiteral("lang"), QString()}, {QStringLiteral("text"), transcript}})
            .toJson(QJsonDocument::Compact);
    prints(json + '\n', m_logWord + "Config(sampling_rate=16000)\nStarted\nDone!\nElapsed seconds: 0.1 s\n");
}

void SherpaStandIn::prints(const QByteArray &output, const QByteArray &errors, int exitCode)
{
    requireFile(note("output"), output);
    requireFile(note("errors"), errors);
    behaves("cat \"$notes/output\"; cat \"$notes/errors\" >&2; exit " + QByteArray::number(exitCode));
}

void SherpaStandIn::crashes(const QByteArray &output)
{
    requireFile(note("output"), output);
    behaves(QByteArrayLiteral("cat \"$notes/output\"; kill -SEGV $$"));
}

void SherpaStandIn::hangs()
{
    behaves(QByteArrayLiteral("exec sleep 1000"));
}

void SherpaStandIn::cannotStart()
{
    m_interpreter = QByteArrayLiteral("/nonexistent/interpreter");
    write();
}

void SherpaStandIn::behaves(const QByteArray &script)
{
    m_interpreter = s_shell;
    m_behaviour = script;
    write();
}

void SherpaStandIn::release()
{
    require(::write(m_gate, "\n", 1) == 1, note("gate"));
}

void SherpaStandIn::releaseAll()
{
    // Later runs open an empty file, and runs that are blocked in a read get its end.
    const QString open = note("open");
    requireFile(open, QByteArray());
    require(::rename(QFile::encodeName(open).constData(), QFile::encodeName(note("gate")).constData()) == 0, open);
    if (m_gate >= 0) {
        ::close(std::exchange(m_gate, -1));
    }
}

QList<qint64> SherpaStandIn::processIds() const
{
    QList<qint64> ids;
    const QList<QByteArray> lines = contentOf(note("runs")).split('\n');
    // The last element is the incomplete line after the last line feed.
    for (const QByteArray &line : lines.mid(0, lines.size() - 1)) {
        ids.append(line.toLongLong());
    }
    return ids;
}

QStringList SherpaStandIn::arguments() const
{
    return QFile::decodeName(contentOf(note("arguments"))).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QByteArray SherpaStandIn::wav() const
{
    return contentOf(note("wav"));
}

QByteArray SherpaStandIn::libraryPath() const
{
    return contentOf(note("libraries"));
}

void SherpaStandIn::write() const
{
    // Replaces the file because a running program can't be written to.
    const QString fresh = m_program + QStringLiteral(".new");
    requireFile(fresh,
                "#!" + m_interpreter + "\nnotes=" + quoted(m_notes.path()) + '\n' + s_prelude
                    + (m_isHeld ? "waitForRelease\n" : "") + m_behaviour + '\n');
    require(QFile::setPermissions(fresh, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner), fresh);
    require(::rename(QFile::encodeName(fresh).constData(), QFile::encodeName(m_program).constData()) == 0, m_program);
}
