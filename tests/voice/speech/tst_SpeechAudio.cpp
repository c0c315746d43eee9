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

constexpr int s_chunk = 2206; // bytes, 50 ms
constexpr int s_second = 20; // chunks
constexpr double s_audible = 0.008;

//! What comes out of the loudspeaker while it lives.
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

    //! How many came so far. Silent ones come too, once it listens.
    int chunks()
    {
        m_heard += m_parec.readAllStandardOutput();
        return m_heard.size() / s_chunk;
    }
    bool isListening() { return chunks() > 0; }

    //! Loudness of each chunk that wasn't silent, 0 to 1.
    QVector<double> loudness()
    {
        QVector<double> values;
        const int end = chunks() * s_chunk;
        for (int start = 0; start < end; start += s_chunk) {
            double sum = 0;
            for (int at = start; at + 1 < start + s_chunk; at += 2) {
                const int low = static_cast<uchar>(m_heard.at(at));
                const int high = static_cast<signed char>(m_heard.at(at + 1));
                const double sample = (high * 256 + low) / 32768.0;
                sum += sample * sample;
            }
            const double value = std::sqrt(sum / (s_chunk / 2));
            if (value > s_audible) {
                values.append(value);
            }
        }
        return values;
    }

private:
    QProcess m_parec;
    QByteArray m_heard;
};

} // namespace

//! The real player, and sound that can be heard.
class tst_SpeechAudio : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isHeard();
    void isHeardNoMoreWhenStopped();
};

void tst_SpeechAudio::isHeard()
{
    PiperStandIn piper;
    piper.speaks();
    Monitor monitor;
    QTRY_VERIFY(monitor.isListening());
    QCOMPARE(monitor.loudness().size(), 0);
    SpeechFixture speech;
    speech->speak(QStringLiteral("Open the **file manager**."));
    QTRY_COMPARE_WITH_TIMEOUT(speech.events(), (QStringList {begins, ends, finished}), 30000);
    QCOMPARE(piper.text(), QStringLiteral("Open the file manager."));
    // It is a sentence of more than a second.
    QTRY_VERIFY(monitor.loudness().size() > 15);
    const QVector<double> loudness = monitor.loudness();
    const double mean = std::accumulate(loudness.cbegin(), loudness.cend(), 0.0) / loudness.size();
    QVERIFY2(mean > 0.03 && mean < 0.3, qPrintable(QString::number(mean)));
}

void tst_SpeechAudio::isHeardNoMoreWhenStopped()
{
    PiperStandIn piper;
    piper.speaks();
    Monitor monitor;
    QTRY_VERIFY(monitor.isListening());
    SpeechFixture speech;
    speech->speak(QStringLiteral("one two three four five six seven eight nine ten ").repeated(10));
    QTRY_VERIFY_WITH_TIMEOUT(!monitor.loudness().isEmpty(), 30000);
    speech->stop();
    QVERIFY(!speech->isSpeaking());
    QVERIFY(speech.events().endsWith(finished));
    // A minute of it was to come. What the server had mixed already, and what was under way, may still.
    const int heard = monitor.chunks();
    const int loud = monitor.loudness().size();
    QTRY_VERIFY_WITH_TIMEOUT(monitor.chunks() >= heard + 5 * s_second, 30000);
    QVERIFY(monitor.loudness().size() - loud < s_second);
}

REGISTER_TEST(tst_SpeechAudio, QCoreApplication)
#include "tst_SpeechAudio.moc"
