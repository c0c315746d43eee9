// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "whisper.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <vector>

//! The test's side of a libwhisper that recognises nothing: it says what it is told to, and writes down what is asked
//! of it. One for the whole process. Any thread.
namespace WhisperStandIn
{

//! Forgets everything, and says "stand-in" to any audio. Contexts that live stay valid.
void reset();

//! What the next transcriptions say, a text each segment; none for a segment whose text is null.
void say(const QList<std::optional<QByteArray>> &segments);
//! What whisper_full() returns from now on; it's 0 before.
void failWith(int result);

//! From now on whisper_full() doesn't return before letGo().
void hold();
//! Waits until a transcription is held.
void waitUntilHeld();
void letGo();

//! Holds as long as it lives, or until letGo(). Who waits for the engine at the end then doesn't wait for ever where a
//! test fails: it must go before them.
class Held
{
public:
    Held() { hold(); }
    ~Held() { letGo(); }
    Held(const Held &) = delete;
    Held &operator=(const Held &) = delete;
};

//! The calls that were made, in order: "backends", "init PATH", "failed init PATH", "free", "full begins", "full ends".
//! A path that is no file fails to init.
QStringList calls();
//! Contexts that were made and not yet freed.
int livingContexts();

//! The last call of whisper_full().
struct Transcription
{
    const whisper_context *context = nullptr;
    whisper_full_params params {};
    QByteArray language;
    std::vector<float> samples;
    //! From the question for the default parameters to that for the number of segments. The call lies within.
    std::chrono::steady_clock::time_point asked, begun, ended, read;
};
Transcription lastTranscription();

//! The parameters before the worker changes any: nothing in them is what it wants, but for the strategy.
whisper_full_params defaults(whisper_sampling_strategy strategy);
//! Whether the last init got the parameters that the stand-in gave as the context's defaults.
bool contextParamsWereDefault();

} // namespace WhisperStandIn
