// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LocalDays.h"

#include <QDateTime>

namespace
{

constexpr qint64 s_dayMs = 24 * 60 * 60 * 1000;

//! Whether a day begins then, with the same offset from UTC as at another time.
bool isStart(qint64 msSinceEpoch, const QDateTime &other)
{
    const QDateTime start = QDateTime::fromMSecsSinceEpoch(msSinceEpoch);
    return start.time() == QTime(0, 0) && start.offsetFromUtc() == other.offsetFromUtc();
}

} // namespace

QString LocalDays::dayOf(qint64 msSinceEpoch)
{
    if (msSinceEpoch < m_begin || msSinceEpoch >= m_end) {
        convert(msSinceEpoch);
    }
    return m_day;
}

void LocalDays::convert(qint64 msSinceEpoch)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(msSinceEpoch);
    m_day = time.date().toString(Qt::ISODate);
    m_begin = msSinceEpoch - time.time().msecsSinceStartOfDay();
    m_end = m_begin + s_dayMs;
    // Days on which the clocks change aren't kept. They may be longer or shorter, and one whose clocks are put back
    // just after midnight is interrupted by a minute of the next.
    if (m_day.isEmpty() || !isStart(m_begin, time) || !isStart(m_end, time)) {
        m_end = m_begin;
    }
}
