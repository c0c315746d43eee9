// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Capture.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "VoiceFixture.h"
#include "WhisperStandIn.h"

#include <QTest>

#include <atomic>
#include <cstdlib>

// The sanitizers replace malloc themselves.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define COUNTS_MALLOC
#endif

namespace
{

constexpr std::size_t s_utterance = Capture::MaximumSamples * sizeof(qint16); // bytes
//! Maximum overhead of a container, in bytes. The samples that an engine converts take far more.
constexpr std::size_t s_overhead = 4096;

std::atomic<int> s_utterances = 0;

} // namespace

#ifdef COUNTS_MALLOC
extern "C" void *__libc_malloc(std::size_t size);

//! Replaces the C library's function in the whole process.
extern "C" void *malloc(std::size_t size)
{
    if (size >= s_utterance && size <= s_utterance + s_overhead) {
        ++s_utterances;
    }
    return __libc_malloc(size);
}
#endif

//! The memory that the longest utterances take.
class tst_VoiceBridgeMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void isTakenOnce();
};

void tst_VoiceBridgeMemory::initTestCase()
{
    TestSetup::setAboutData();
    TestSetup::clearSettings();
}

void tst_VoiceBridgeMemory::isTakenOnce()
{
#ifndef COUNTS_MALLOC
    QSKIP("allocations aren't counted under a sanitizer");
#endif
    ListeningFixture fixture;
    for (int round = 1; round <= 3; ++round) {
        WhisperStandIn::say({QByteArray::number(round)});
        fixture.microphone.hear(700, ScriptedMicrophone::Loud);
        fixture.voice->startListening();
        QTRY_COMPARE(fixture.voice->lastTranscript(), QString::number(round));
        // The buffer, which is reused, and one copy per utterance for the engine.
        QCOMPARE(s_utterances.load(), 1 + round);
    }
}

REGISTER_TEST(tst_VoiceBridgeMemory, QCoreApplication)

#include "tst_VoiceBridgeMemory.moc"
