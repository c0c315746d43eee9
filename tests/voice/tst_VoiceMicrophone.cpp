// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Endpointer.h"
#include "MessageLog.h"
#include "PulseDaemon.h"
#include "ScopedEnvironment.h"
#include "Sentence.h"
#include "SherpaStandIn.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "VoiceFixture.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <optional>
#include <vector>

using namespace std::chrono_literals;

namespace
{

constexpr int s_silenceChunks = 14; // 700 ms

//! The index in the sentence at which the recording begins; negative if the recording begins with silence. No value if
//! they differ anywhere. The recording may end with silence.
std::optional<int> beginningOf(const std::vector<qint16> &recorded, const std::vector<qint16> &sentenceSamples)
{
    const std::vector<qint16> silence(recorded.size(), 0); // before and after the sentence
    std::vector<qint16> all = silence;
    all.insert(all.end(), sentenceSamples.begin(), sentenceSamples.end());
    all.insert(all.end(), silence.begin(), silence.end());
    const auto found = std::search(all.begin(), all.end(), recorded.begin(), recorded.end());
    return found == all.end() ? std::nullopt : std::optional(int(found - all.begin()) - int(silence.size()));
}

//! Whether the recording is the sentence from its first loud chunk on.
bool isRecordingOf(const std::vector<qint16> &recorded, const std::vector<qint16> &sentenceSamples)
{
    const std::optional<int> begin = beginningOf(recorded, sentenceSamples);
    return !recorded.empty() && begin && *begin > -Pcm::ChunkSamples;
}

//! The maximum level of all chunks, at whatever offset they begin.
double loudest(const std::vector<qint16> &samples)
{
    std::vector<qint16> padded(samples);
    padded.insert(padded.begin(), Pcm::ChunkSamples, 0);
    double loudest = 0;
    for (std::size_t at = 0; at + Pcm::ChunkSamples <= padded.size(); at += Pcm::ChunkSamples / 8) {
        loudest = std::max(loudest, Endpointer::rms(padded.data() + at));
    }
    return loudest;
}

//! Reads one chunk from a sink as on desktops, whose monitor delivers fragments of two seconds by default.
//! @return what the server then reports about the stream; empty if that failed
QString streamAfterOneChunk()
{
    const ScopedEnvironment source("PULSE_SOURCE", "plain.monitor");
    QString reason;
    const std::unique_ptr<Microphone> microphone = openPulseMicrophone(&reason);
    std::vector<qint16> chunk(Pcm::ChunkSamples, 1);
    const std::vector<qint16> silence(Pcm::ChunkSamples, 0);
    if (!microphone || !microphone->read(chunk.data(), Pcm::ChunkBytes) || chunk != silence) {
        return QString();
    }
    QProcess list;
    list.start(QStringLiteral("pactl"), {QStringLiteral("list"), QStringLiteral("source-outputs")});
    return list.waitForFinished() ? QString::fromUtf8(list.readAll()) : QString();
}

//! What the server holds of a stream after one chunk: almost nothing, or the rest of a long fragment.
std::optional<std::chrono::microseconds> heldByServer(const QString &stream)
{
    static const QRegularExpression pattern(QStringLiteral("Buffer Latency: (\\d+) usec"));
    const QRegularExpressionMatch match = pattern.match(stream);
    return match.hasMatch() ? std::optional(std::chrono::microseconds(match.captured(1).toInt())) : std::nullopt;
}

//! A VoiceBridge with the real microphone and a stand-in for the engine.
struct Fixture
{
    //! Waits for speech, and then for as much of it as an engine needs.
    bool waitForSpeech()
    {
        const auto loud = [this] { return voice->inputLevel() > Endpointer::SpeechThreshold; };
        if (!QTest::qWaitFor(loud)) {
            return false;
        }
        const QSignalSpy levels(voice.get(), &VoiceBridge::inputLevelChanged);
        return QTest::qWaitFor([&levels] { return levels.size() >= 2; });
    }

