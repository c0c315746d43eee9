// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "PiperStandIn.h"
#include "SoundMonitor.h"
#include "SpeechFixture.h"
#include "TestRegistry.h"

#include <QTest>

#include <numeric>

using namespace SpeechEvents;

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
    SoundMonitor monitor;
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
    SoundMonitor monitor;
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
    QTRY_VERIFY_WITH_TIMEOUT(monitor.chunks() >= played + 5 * SoundMonitor::ChunksPerSecond, 30000);
    QVERIFY(monitor.levels().size() - loud < SoundMonitor::ChunksPerSecond);
}

REGISTER_TEST(tst_SpeechAudio, QCoreApplication)
#include "tst_SpeechAudio.moc"
