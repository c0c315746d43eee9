// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "TokenTotals.h"

#include <QDate>
#include <QHash>
#include <QObject>
#include <QVariantList>

#include <functional>

//! The tokens that the agent tool used per day, known to QML as tokenUsageService. It sums up the message files that
//! the tool leaves on the disk, so it needs no bridge. Main thread only.
class TokenUsageService : public QObject
{
    Q_OBJECT

    //! The directory of the message files, which lie in any depth below it.
    Q_PROPERTY(QString storagePath READ storagePath CONSTANT)
    //! When the last scan ended, in ms since 1970; 0 if there was none since refresh().
    Q_PROPERTY(qlonglong lastScanMs READ lastScanMs NOTIFY scanned)

public:
    //! Returns the present in ms since 1970.
    using Clock = std::function<qint64()>;

    explicit TokenUsageService(QObject *parent = nullptr);
    //! With another clock, for tests.
    explicit TokenUsageService(Clock clock, QObject *parent = nullptr);

    QString storagePath() const { return m_storagePath; }
    qlonglong lastScanMs() const { return m_lastScanMs; }

    //! The use of the last days, today first, one map per day: "date" (ISO), "input", "output", "reasoning",
    //! "cacheRead", "cacheWrite", "messages" and "total", the sum of the tokens. Scans all files, unless the last scan
    //! ended within the last 5 s; blocks until that is done. Files that can't be read or parsed are skipped.
    //! @param days default if it is not positive; limited to MaximumDays
    Q_INVOKABLE QVariantList dailyUsage(int days = DefaultDays);
    //! Lets the next dailyUsage() scan again.
    Q_INVOKABLE void refresh() { m_lastScanMs = 0; }

    static constexpr int DefaultDays = 30;
    //! A century. Each day takes memory, and QML may pass any number.
    static constexpr int MaximumDays = 36525;

Q_SIGNALS:
    void scanned();

private:
    //! Keys are local dates in ISO form.
    using Days = QHash<QString, DayTotals>;

    bool isFresh() const;
    void scan();
    //! Reads the files that take() returns until that is empty. Runs on two threads at once.
    static Days read(const std::function<QStringList()> &take);

    const Clock m_clock;
    const QString m_storagePath;
    qlonglong m_lastScanMs = 0;
    Days m_days;
};
