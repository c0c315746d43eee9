// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <vector>

//! A sentence that is spoken into the microphone of the test's surroundings, in the microphone's own format, so that
//! nothing is resampled on the way.
class Sentence
{
public:
    explicit Sentence(const QString &words);
    //! Falls silent.
    ~Sentence();
    Q_DISABLE_COPY_MOVE(Sentence)

    //! Whether there is something to speak.
    bool isMade() const { return m_isMade; }

    //! From the beginning.
    void speak();
    //! Returns when it was spoken.
    void speakToTheEnd();

    std::vector<qint16> samples() const;
    //! Those of a sound file with the header that everybody writes.
    static std::vector<qint16> samplesIn(const QByteArray &wav);

private:
    void fallSilent();

    const QTemporaryDir m_directory;
    const QString m_file;
    bool m_isMade = false;
    QProcess m_player;
};