    Fixture()
    {
        moonshine.says(QStringLiteral("open the file manager"));
        voice = std::make_unique<VoiceBridge>(VoiceFixture::parts());
        voice->setVoiceLogEnabled(true);
        voice->setSttBackend(QStringLiteral("moonshine"));
    }
    //! If the test has failed, the engine may still be held, and VoiceBridge would wait for it.
    ~Fixture() { moonshine.releaseAll(); }
    Q_DISABLE_COPY_MOVE(Fixture)

    MessageLog messages;
    SherpaStandIn moonshine {SherpaStandIn::Engine::Moonshine};
    std::unique_ptr<VoiceBridge> voice;
};

} // namespace

//! The real microphone, with a real audio daemon.
class tst_VoiceMicrophone : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void recordsASentence();
    void recordsTwoSentences();
    void stopsInTheMiddle();
    void cancelsAtEveryStage();
    void silentRoom();
    void readsArePrompt();
    void usersLatencyIsKept();
    void environmentIsAsBefore_data();
    void environmentIsAsBefore();
    void noServer();
    void noSource();
    void daemonDies();
    void daemonFreezes();
};

void tst_VoiceMicrophone::initTestCase()
{
    TestSetup::setAboutData();
    QCOMPARE(QProcess::execute(QStringLiteral("pactl"),
                               {QStringLiteral("load-module"), QStringLiteral("module-null-sink"),
                                QStringLiteral("sink_name=plain")}),
             0);
}

void tst_VoiceMicrophone::init()
{
    TestSetup::clearSettings();
}

void tst_VoiceMicrophone::recordsASentence()
{
    Sentence sentence(QStringLiteral("Open the file manager"));
    QVERIFY(sentence.isMade());
    Fixture fixture;
    QSignalSpy levels(fixture.voice.get(), &VoiceBridge::inputLevelChanged);
    fixture.voice->startListening();
    QVERIFY(fixture.voice->isListening());
    QTRY_VERIFY(levels.size() > 0); // it is reading
    sentence.speak();
    QTRY_VERIFY(fixture.voice->inputLevel() > Endpointer::SpeechThreshold);
    QTRY_COMPARE_WITH_TIMEOUT(fixture.voice->lastTranscript(), QStringLiteral("open the file manager"), 20000);

    const std::vector<qint16> recorded = Sentence::samplesIn(fixture.moonshine.wav());
    const std::vector<qint16> sentenceSamples = sentence.samples();
    QVERIFY2(isRecordingOf(recorded, sentenceSamples), "the recording differs from the sentence");
    const int begin = beginningOf(recorded, sentenceSamples).value();
    // The missing beginning was too quiet to be speech. Nothing is missing at the end.
    if (begin > 0) {
        QVERIFY(loudest(std::vector<qint16>(sentenceSamples.begin(), sentenceSamples.begin() + begin))
                < Endpointer::SpeechThreshold);
    }
    QVERIFY(recorded.size() > sentenceSamples.size() - std::size_t(std::max(begin, 0)));
    const std::vector<qint16> end(recorded.end() - s_silenceChunks * Pcm::ChunkSamples, recorded.end());
    QVERIFY(loudest(end) < Endpointer::SpeechThreshold);
    QVERIFY(VoiceFixture::logEntries(*fixture.voice)
                .filter(QStringLiteral("CAPTURE done"))
                .constFirst()
                .endsWith(QStringLiteral("samples=%1").arg(recorded.size())));
    QCOMPARE(fixture.messages.warnings(), QStringList());
}

void tst_VoiceMicrophone::recordsTwoSentences()
{
    Sentence first(QStringLiteral("Undo that"));
    Sentence second(QStringLiteral("What time is it"));
    QVERIFY(first.isMade() && second.isMade());
    Fixture fixture;
    QSignalSpy transcripts(fixture.voice.get(), &VoiceBridge::transcriptReady);
    for (Sentence *sentence : {&first, &second}) {
        fixture.voice->startListening();
        sentence->speak();
        const int count = transcripts.size() + 1;
        QTRY_COMPARE_WITH_TIMEOUT(transcripts.size(), count, 20000);
        QVERIFY(isRecordingOf(Sentence::samplesIn(fixture.moonshine.wav()), sentence->samples()));
    }
}

