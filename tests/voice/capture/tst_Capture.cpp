// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Capture.h"
#include "ScriptedMicrophone.h"
#include "TestRegistry.h"

#include <QTest>

#include <atomic>
#include <thread>

using namespace std::chrono_literals;

namespace
{

constexpr auto s_silence = 200ms;
constexpr int s_silenceChunks = 4;

//! Records the calls of a capture's thread.
struct Record
{
    std::mutex mutex;
    std::vector<double> levels;
    std::vector<QByteArray> chunks;
    bool speechSeen = false;
    int count = -1;
    std::atomic<bool> finished = false;
    std::thread::id thread;

    Capture::Listener listener(bool live)
    {
        Capture::Listener listener;
        listener.level = [this](double rms) {
            const std::lock_guard lock(mutex);
            levels.push_back(rms);
        };
        if (live) {
            listener.chunk = [this](const QByteArray &chunk) {
                const std::lock_guard lock(mutex);
                chunks.push_back(chunk);
            };
        }
        listener.finished = [this](bool speech, int chunks) {
            const std::lock_guard lock(mutex);
            speechSeen = speech;
            count = chunks;
            thread = std::this_thread::get_id();
            finished = true;
        };
        return listener;
    }
};

std::unique_ptr<Microphone> opened(ScriptedMicrophone &microphone)
{
    return microphone.opener()(nullptr);
}

} // namespace

class tst_Capture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsAfterSilence();
    void stops();
    void endsWhenReadsFail();
    void endsAtTheLimit();
    void reportsEveryFifthLevel();
    void reportsEveryChunkWhenLive();
    void readsOnItsOwnThread();
    void reusesMemory();
    void joinsTwice();
    void abandonsAFrozenThread();
    void aFrozenThreadReportsOnlyItsEnd();
};

void tst_Capture::endsAfterSilence()
{
    ScriptedMicrophone microphone(ScriptedMicrophone::Afterwards::Blocks);
    microphone.hear(3, ScriptedMicrophone::Quiet);
    microphone.hear(2, 1000);
    microphone.hear(s_silenceChunks, 7);
    Record record;
    Capture capture(opened(microphone), s_silence, {}, record.listener(false));
    QTRY_VERIFY(record.finished);

    QVERIFY(record.speechSeen);
    QCOMPARE(record.count, 3 + 2 + s_silenceChunks - 1); // without the chunk that ended it
    std::vector<qint16> expected(2 * Pcm::ChunkSamples, 1000);
    expected.insert(expected.end(), s_silenceChunks * Pcm::ChunkSamples, 7);
    QCOMPARE(capture.join(), expected);
    QCOMPARE(microphone.chunksRead(), 3 + 2 + s_silenceChunks);
    QCOMPARE(microphone.openStreams(), 0);
}

void tst_Capture::stops()
{
    ScriptedMicrophone microphone;
    microphone.hear(2, ScriptedMicrophone::Loud);
    Record record;
    Capture capture(opened(microphone), 5s, {}, record.listener(false));
    QTRY_VERIFY(microphone.chunksRead() >= 10);
    QVERIFY(!record.finished);
    capture.stop();
    QTRY_VERIFY(record.finished);
    QVERIFY(record.speechSeen);
    QCOMPARE(record.count, microphone.chunksRead());
    QCOMPARE(capture.join().size(), std::size_t(record.count) * Pcm::ChunkSamples);
}

void tst_Capture::endsWhenReadsFail()
{
    ScriptedMicrophone microphone;
    microphone.hear(5, ScriptedMicrophone::Loud);
    microphone.breakDown();
    Record record;
    Capture capture(opened(microphone), s_silence, {}, record.listener(false));
    QTRY_VERIFY(record.finished);
    QVERIFY(record.speechSeen);
    QCOMPARE(record.count, 5);
    QCOMPARE(capture.join().size(), std::size_t(5) * Pcm::ChunkSamples);
}

void tst_Capture::endsAtTheLimit()
{
    ScriptedMicrophone microphone;
    microphone.hear(1000, ScriptedMicrophone::Loud);
    Record record;
    Capture capture(opened(microphone), s_silence, {}, record.listener(false));
    QTRY_VERIFY(record.finished);
    QCOMPARE(record.count, 600);
    QCOMPARE(microphone.chunksRead(), 600);
    const std::vector<qint16> samples = capture.join();
    QCOMPARE(samples.size() * sizeof(qint16), std::size_t(960000));
    QCOMPARE(samples.capacity() * sizeof(qint16), std::size_t(960000));
}

