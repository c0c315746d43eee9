// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "PiperStandIn.h"

#include "Files.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace
{

const QByteArray s_shell = QByteArrayLiteral("/bin/sh");

//! Records everything before it counts the run. Uses no other program because PATH may be empty.
const QByteArray s_prelude = QByteArrayLiteral("for word; do printf '%s\\n' \"$word\"; done > \"$notes/arguments\"\n"
                                               "echo $$ >> \"$notes/runs\"\n");
//! Renames the file so that the text is complete as soon as it exists.
const QByteArray s_readText =
    QByteArrayLiteral("cat > \"$notes/text.part\"; mv \"$notes/text.part\" \"$notes/text\"\n");

void require(bool holds, const QString &what)
{
    if (!holds) {
        QTest::qFail(qPrintable(what), __FILE__, __LINE__);
    }
}

QStringList linesOf(const QString &path)
{
    return QString::fromLocal8Bit(contentOf(path)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QList<qint64> numbersIn(const QString &path)
{
    QList<qint64> numbers;
    const QList<QByteArray> lines = contentOf(path).split('\n');
    // The last element is the incomplete line after the last line feed.
    for (const QByteArray &line : lines.mid(0, lines.size() - 1)) {
        numbers.append(line.toLongLong());
    }
    return numbers;
}

QByteArray noting(const QString &directory)
{
    return "notes='" + QFile::encodeName(directory) + "'\n" + s_prelude;
}

} // namespace

PiperStandIn::PiperStandIn(const QString &home)
    : m_notes(home + QStringLiteral("/piper-XXXXXX"))
    , m_program(home + QStringLiteral("/.local/bin/piper"))
    , m_voice(home + QStringLiteral("/.local/share/piper/voices/en_US-lessac-medium.onnx"))
{
    require(m_notes.isValid(), m_notes.errorString());
    require(writeFile(m_voice, QByteArrayLiteral("voice")), m_voice);
    behaves(s_readText + "exec cat \"$notes/text\"");
}

PiperStandIn::~PiperStandIn()
{
    QFile::remove(m_program);
    QFile::remove(m_voice);
}

void PiperStandIn::speaks()
{
    behaves(s_readText
            + "espeak-ng --stdout -f \"$notes/text\" |\n"
              "    exec sox -t wav - -t raw -r 22050 -e signed -b 16 -c 1 -");
}

void PiperStandIn::sounds(int frequency, int seconds)
{
    behaves(s_readText + "exec sox -n -t raw -r 22050 -e signed -b 16 -c 1 - synth " + QByteArray::number(seconds)
            + " sine " + QByteArray::number(frequency) + " vol 0.5");
}

void PiperStandIn::exits(int code)
{
    behaves(s_readText + "exit " + QByteArray::number(code));
}

void PiperStandIn::crashes()
{
    behaves(s_readText + "kill -SEGV $$");
}

void PiperStandIn::hangs()
{
    behaves(QByteArrayLiteral("exec sleep 1000"));
}

void PiperStandIn::cannotStart()
{
    write(QByteArrayLiteral("/nonexistent/interpreter"), QByteArray());
}

void PiperStandIn::vanishes()
{
    require(QFile::remove(m_program), m_program);
}

void PiperStandIn::behaves(const QByteArray &script)
{
    write(s_shell, noting(m_notes.path()) + script);
}

QList<qint64> PiperStandIn::processIds() const
{
    return numbersIn(note(QStringLiteral("runs")));
}

QStringList PiperStandIn::arguments() const
{
    return linesOf(note(QStringLiteral("arguments")));
}

QString PiperStandIn::text() const
{
    return QString::fromUtf8(contentOf(note(QStringLiteral("text"))));
}

void PiperStandIn::write(const QByteArray &interpreter, const QByteArray &script) const
{
    // Replaces the file because a running program can't be written to.
    QFile::remove(m_program);
    require(writeFile(m_program, "#!" + interpreter + '\n' + script + '\n')
                && QFile::setPermissions(m_program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner),
            m_program);
}

PaplayStandIn::PaplayStandIn()
{
    behaves(QByteArrayLiteral("exec cat > \"$notes/sound\""));
}

void PaplayStandIn::playsOn()
{
    behaves(QByteArrayLiteral("exec sleep 1000"));
}

void PaplayStandIn::exits(int code)
{
    behaves("exit " + QByteArray::number(code));
}

void PaplayStandIn::crashes()
{
    behaves(QByteArrayLiteral("kill -SEGV $$"));
}

QList<qint64> PaplayStandIn::processIds() const
{
    return numbersIn(m_path.filePath(QStringLiteral("runs")));
}

QStringList PaplayStandIn::arguments() const
{
    return linesOf(m_path.filePath(QStringLiteral("arguments")));
}

QByteArray PaplayStandIn::sound() const
{
    return contentOf(m_path.filePath(QStringLiteral("sound")));
}

void PaplayStandIn::behaves(const QByteArray &script)
{
    const QString program = m_path.filePath(QStringLiteral("paplay"));
    QFile::remove(program);
    m_path.add(QStringLiteral("paplay"), noting(QFileInfo(program).path()) + script);
}
