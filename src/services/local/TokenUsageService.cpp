// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TokenUsageService.h"

#include "LocalDays.h"

#include <QDateTime>
#include <QDebug>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QStandardPaths>
#include <QThread>

#include <algorithm>
#include <memory>

namespace
{

constexpr qint64 s_freshMs = 5000;
//! Files that a thread takes at once.
constexpr int s_batch = 256;
//! In bytes; larger documents are refused by the JSON parser.
constexpr qint64 s_largestFile = 128 * 1024 * 1024;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    // Unbuffered, because it is read in one go.
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || file.size() > s_largestFile) {
        return {};
    }
    return file.readAll();
}

QVariantMap asMap(const QString &date, const DayTotals &totals)
{
    return {
        {QStringLiteral("date"), date},
        {QStringLiteral("input"), totals.input},
        {QStringLiteral("output"), totals.output},
        {QStringLiteral("reasoning"), totals.reasoning},
        {QStringLiteral("cacheRead"), totals.cacheRead},
        {QStringLiteral("cacheWrite"), totals.cacheWrite},
        {QStringLiteral("messages"), totals.messages},
        {QStringLiteral("total"), totals.total()},
    };
}

} // namespace

TokenUsageService::TokenUsageService(QObject *parent)
    : TokenUsageService(QDateTime::currentMSecsSinceEpoch, parent)
{
}

TokenUsageService::TokenUsageService(Clock clock, QObject *parent)
    : QObject(parent)
    , m_clock(std::move(clock))
    , m_storagePath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                    + QLatin1String("/loomra/storage/message"))
{
}

bool TokenUsageService::isFresh() const
{
    const qint64 age = m_clock() - m_lastScanMs;
    // A clock that was set back must not keep an old scan for hours.
    return m_lastScanMs != 0 && age >= 0 && age <= s_freshMs;
}

TokenUsageService::Days TokenUsageService::read(const std::function<QStringList()> &take)
{
    Days days;
    LocalDays localDays;
    for (QStringList paths = take(); !paths.isEmpty(); paths = take()) {
        for (const QString &path : std::as_const(paths)) {
            if (const auto tokens = parseMessageTokens(contentOf(path))) {
                const QString day = localDays.dayOf(tokens->stamp);
                if (!day.isEmpty()) {
                    days[day] += tokens->totals;
                }
            }
        }
    }
    return days;
}

void TokenUsageService::scan()
{
    m_days.clear();
    if (!QFileInfo(m_storagePath).isDir()) {
        qWarning() << "TokenUsageService: message storage not found at" << m_storagePath;
        return;
    }
    // The threads share the walk, and take only some paths at once, so that memory doesn't grow with their number.
    QDirIterator walk(m_storagePath, {QStringLiteral("msg_*.json")},
                      QDir::Files | QDir::NoSymLinks | QDir::Hidden | QDir::CaseSensitive,
                      QDirIterator::Subdirectories);
    QMutex walkMutex;
    const auto take = [&walk, &walkMutex] {
        const QMutexLocker locker(&walkMutex);
        QStringList paths;
        while (paths.size() < s_batch && walk.hasNext()) {
            paths.append(walk.next());
        }
        return paths;
    };
    Days others;
    const std::unique_ptr<QThread> helper(QThread::create([&] { others = read(take); }));
    helper->start();
    m_days = read(take);
    helper->wait();
    for (auto day = others.cbegin(); day != others.cend(); ++day) {
        m_days[day.key()] += day.value();
    }
    m_lastScanMs = m_clock();
    Q_EMIT scanned();
}

QVariantList TokenUsageService::dailyUsage(int days)
{
    if (days <= 0) {
        days = DefaultDays;
    }
    days = std::min(days, MaximumDays);
    if (!isFresh()) {
        scan();
    }
    QVariantList usage;
    usage.reserve(days);
    const QDate today = QDateTime::fromMSecsSinceEpoch(m_clock()).date();
    for (int age = 0; age < days; ++age) {
        const QString date = today.addDays(-age).toString(Qt::ISODate);
        usage.append(asMap(date, m_days.value(date)));
    }
    return usage;
}