void tst_Capture::reportsEveryFifthLevel()
{
    ScriptedMicrophone microphone(ScriptedMicrophone::Afterwards::Blocks);
    for (int i = 0; i < 11; ++i) {
        microphone.hear(1, qint16(1000 * (i + 1)));
    }
    microphone.breakDown();
    Record record;
    Capture capture(opened(microphone), s_silence, {}, record.listener(false));
    QTRY_VERIFY(record.finished);
    // Chunks 0, 5 and 10, neither scaled nor smoothed.
    QCOMPARE(record.levels, (std::vector<double> {1000 / 32768.0, 6000 / 32768.0, 11000 / 32768.0}));
    QVERIFY(record.chunks.empty());
}

void tst_Capture::reportsEveryChunkWhenLive()
{
    ScriptedMicrophone microphone;
    microphone.hear(2, ScriptedMicrophone::Quiet);
    microphone.hear(1, ScriptedMicrophone::Loud);
    microphone.breakDown();
    Record record;
    Capture capture(opened(microphone), s_silence, {}, record.listener(true));
    QTRY_VERIFY(record.finished);
    QCOMPARE(record.chunks.size(), std::size_t(3)); // including the silence before speech
    QCOMPARE(record.chunks.front(), QByteArray(1600, 0));
    QCOMPARE(record.chunks.back().size(), 1600);
    QVERIFY(record.chunks.back() != record.chunks.front());
}

void tst_Capture::readsOnItsOwnThread()
{
    ScriptedMicrophone microphone;
    microphone.hear(1, ScriptedMicrophone::Loud);
    microphone.breakDown();
    Record record;
    Capture capture(opened(microphone), s_silence, {}, record.listener(false));
    QTRY_VERIFY(record.finished);
    QVERIFY(microphone.readingThread() != std::this_thread::get_id());
    QVERIFY(microphone.readingThread() == record.thread);
}

void tst_Capture::reusesMemory()
{
    std::vector<qint16> samples;
    const qint16 *memory = nullptr;
    for (int round = 0; round < 3; ++round) {
        ScriptedMicrophone microphone;
        microphone.hear(50 * (round + 1), ScriptedMicrophone::Loud);
        microphone.breakDown();
        Record record;
        Capture capture(opened(microphone), s_silence, std::move(samples), record.listener(false));
        QTRY_VERIFY(record.finished);
        samples = capture.join();
        QCOMPARE(samples.size(), std::size_t(50 * (round + 1)) * Pcm::ChunkSamples);
        QVERIFY(!memory || memory == samples.data());
        memory = samples.data();
    }
}

void tst_Capture::joinsTwice()
{
    ScriptedMicrophone microphone;
    Record record;
    Capture capture(opened(microphone), s_silence, {}, record.listener(false));
    capture.join();
    QVERIFY(record.finished);
    QVERIFY(!record.speechSeen);
    QCOMPARE(capture.join(), std::vector<qint16>());
}

void tst_Capture::abandonsAFrozenThread()
{
    ScriptedMicrophone microphone(ScriptedMicrophone::Afterwards::Blocks);
    microphone.hear(1, ScriptedMicrophone::Loud);
    Record record;
    {
        Capture capture(opened(microphone), s_silence, {}, record.listener(false));
        QTRY_VERIFY(microphone.isAwaited());
        QCOMPARE(capture.join(1ms), std::vector<qint16>());
        QCOMPARE(microphone.openStreams(), 1); // closing it during a read would abort the process
    }
    QVERIFY(!record.finished);
    microphone.breakDown();
    QTRY_VERIFY(record.finished);
    QTRY_COMPARE(microphone.openStreams(), 0);
}

void tst_Capture::aFrozenThreadReportsOnlyItsEnd()
{
    ScriptedMicrophone microphone(ScriptedMicrophone::Afterwards::Blocks);
    Record record;
    {
        Capture capture(opened(microphone), s_silence, {}, record.listener(true));
        QTRY_VERIFY(microphone.isAwaited());
        capture.join(1ms);
    }
    // These would be taken for the level and the audio of a later capture.
    microphone.hear(1, ScriptedMicrophone::Loud);
    QTRY_VERIFY(record.finished);
    QVERIFY(record.levels.empty());
    QVERIFY(record.chunks.empty());
    QCOMPARE(record.count, 1);
    QTRY_COMPARE(microphone.openStreams(), 0);
}

REGISTER_TEST(tst_Capture, QCoreApplication)

#include "tst_Capture.moc"
