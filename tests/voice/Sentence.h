// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <vector>

//! A synthesized sentence that is played into the microphone of the test environment. It has the microphone's format,
//! so that it isn't resampled.
class Sentence
{
public:
    explicit Sentence(const QString &words);
    //! Stops playing.
    ~Sentence();
    Q_DISABLE_COPY_MOVE(Sentence)

    //! Whether the sentence was synthesized.
    bool isMade() const { return m_isMade; }

    //! Starts playing from the beginning.
    void speak();
    //! Plays the whole sentence before it returns.
    void speakToTheEnd();

    std::vector<qint16> samples() const;
    //! The samples of a WAV file with a header of 44 bytes.
    static std::vector<qint16> samplesIn(const QByteArray &wav);

private:
    void stop();

    const QTemporaryDir m_directory;
    const QString m_file;
    bool m_isMade = false;
    QProcess m_player;
};
