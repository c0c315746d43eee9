// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SttBackends.h"

#include <QStringList>

QString SttBackends::whisper()
{
    return QStringLiteral("whisper");
}

QString SttBackends::whisperSmall()
{
    return QStringLiteral("whisper-small");
}

QString SttBackends::whisperSmallQ5()
{
    return QStringLiteral("whisper-small-q5");
}

QString SttBackends::moonshine()
{
    return QStringLiteral("moonshine");
}

QString SttBackends::nemotron()
{
    return QStringLiteral("nemotron");
}

QString SttBackends::usual()
{
    return whisperSmallQ5();
}

QString SttBackends::fromWords(const QString &words)
{
    const QString id = words.trimmed().toLower();
    return QStringList {whisperSmall(), whisperSmallQ5(), moonshine(), nemotron()}.contains(id) ? id : whisper();
}
