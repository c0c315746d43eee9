// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SpeechOutput.h"

#include "ChildProcess.h"
#include "PiperPaths.h"
#include "SpeechText.h"

#include <QDebug>

#include <csignal>
#include <utility>

namespace
{

//! The format of piper's output. A voice with another rate than 22050 Hz is played at the wrong speed.
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
        process->waitForFinished(static_cast<int>(KillTimeout.count()));
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
    const int number = ++m_speakNumber;
    stop();
    const QString spoken = SpeechText::spoken(text);
    // A slot that was called by stop() may have called speak().
    if (spoken.isEmpty() || number != m_speakNumber) {
        return;
    }
    setSpeaking(true);
    // So may a slot that was called by setSpeaking(), or it may have called stop().
    if (number != m_speakNumber || !m_speaking) {
        return;
    }
    startProcesses(spoken);
}

void SpeechOutput::startProcesses(const QString &text)
{
    const int number = m_speakNumber;
    auto *piper = new ChildProcess(SIGKILL, this);
    auto *paplay = new ChildProcess(SIGKILL, this);
    m_piper = piper;
    m_paplay = paplay;
    piper->setStandardOutputProcess(paplay);
    // What they report isn't used. QProcess would keep it in memory until they end.
    piper->setStandardErrorFile(QProcess::nullDevice());
    paplay->setStandardOutputFile(QProcess::nullDevice());
    paplay->setStandardErrorFile(QProcess::nullDevice());
    // Errors of paplay aren't handled: if it is missing, piper is killed by the closed pipe.
    connect(paplay, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, &SpeechOutput::onPaplayFinished);
    connect(piper, &QProcess::errorOccurred, this, [this, piper] { onPiperError(*piper); });
    paplay->start(QStringLiteral("paplay"), paplayArguments());
    piper->start(m_piperPath, {QStringLiteral("--model"), m_piperVoicePath, QStringLiteral("--output-raw")});

    if (piper->waitForStarted(static_cast<int>(StartTimeout.count()))) {
        piper->write(text.toUtf8());
        piper->closeWriteChannel();
        return;
    }
    qWarning("VoiceBridge: failed to start piper");
    // The error handler has reported this already, and a slot may have started other speech then. Intentional: without
    // that it is reported again.
    if (number == m_speakNumber) {
        setSpeaking(false);
    }
}

void SpeechOutput::stop()
{
    const int number = m_speakNumber;
    // Each pointer is cleared before the wait, so that slots that are called meanwhile find a clean state.
    if (QProcess *piper = std::exchange(m_piper, nullptr)) {
        end(piper);
    }
    // If a slot has called speak() meanwhile, that call has stopped the rest, and its speech continues.
    if (number != m_speakNumber) {
        return;
    }
    if (QProcess *paplay = std::exchange(m_paplay, nullptr)) {
        end(paplay);
    }
    if (number == m_speakNumber && m_speaking) {
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
    // Both pointers are cleared first because a slot may call speak().
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
    process->waitForFinished(static_cast<int>(KillTimeout.count()));
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
    // Deleting a running QProcess blocks until the process ends.
    connect(process, &QProcess::stateChanged, process, [process](QProcess::ProcessState state) {
        if (state == QProcess::NotRunning) {
            process->deleteLater();
        }
    });
    process->kill();
}
