// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SoundMonitor.h"

#include <cmath>
#include <numeric>

namespace
{

constexpr int s_chunkBytes = 2206; // 50 ms
constexpr double s_audibleLevel = 0.008;

double levelOf(const QVector<double> &samples)
{
    return std::sqrt(std::inner_product(samples.cbegin(), samples.cend(), samples.cbegin(), 0.0) / samples.size());
}

} // namespace

SoundMonitor::SoundMonitor(const QString &sink)
{
    m_parec.start(QStringLiteral("parec"),
                  {QLatin1String("--device=%1.monitor").arg(sink), QStringLiteral("--raw"),
                   QStringLiteral("--rate=22050"), QStringLiteral("--channels=1"), QStringLiteral("--format=s16le"),
                   QStringLiteral("--latency-msec=50")});
}

SoundMonitor::~SoundMonitor()
{
    m_parec.kill();
    m_parec.waitForFinished();
}

int SoundMonitor::chunks()
{
    m_recorded += m_parec.readAllStandardOutput();
    return m_recorded.size() / s_chunkBytes;
}

QVector<double> SoundMonitor::levels()
{
    QVector<double> values;
    const QVector<QVector<double>> all = audible();
    for (const QVector<double> &samples : all) {
        values.append(levelOf(samples));
    }
    return values;
}

QVector<int> SoundMonitor::frequencies()
{
    QVector<int> values;
    const QVector<QVector<double>> all = audible();
    for (const QVector<double> &samples : all) {
        int changes = 0;
        for (int i = 1; i < samples.size(); ++i) {
            changes += std::signbit(samples[i]) != std::signbit(samples[i - 1]) ? 1 : 0;
        }
        values.append(changes * ChunksPerSecond / 2);
    }
    return values;
}

QVector<QVector<double>> SoundMonitor::audible()
{
    QVector<QVector<double>> all;
    const int end = chunks() * s_chunkBytes;
    for (int start = 0; start < end; start += s_chunkBytes) {
        QVector<double> samples;
        for (int at = start; at + 1 < start + s_chunkBytes; at += 2) {
            const int low = static_cast<uchar>(m_recorded.at(at));
            const int high = static_cast<signed char>(m_recorded.at(at + 1));
            samples.append((high * 256 + low) / 32768.0);
        }
        if (levelOf(samples) > s_audibleLevel) {
            all.append(samples);
        }
    }
    return all;
}
