// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Pcm.h"
#include "TestRegistry.h"
#include "WavFile.h"

#include <QTest>

class tst_WavFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fixedValues();
    void prependsAHeader_data();
    void prependsAHeader();
};

void tst_WavFile::fixedValues()
{
    using namespace std::chrono_literals;
    QCOMPARE(Pcm::SampleRate, 16000);
    QCOMPARE(Pcm::SampleBytes, 2);
    QVERIFY(Pcm::ChunkDuration == 50ms);
    QCOMPARE(Pcm::ChunkSamples, 800);
    QCOMPARE(Pcm::ChunkBytes, 1600);
}

void tst_WavFile::prependsAHeader_data()
{
    QTest::addColumn<QByteArray>("samples");
    QTest::addColumn<QByteArray>("fileSize"); // without the first 8 bytes
    QTest::addColumn<QByteArray>("dataSize");

    const auto row = [](const char *name, const QByteArray &samples, const char *fileSize, const char *dataSize) {
        QTest::newRow(name) << samples << QByteArray::fromHex(fileSize) << QByteArray::fromHex(dataSize);
    };
    row("nothing", QByteArray(), "24000000", "00000000");
    row("one sample", QByteArray("\x34\x12", 2), "26000000", "02000000");
    row("all kinds of bytes stay", QByteArray("\x00\xff\x80\x7f\x0a\x0d\x1a\x00", 8), "2c000000", "08000000");
    row("half a sample stays", QByteArray("\x01\x02\x03", 3), "27000000", "03000000");
    row("carry into the second byte", QByteArray(220, 'x'), "00010000", "dc000000");
    row("a tenth of a second", QByteArray(3200, 'x'), "a40c0000", "800c0000");
    row("half a minute", QByteArray(960000, 'x'), "24a60e00", "00a60e00");
}

void tst_WavFile::prependsAHeader()
{
    QFETCH(QByteArray, samples);
    QFETCH(QByteArray, fileSize);
    QFETCH(QByteArray, dataSize);

    const QByteArray file = WavFile::fromPcm(samples);
    QCOMPARE(file.size(), 44 + samples.size());
    QCOMPARE(file.left(44).toHex(' '),
             QByteArray("RIFF" + fileSize + "WAVEfmt "
                        + QByteArray::fromHex("10000000" // size of the format chunk
                                              "0100" // PCM
                                              "0100" // channels
                                              "803e0000" // 16000 Hz
                                              "007d0000" // 32000 bytes per second
                                              "0200" // bytes per sample
                                              "1000") // bits per sample
                        + "data" + dataSize)
                 .toHex(' '));
    QCOMPARE(file.mid(44), samples);
}

REGISTER_TEST(tst_WavFile, QCoreApplication)
#include "tst_WavFile.moc"