void tst_VoiceMicrophone::stopsInTheMiddle()
{
    Sentence sentence(QStringLiteral("Search for all documents that were modified in the last week"));
    QVERIFY(sentence.isMade());
    Fixture fixture;
    fixture.voice->startListening();
    sentence.speak();
    QVERIFY(fixture.waitForSpeech());
    fixture.voice->stopListening();
    QTRY_VERIFY(!fixture.voice->lastTranscript().isEmpty());
    QVERIFY(Sentence::samplesIn(fixture.moonshine.wav()).size() < sentence.samples().size());
    QVERIFY(isRecordingOf(Sentence::samplesIn(fixture.moonshine.wav()), sentence.samples()));
}

void tst_VoiceMicrophone::cancelsAtEveryStage()
{
    Sentence sentence(QStringLiteral("Cancel"));
    QVERIFY(sentence.isMade());
    Fixture fixture;
    fixture.moonshine.hold();
    QSignalSpy requests(fixture.voice.get(), &VoiceBridge::requestTranscription);

    fixture.voice->startListening(); // before the first read
    fixture.voice->cancelListening();
    QVERIFY(!fixture.voice->isListening());

    QSignalSpy levels(fixture.voice.get(), &VoiceBridge::inputLevelChanged);
    fixture.voice->startListening(); // during silence
    QTRY_VERIFY(levels.size() > 1);
    fixture.voice->cancelListening();
    QVERIFY(!fixture.voice->isListening());

    fixture.voice->startListening(); // during speech
    sentence.speak();
    QTRY_VERIFY(fixture.voice->inputLevel() > Endpointer::SpeechThreshold);
    fixture.voice->cancelListening();
    QVERIFY(!fixture.voice->isListening());
    QCOMPARE(requests.size(), 0);

    fixture.voice->startListening(); // while the engine is running
    sentence.speakToTheEnd();
    QTRY_COMPARE(fixture.moonshine.runs(), 1);
    QVERIFY(fixture.voice->isTranscribing());
    fixture.voice->cancelListening();
    QVERIFY(!fixture.voice->isTranscribing());
    fixture.moonshine.release();
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("open the file manager"));
    QVERIFY(!fixture.voice->isListening());
    QCOMPARE(fixture.messages.warnings(), QStringList());
}

void tst_VoiceMicrophone::silentRoom()
{
    Fixture fixture;
    QSignalSpy levels(fixture.voice.get(), &VoiceBridge::inputLevelChanged);
    QSignalSpy errors(fixture.voice.get(), &VoiceBridge::errorOccurred);
    fixture.voice->startListening();
    QTRY_VERIFY(levels.size() >= 3);
    QCOMPARE(fixture.voice->inputLevel(), 0.0);
    fixture.voice->stopListening();
    QTRY_COMPARE(errors.size(), 1);
    QCOMPARE(errors.constFirst().constFirst().toString(), QStringLiteral("No speech detected"));
}

void tst_VoiceMicrophone::readsArePrompt()
{
    const QString stream = streamAfterOneChunk();
    QVERIFY2(stream.contains(QStringLiteral("application.name = \"tovictl-voice\"")), qPrintable(stream));
    QVERIFY2(stream.contains(QStringLiteral("media.name = \"Voice capture\"")), qPrintable(stream));
    QVERIFY2(stream.contains(QStringLiteral("s16le 1ch 16000Hz")), qPrintable(stream));
    const std::optional<std::chrono::microseconds> held = heldByServer(stream);
    QVERIFY2(held && *held < 500ms, qPrintable(stream));
}

void tst_VoiceMicrophone::usersLatencyIsKept()
{
    const ScopedEnvironment latency("PULSE_LATENCY_MSEC", "1500");
    const QString stream = streamAfterOneChunk();
    const std::optional<std::chrono::microseconds> held = heldByServer(stream);
    QVERIFY2(held && *held > 500ms, qPrintable(stream));
}

void tst_VoiceMicrophone::environmentIsAsBefore_data()
{
    QTest::addColumn<QByteArray>("latency");
    QTest::newRow("not set") << QByteArray();
    QTest::newRow("set") << QByteArray("30");
}

