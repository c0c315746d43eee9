// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "WhisperWorkerFixture.h"

#include "SignalLog.h"
#include "TestRegistry.h"

#include <QTest>
#include <QtEndian>

#include <optional>
#include <thread>

#include <unistd.h>

using Segments = QList<std::optional<QByteArray>>;

Q_DECLARE_METATYPE(Segments)

//! Transcriptions: input, parameters and results.
class tst_WhisperWorker : public WhisperWorkerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void needsATenthOfASecond_data();
    void needsATenthOfASecond();
    void convertsSamples();
    void setsTheseParameters();
    void joinsSegments_data();
    void joinsSegments();
    void reportsAnError();
    void measuresOnlyTheRecognition();
};

void tst_WhisperWorker::needsATenthOfASecond_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<bool>("isEnough");

    QTest::newRow("nothing") << 0 << false;
    QTest::newRow("one sample") << 2 << false;
    QTest::newRow("a byte too few") << 3199 << false;
    QTest::newRow("just enough") << 3200 << true;
    QTest::newRow("half a sample more") << 3201 << true;
}

void tst_WhisperWorker::needsATenthOfASecond()
{
    QFETCH(int, bytes);
    QFETCH(bool, isEnough);
    const auto worker = loaded();
    SignalLog log(worker.get());
    worker->transcribe(silence(bytes));
    const QStringList signal = log.take();
    QCOMPARE(signal.size(), 1);
    if (isEnough) {
        QVERIFY(signal.first().startsWith(QLatin1String("transcriptionReady(\"stand-in\", ")));
        QCOMPARE(WhisperStandIn::lastTranscription().samples.size(), std::size_t(1600));
    } else {
        QCOMPARE(signal.first(), failed("Audio too short"));
        QVERIFY(!WhisperStandIn::calls().contains(QStringLiteral("full begins")));
    }
}

void tst_WhisperWorker::convertsSamples()
{
    // Every possible value, little-endian.
    QByteArray pcm;
    for (int value = -32768; value <= 32767; ++value) {
        char bytes[2];
        qToLittleEndian(static_cast<qint16>(value), bytes);
        pcm.append(bytes, sizeof bytes);
    }
    const auto worker = loaded();
    worker->transcribe(pcm);
    const std::vector<float> samples = WhisperStandIn::lastTranscription().samples;
    QCOMPARE(samples.size(), std::size_t(65536));
    for (int value = -32768; value <= 32767; ++value) {
        const float sample = samples.at(static_cast<std::size_t>(value + 32768));
        // The divisor is a power of two, so that the result is exact.
        if (sample != static_cast<float>(value) / 32768.0F) {
            QFAIL(qPrintable(QStringLiteral("%1 became %2").arg(value).arg(static_cast<double>(sample))));
        }
    }
}

void tst_WhisperWorker::setsTheseParameters()
{
    const auto worker = loaded();
    worker->transcribe(silence());
    const WhisperStandIn::Transcription given = WhisperStandIn::lastTranscription();
    const whisper_full_params defaults = WhisperStandIn::defaults(WHISPER_SAMPLING_GREEDY);

    QCOMPARE(given.params.strategy, WHISPER_SAMPLING_GREEDY);
    QCOMPARE(int(given.params.strategy), 0);
    QCOMPARE(given.params.no_context, true);
    QCOMPARE(given.params.single_segment, true);
    QCOMPARE(given.params.print_special, false);
    QCOMPARE(given.params.print_progress, false);
    QCOMPARE(given.params.print_realtime, false);
    QCOMPARE(given.params.print_timestamps, false);
    QCOMPARE(given.language, QByteArray("en"));
    const int machine = static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN));
    QVERIFY(given.params.n_threads >= 1);
    QVERIFY(given.params.n_threads <= qMin(machine, 8));
    QCOMPARE(given.params.n_threads, qMin(static_cast<int>(std::thread::hardware_concurrency()), 8));

    QCOMPARE(given.params.n_max_text_ctx, defaults.n_max_text_ctx);
    QCOMPARE(given.params.translate, defaults.translate);
    QCOMPARE(given.params.no_timestamps, defaults.no_timestamps);
    QCOMPARE(given.params.detect_language, defaults.detect_language);
    QCOMPARE(given.params.temperature, defaults.temperature);
}

