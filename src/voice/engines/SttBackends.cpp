// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SttBackends.h"

QString SttBackends::normalized(const QString &text)
{
    const QString id = text.trimmed().toLower();
    for (const QLatin1String known : {WhisperSmall, WhisperSmallQ5, Moonshine, Nemotron}) {
        if (id == known) {
            return id;
        }
    }
    return Whisper;
}
