// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QtGlobal>

//! Finds the local calendar day of many points in time. A conversion to local time takes as long as parsing a message,
//! because it also checks whether the time zone has changed. The last day is therefore kept for the next times, which
//! are often of the same day. Reentrant. Not for longer than a scan: a change of the time zone goes unnoticed.
class LocalDays
{
public:
    //! The day in ISO form; empty if it is beyond the calendar.
    QString dayOf(qint64 msSinceEpoch);

private:
    void convert(qint64 msSinceEpoch);

    QString m_day;
    qint64 m_begin = 0; //!< of m_day, in ms since 1970
    qint64 m_end = 0; //!< equal to m_begin if the day isn't kept
};
