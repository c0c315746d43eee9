// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QVector>

//! Records what programs play to a null sink.
class SoundMonitor
{
public:
    static constexpr int ChunksPerSecond = 20;

    //! Starts recording. The recording has begun once isListening().
    explicit SoundMonitor(const QString &sink = QStringLiteral("spk"));
    ~SoundMonitor();
    Q_DISABLE_COPY_MOVE(SoundMonitor)

    //! The number of recorded chunks, including silent ones.
    int chunks();
    bool isListening() { return chunks() > 0; }

    //! The levels of all chunks that aren't silent, 0 to 1.
    QVector<double> levels();
    //! The frequencies in Hz of all chunks that aren't silent, as the rate at which their samples change sign. Exact
    //! for a pure tone, within 20 Hz.
    QVector<int> frequencies();

private:
    //! The samples of all chunks that aren't silent, -1 to 1.
    QVector<QVector<double>> audible();

    QProcess m_parec;
    QByteArray m_recorded;
};
