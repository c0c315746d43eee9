// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Sentence.h"

#include "Files.h"

#include <QTest>

#include <cstring>

namespace
{

constexpr int s_wavHeaderBytes = 44;

bool run(const QString &program, const QStringList &arguments)
{
    return QProcess::execute(program, arguments) == 0;
}

} // namespace

Sentence::Sentence(const QString &words)
    : m_file(m_directory.filePath(QStringLiteral("sentence.wav")))
{
    const QString spoken = m_directory.filePath(QStringLiteral("spoken.wav"));
    m_isMade = run(QStringLiteral("espeak-ng"), {QStringLiteral("-w"), spoken, words})
        && run(QStringLiteral("sox"),
               {QStringLiteral("-D"), spoken, QStringLiteral("-r"), QStringLiteral("16000"), QStringLiteral("-c"),
                QStringLiteral("1"), QStringLiteral("-b"), QStringLiteral("16"), m_file});
}

Sentence::~Sentence()
{
    stop();
}

void Sentence::stop()
{
    if (m_player.state() != QProcess::NotRunning) {
        m_player.kill();
        m_player.waitForFinished();
    }
}

void Sentence::speak()
{
    stop();
    m_player.start(QStringLiteral("paplay"), {QStringLiteral("--device=mic"), m_file});
    QVERIFY(m_player.waitForStarted());
}

void Sentence::speakToTheEnd()
{
    speak();
    QTRY_COMPARE(m_player.state(), QProcess::NotRunning);
}

std::vector<qint16> Sentence::samples() const
{
    return samplesIn(contentOf(m_file));
}

std::vector<qint16> Sentence::samplesIn(const QByteArray &wav)
{
    const QByteArray data = wav.mid(s_wavHeaderBytes);
    std::vector<qint16> samples(static_cast<std::size_t>(data.size()) / sizeof(qint16));
    std::memcpy(samples.data(), data.constData(), samples.size() * sizeof(qint16));
    return samples;
}
