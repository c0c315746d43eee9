// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "PiperStandIn.h"
#include "SpeechFixture.h"
#include "TestRegistry.h"

#include <QProcess>
#include <QTest>

#include <cmath>
#include <numeric>

using namespace SpeechEvents;

namespace
{

constexpr int s_chunkBytes = 2206; // 50 ms
constexpr int s_chunksPerSecond = 20;
constexpr double s_audibleLevel = 0.008;

//! Records what is played.
class Monitor
{
public:
    Monitor()
    {
        m_parec.start(QStringLiteral("parec"),
                      {QStringLiteral("--device=spk.monitor"), QStringLiteral("--raw"), QStringLiteral("--rate=22050"),
                       QStringLiteral("--channels=1"), QStringLiteral("--format=s16le"),
                       QStringLiteral("--latency-msec=50")});
    }
    ~Monitor()
    {
        m_parec.kill();
        m_parec.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Monitor)

    //! The number of recorded chunks, including silent ones.
    int chunks()
    {
        m_recorded += m_parec.readAllStandardOutput();
        return m_recorded.size() / s_chunkBytes;
    }
    bool isListening() { return chunks() > 0; }

    //! The levels of all chunks that aren't silent, 0 to 1.
    QVector<double> levels()
    {
        QVector<double> values;
        const int end = chunks() * s_chunkBytes;
        for (int start = 0; start < end; start += s_chunkBytes) {
            double sum = 0;
            for (int at = start; at + 1 < start + s_chunkBytes; at += 2) {
                const int low = static_cast<uchar>(m_recorded.at(at));
                const int high = static_cast<signed char>(m_recorded.at(at + 1));
                const double sample = (high * 256 + low) / 32768.0;
                sum += sample * sample;
            }
            const double value = std::sqrt(sum / (s_chunkBytes / 2));
            if (value > s_audibleLevel) {
                values.append(value);
            }
        }
        return values;
    }

private:
    QProcess m_parec;
    QByteArray m_recorded;
};

} // namespace

//! Audible speech through the real paplay.
class tst_SpeechAudio : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAudible();
    void isSilentWhenStopped();
};

void tst_SpeechAudio::isAudible()
{
    PiperStandIn piper;
    piper.speaks();
    Monitor monitor;
    QTRY_VERIFY(monitor.isListening());
    QCOMPARE(monitor.levels().size(), 0);
    SpeechFixture speech;
    speech->speak(QStringLiteral("Open the **file manager**."));
    QTRY_COMPARE_WITH_TIMEOUT(speech.events(), (QStringList {begins, ends, finished}), 30000);
    QCOMPARE(piper.text(), QStringLiteral("Open the file manager."));
    // The sentence takes more than a second.
    QTRY_VERIFY(monitor.levels().size() > 15);
    const QVector<double> levels = monitor.levels();
    const double mean = std::accumulate(levels.cbegin(), levels.cend(), 0.0) / levels.size();
    QVERIFY2(mean > 0.03 && mean < 0.3, qPrintable(QString::number(mean)));
}

void tst_SpeechAudio::isSilentWhenStopped()
{
    PiperStandIn piper;
    piper.speaks();
    Monitor monitor;
    QTRY_VERIFY(monitor.isListening());
    SpeechFixture speech;
    speech->speak(QStringLiteral("one two three four five six seven eight nine ten ").repeated(10));
    QTRY_VERIFY_WITH_TIMEOUT(!monitor.levels().isEmpty(), 30000);
    speech->stop();
    QVERIFY(!speech->isSpeaking());
    QVERIFY(speech.events().endsWith(finished));
    // A minute of speech was left. Only what the server had buffered may still be played.
    const int played = monitor.chunks();
    const int loud = monitor.levels().size();
    QTRY_VERIFY_WITH_TIMEOUT(monitor.chunks() >= played + 5 * s_chunksPerSecond, 30000);
    QVERIFY(monitor.levels().size() - loud < s_chunksPerSecond);
}

REGISTER_TEST(tst_SpeechAudio, QCoreApplication)
#include "tst_SpeechAudio.moc"
