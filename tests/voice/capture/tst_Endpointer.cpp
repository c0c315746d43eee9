// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Endpointer.h"
#include "TestRegistry.h"

#include <QTest>

#include <array>
#include <cmath>
#include <limits>

using namespace std::chrono_literals;
using Decision = Endpointer::Decision;

Q_DECLARE_METATYPE(Endpointer::Decision)

namespace
{

constexpr double s_speech = 0.1;
constexpr double s_silence = 0;

//! Takes chunks of one level until the utterance ends.
//! @return the number of chunks including the last one; 0 if the utterance didn't end
int chunksToEnd(Endpointer &endpointer, double level)
{
    for (int chunks = 1; !endpointer.isAtLimit(); ++chunks) {
        if (endpointer.take(level) == Decision::StoreAndEnd) {
            return chunks;
        }
    }
    return 0;
}

std::array<qint16, Pcm::ChunkSamples> constantChunk(qint16 sample)
{
    std::array<qint16, Pcm::ChunkSamples> chunk;
    chunk.fill(sample);
    return chunk;
}

} // namespace

class tst_Endpointer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void silenceEndsSpeech_data();
    void silenceEndsSpeech();
    void lastQuietChunkIsStoredButNotCounted();
    void silenceBeforeSpeechIsSkipped();
    void pausesRestartTheSilence();
    void oneChunkIsSpeech();
    void threshold_data();
    void threshold();
    void endsAtTheLimit_data();
    void endsAtTheLimit();
    void measuresLevels_data();
    void measuresLevels();
};

void tst_Endpointer::silenceEndsSpeech_data()
{
    QTest::addColumn<int>("timeoutMs");
    QTest::addColumn<int>("quietChunks");

    QTest::newRow("default") << 700 << 14;
    QTest::newRow("minimum of the setting") << 200 << 4;
    QTest::newRow("maximum of the setting") << 5000 << 100;
    QTest::newRow("no whole number of chunks") << 749 << 14;
    QTest::newRow("two chunks") << 100 << 2;
    QTest::newRow("below two chunks") << 99 << 1;
    QTest::newRow("one chunk") << 50 << 1;
    QTest::newRow("none") << 0 << 1;
    QTest::newRow("below none") << -700 << 1;
    QTest::newRow("minimum integer") << std::numeric_limits<int>::min() << 1;
}

void tst_Endpointer::silenceEndsSpeech()
{
    QFETCH(int, timeoutMs);
    Endpointer endpointer {std::chrono::milliseconds(timeoutMs)};
    QCOMPARE(endpointer.take(s_speech), Decision::Store);
    QTEST(chunksToEnd(endpointer, s_silence), "quietChunks");
}

void tst_Endpointer::lastQuietChunkIsStoredButNotCounted()
{
    Endpointer endpointer(700ms);
    for (int i = 0; i < 10; ++i) {
        QCOMPARE(endpointer.take(s_speech), Decision::Store);
    }
    for (int i = 0; i < 13; ++i) {
        QCOMPARE(endpointer.take(s_silence), Decision::Store);
    }
    QCOMPARE(endpointer.chunkIndex(), 23);
    QCOMPARE(endpointer.take(s_silence), Decision::StoreAndEnd);
    QCOMPARE(endpointer.chunkIndex(), 23);
}

void tst_Endpointer::silenceBeforeSpeechIsSkipped()
{
    Endpointer endpointer(200ms);
    for (int i = 0; i < 50; ++i) {
        QCOMPARE(endpointer.take(s_silence), Decision::Skip);
        QVERIFY(!endpointer.speechSeen());
    }
    QCOMPARE(endpointer.chunkIndex(), 50);
    QCOMPARE(endpointer.take(s_speech), Decision::Store);
    QVERIFY(endpointer.speechSeen());
    QCOMPARE(endpointer.chunkIndex(), 51);
}

void tst_Endpointer::pausesRestartTheSilence()
{
    Endpointer endpointer(200ms);
    for (int word = 0; word < 5; ++word) {
        QCOMPARE(endpointer.take(s_speech), Decision::Store);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(endpointer.take(s_silence), Decision::Store);
        }
    }
    QCOMPARE(endpointer.take(s_silence), Decision::StoreAndEnd);
}

void tst_Endpointer::oneChunkIsSpeech()
{
    Endpointer endpointer(50ms);
    endpointer.take(s_silence);
    QCOMPARE(endpointer.take(s_speech), Decision::Store);
    QCOMPARE(endpointer.take(s_silence), Decision::StoreAndEnd);
    QVERIFY(endpointer.speechSeen());
}

void tst_Endpointer::threshold_data()
{
    QTest::addColumn<double>("level");
    QTest::addColumn<bool>("isSpeech");

    const double threshold = double(0.008f);
    QTest::newRow("the threshold") << threshold << true;
    QTest::newRow("a trifle below it") << std::nextafter(threshold, 0) << false;
    // The single-precision constant is greater than the decimal one.
    QTest::newRow("0.008") << 0.008 << false;
    QTest::newRow("full scale") << 1.0 << true;
    QTest::newRow("nothing") << 0.0 << false;
}

void tst_Endpointer::threshold()
{
    QFETCH(double, level);
    QFETCH(bool, isSpeech);
    Endpointer endpointer(700ms);
    QCOMPARE(endpointer.take(level), isSpeech ? Decision::Store : Decision::Skip);
    QCOMPARE(endpointer.speechSeen(), isSpeech);
}

void tst_Endpointer::endsAtTheLimit_data()
{
    QTest::addColumn<double>("level");
    QTest::addColumn<Decision>("decision");

    QTest::newRow("a room that stays quiet") << s_silence << Decision::Skip;
    QTest::newRow("speech without a pause") << s_speech << Decision::Store;
}

void tst_Endpointer::endsAtTheLimit()
{
    QFETCH(double, level);
    Endpointer endpointer(700ms);
    for (int i = 0; i < 600; ++i) {
        QVERIFY(!endpointer.isAtLimit());
        QTEST(endpointer.take(level), "decision");
    }
    QVERIFY(endpointer.isAtLimit());
    QVERIFY(endpointer.chunkIndex() * Pcm::ChunkDuration == 30s);
}

void tst_Endpointer::measuresLevels_data()
{
    QTest::addColumn<int>("sample");
    QTest::addColumn<double>("rms");
    QTest::addColumn<bool>("isSpeech");

    QTest::newRow("silence") << 0 << 0.0 << false;
    QTest::newRow("below the threshold") << 262 << 262 / 32768.0 << false;
    QTest::newRow("above it") << 263 << 263 / 32768.0 << true;
    QTest::newRow("negative") << -263 << 263 / 32768.0 << true;
    QTest::newRow("loudest") << -32768 << 1.0 << true;
}

void tst_Endpointer::measuresLevels()
{
    QFETCH(int, sample);
    QFETCH(double, rms);
    QFETCH(bool, isSpeech);
    auto chunk = constantChunk(qint16(sample));
    QCOMPARE(Endpointer::rms(chunk.data()), rms);
    QCOMPARE(Endpointer::rms(chunk.data()) >= Endpointer::SpeechThreshold, isSpeech);
    // With half of the chunk silent, the mean of the squares is half as large.
    std::fill(chunk.begin() + Pcm::ChunkSamples / 2, chunk.end(), qint16(0));
    QCOMPARE(Endpointer::rms(chunk.data()), rms / std::sqrt(2.0));
}

REGISTER_TEST(tst_Endpointer, QCoreApplication)

#include "tst_Endpointer.moc"