void tst_VoiceMicrophone::environmentIsAsBefore()
{
    // Child processes must not inherit the variable.
    QFETCH(QByteArray, latency);
    const ScopedEnvironment variable("PULSE_LATENCY_MSEC", latency);
    QString reason;
    QVERIFY(openPulseMicrophone(&reason));
    QCOMPARE(qgetenv("PULSE_LATENCY_MSEC"), latency);
    QCOMPARE(qEnvironmentVariableIsSet("PULSE_LATENCY_MSEC"), !latency.isNull());
}

void tst_VoiceMicrophone::noServer()
{
    Fixture fixture;
    QSignalSpy errors(fixture.voice.get(), &VoiceBridge::errorOccurred);
    {
        const ScopedEnvironment server("PULSE_SERVER", "unix:/nonexistent/native");
        fixture.voice->startListening();
    }
    QCOMPARE(errors.size(), 1);
    QCOMPARE(errors.constFirst().constFirst().toString(), QStringLiteral("Cannot open microphone: Connection refused"));
    QVERIFY(fixture.voice->isListening());
    QCOMPARE(fixture.voice->lastError(), QString());
    fixture.voice->cancelListening();
    QVERIFY(!fixture.voice->isListening());

    // The server is back.
    fixture.voice->startListening();
    fixture.voice->cancelListening();
    QTRY_COMPARE(errors.size(), 2);
    QCOMPARE(errors.constLast().constFirst().toString(), QStringLiteral("No speech detected"));
}

void tst_VoiceMicrophone::noSource()
{
    const ScopedEnvironment source("PULSE_SOURCE", "no-such-source");
    Fixture fixture;
    QSignalSpy errors(fixture.voice.get(), &VoiceBridge::errorOccurred);
    fixture.voice->startListening();
    QCOMPARE(errors.size(), 1);
    QCOMPARE(errors.constFirst().constFirst().toString(), QStringLiteral("Cannot open microphone: No such entity"));
}

void tst_VoiceMicrophone::daemonDies()
{
    Sentence sentence(QStringLiteral("Search for all documents that were modified in the last week"));
    QVERIFY(sentence.isMade());
    PulseDaemon daemon;
    Fixture fixture;
    QSignalSpy errors(fixture.voice.get(), &VoiceBridge::errorOccurred);
    fixture.voice->startListening();
    sentence.speak();
    QVERIFY(fixture.waitForSpeech());
    daemon.kill();
    // The audio so far is used.
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("open the file manager"));
    QVERIFY(isRecordingOf(Sentence::samplesIn(fixture.moonshine.wav()), sentence.samples()));
    QCOMPARE(errors.size(), 0);
}

void tst_VoiceMicrophone::daemonFreezes()
{
    PulseDaemon daemon;
    Fixture fixture;
    QSignalSpy levels(fixture.voice.get(), &VoiceBridge::inputLevelChanged);
    QSignalSpy errors(fixture.voice.get(), &VoiceBridge::errorOccurred);
    fixture.voice->startListening();
    QTRY_VERIFY(levels.size() > 0);
    daemon.freeze();
    fixture.voice->cancelListening(); // waits for the timeout and abandons the thread
    QVERIFY(!fixture.voice->isListening());
    QCOMPARE(errors.size(), 0);
    daemon.thaw();
    QTRY_COMPARE(errors.size(), 1);
    QCOMPARE(errors.constFirst().constFirst().toString(), QStringLiteral("No speech detected"));

    // The same again, but VoiceBridge is deleted before the daemon continues. The abandoned thread ends then.
    levels.clear();
    const QDir threads(QStringLiteral("/proc/self/task"));
    const auto threadCount = [&threads] { return threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(); };
    fixture.voice->startListening();
    QTRY_VERIFY(levels.size() > 0);
    daemon.freeze();
    fixture.voice.reset();
    const int threadsAbandoned = threadCount();
    daemon.thaw();
    QTRY_VERIFY2(threadCount() < threadsAbandoned, "the capture thread goes on");
}

REGISTER_TEST(tst_VoiceMicrophone, QCoreApplication)

#include "tst_VoiceMicrophone.moc"