void tst_WhisperWorker::joinsSegments_data()
{
    QTest::addColumn<Segments>("segments");
    QTest::addColumn<QString>("text"); // null: no speech

    const auto row = [](const char *name, const Segments &segments, const QString &text) {
        QTest::newRow(name) << segments << text;
    };
    row("none", {}, {});
    row("one", {"open the file"}, QStringLiteral("open the file"));
    row("trimmed", {" open the file \n"}, QStringLiteral("open the file"));
    row("inner spaces stay", {"a  b"}, QStringLiteral("a  b"));
    row("two", {" open", " the file"}, QStringLiteral("open the file"));
    row("no text", {std::nullopt}, {});
    row("no text among others", {std::nullopt, "open", std::nullopt, "it", std::nullopt}, QStringLiteral("open it"));
    row("empty", {""}, {});
    row("blank segment", {" \t\n"}, {});
    row("several blank segments", {" ", "", "\n"}, {});
    row("blank segment before", {" ", "open"}, QStringLiteral("open"));
    row("blank segment between", {"open", " ", "it"}, QStringLiteral("open  it"));
    row("blank segment after", {"open", ""}, QStringLiteral("open "));
    row("UTF-8", {" caf\xc3\xa9", "\xe8\xaa\x9e "}, QStringLiteral("café 語"));
    row("not UTF-8", {"a\xff"}, QStringLiteral("a\uFFFD"));
    row("markers of noise", {" [BLANK_AUDIO]", "(coughs)"}, QStringLiteral("[BLANK_AUDIO] (coughs)"));
    row("placeholders", {"%1", "%2"}, QStringLiteral("%1 %2"));
}

void tst_WhisperWorker::joinsSegments()
{
    QFETCH(Segments, segments);
    QFETCH(QString, text);
    const auto worker = loaded();
    WhisperStandIn::say(segments);
    SignalLog log(worker.get());
    worker->transcribe(silence());
    const QStringList signal = log.take();
    QCOMPARE(signal.size(), 1);
    if (text.isNull()) {
        QCOMPARE(signal.first(), failed("No speech detected in audio"));
    } else {
        const QString start = QLatin1String("transcriptionReady(\"") + text + QLatin1String("\", ");
        QCOMPARE(signal.first().left(start.size()), start);
    }
}

void tst_WhisperWorker::reportsAnError()
{
    const auto worker = loaded();
    SignalLog log(worker.get());
    for (const int result : {1, -1, 256}) {
        WhisperStandIn::failWith(result);
        worker->transcribe(silence());
        QCOMPARE(log.take(), QStringList {failed("whisper_full() returned error")});
    }
    WhisperStandIn::failWith(0);
    worker->transcribe(silence());
    QVERIFY(log.take().value(0).startsWith(QLatin1String("transcriptionReady(")));
}

void tst_WhisperWorker::measuresOnlyTheRecognition()
{
    const auto worker = loaded();
    double elapsedMs = -1;
    connect(worker.get(), &WhisperWorker::transcriptionReady, this,
            [&elapsedMs](const QString &, double elapsed) { elapsedMs = elapsed; });
    // Long enough that the conversion of the samples would show in the time.
    worker->transcribe(silence(30 * 32000));
    const WhisperStandIn::Transcription times = WhisperStandIn::lastTranscription();
    using Milliseconds = std::chrono::duration<double, std::milli>;
    QVERIFY(elapsedMs >= Milliseconds(times.ended - times.begun).count());
    QVERIFY(elapsedMs <= Milliseconds(times.read - times.asked).count());
}

REGISTER_TEST(tst_WhisperWorker, QCoreApplication)
#include "tst_WhisperWorker.moc"
