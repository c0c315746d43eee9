// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FaultyVoiceRun.h"

#include "Files.h"

#include <QDir>

#include <algorithm>

namespace
{

QString inHome(const char *path)
{
    return QDir::homePath() + QLatin1Char('/') + QLatin1String(path);
}

QByteArray storedSettings()
{
    return contentOf(inHome(".config/kde.org/loomra-kde.conf"));
}

} // namespace

FaultyVoiceRun::FaultyVoiceRun(std::chrono::seconds confirmDelay, const QString &words)
    : VoiceRun(confirmDelay, words)
    , m_settings(storedSettings())
{
    environment.insert(QStringLiteral("TMPDIR"), m_temp.path());
    faults.addTo(environment, {inHome(".config"), inHome(".local"), inHome(".cache"), m_temp.path()});
}

QStringList FaultyVoiceRun::tempFiles() const
{
    return QDir(m_temp.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
}

bool FaultyVoiceRun::areSettingsKept() const
{
    const QList<QByteArray> now = storedSettings().split('\n');
    const QList<QByteArray> before = m_settings.split('\n');
    return std::all_of(before.cbegin(), before.cend(), [&now](const QByteArray &line) { return now.contains(line); });
}
