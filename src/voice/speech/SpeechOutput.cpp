// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SpeechOutput.h"
#include "PiperPaths.h"
#include "SpeechText.h"

#include <QDebug>
#include <QProcess>

#include <utility>

namespace
{

constexpr int s_startPatience = 3000; // ms
constexpr int s_endPatience = 1000; // ms

//! What piper writes. A voice of another rate than 22050 Hz is played at the wrong speed.
QStringList paplayArguments()
{
    return {QStringLiteral("--raw"), QStringLiteral("--rate=22050"), QStringLiteral("--channels=1"),
            QStringLiteral("--format=s16le")};
}

} // namespace

SpeechOutput::~SpeechOutput()
{
    const QList<QProcess *> processes = findChildren<QProcess *>(QString(), Qt::FindDirectChildrenOnly);
    for (QProcess *process : processes) {
        process->disconnect(this);
        process->kill();
        process->waitForFinished(s_endPatience);
    }
}

void SpeechOutput::detect(const SearchRoots &roots)
{
    m_piperPath = PiperPaths::findPiper(roots);
    m_piperVoicePath = PiperPaths::findVoice(roots);
    const bool available = !m_piperPath.isEmpty() && !m_piperVoicePath.isEmpty();
    if (m_available != available) {
        m_available = available;
        Q_EMIT availableChanged();
    }
    if (m_available) {
        qDebug() << "VoiceBridge: TTS available — piper:" << m_piperPath << "voice:" << m_piperVoicePath;
    } else if (m_piperPath.isEmpty()) {
        qDebug("VoiceBridge: TTS unavailable — piper binary not found");
    } else {
        qDebug("VoiceBridge: TTS unavailable — no voice model found");
    }
}

void SpeechOutput::speak(const QString &text)
{
    if (!m_available || text.trimmed().isEmpty()) {
        return;
    }
    const int number = ++m_number;
    stop();
    const QString spoken = SpeechText::spoken(text);
    // A slot that heard of the end of the one before may have spoken already.
    if (spoken.isEmpty() || number != m_number) {
        return;
    }
    setSpeaking(true);
    // The same goes for those that hear of the beginning, and these may have stopped it too.
    if (number != m_number || !m_speaking) {
        return;
    }
    startProcesses(spoken);
}

void SpeechOutput::startProcesses(const QString &text)
{
    const int number = m_number;
    auto *piper = new QProcess(this);
    auto *paplay = new QProcess(this);
    m_piper = piper;
    m_paplay = paplay;
    piper->setStandardOutputProcess(paplay);
    // Errors of paplay aren't watched: where it is missing, piper dies of the closed pipe.
    connect(paplay, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, &SpeechOutput::onPaplayFinished);
    connect(piper, &QProcess::errorOccurred, this, [this, piper] { onPiperError(*piper); });
    paplay->start(QStringLiteral("paplay"), paplayArguments());
    piper->start(m_piperPath, {QStringLiteral("--model"), m_piperVoicePath, QStringLiteral("--output-raw")});

    if (piper->waitForStarted(s_startPatience)) {
        piper->write(text.toUtf8());
        piper->closeWriteChannel();
        return;
    }
    qWarning("VoiceBridge: failed to start piper");
    // Told again although the error has told it: that may have been followed by other speech, though.
    if (number == m_number) {
        setSpeaking(false);
    }
}

void SpeechOutput::stop()
{
    const int number = m_number;
    // Each is forgotten before its end is waited for: slots that hear of it then start from a clean state.
    if (QProcess *piper = std::exchange(m_piper, nullptr)) {
        end(piper);
    }
    // What a slot has begun to say in the meantime goes on, and the rest was stopped for it.
    if (number != m_number) {
        return;
    }
    if (QProcess *paplay = std::exchange(m_paplay, nullptr)) {
        end(paplay);
    }
    if (number == m_number && m_speaking) {
        setSpeaking(false);
    }
}

void SpeechOutput::onPiperError(const QProcess &piper)
{
    const QString error = piper.errorString();
    setSpeaking(false);
    qWarning() << "VoiceBridge: piper process error:" << error;
}

void SpeechOutput::onPaplayFinished()
{
    // Both are forgotten first: who hears of the end may speak again.
    retire(std::exchange(m_piper, nullptr));
    retire(std::exchange(m_paplay, nullptr));
    setSpeaking(false);
    Q_EMIT speakingFinished();
}

void SpeechOutput::setSpeaking(bool speaking)
{
    m_speaking = speaking;
    Q_EMIT speakingChanged();
}

void SpeechOutput::end(QProcess *process)
{
    process->kill();
    process->waitForFinished(s_endPatience);
    retire(process);
}

void SpeechOutput::retire(QProcess *process)
{
    if (!process) {
        return;
    }
    process->disconnect(this);
    if (process->state() == QProcess::NotRunning) {
        process->deleteLater();
        return;
    }
    // Deleted while it runs, it would be waited for without end.
    connect(process, &QProcess::stateChanged, process, [process](QProcess::ProcessState state) {
        if (state == QProcess::NotRunning) {
            process->deleteLater();
        }
    });
    process->kill();
}
