// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "VoiceLog.h"

void VoiceLog::append(QTime time, const QString &entry)
{
    m_lines.prepend(QStringLiteral("[%1] %2").arg(time.toString(QStringLiteral("HH:mm:ss.zzz")), entry));
    while (m_lines.size() > MaximumLines) {
        m_lines.removeLast();
    }
}
