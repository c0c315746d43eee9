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

//! Controls the stand-in for libwhisper, which returns the texts that a test sets and records its calls. One for the
//! whole process. Any thread.
namespace WhisperStandIn
{

//! Resets everything; the text is "stand-in" again. Existing contexts stay valid.
void reset();

//! Sets the segments of the following transcriptions. A segment without a value has a null text.
void say(const QList<std::optional<QByteArray>> &segments);
//! Sets the result of whisper_full(), 0 by default.
void failWith(int result);

//! From now on whisper_full() blocks until letGo().
void hold();
//! Waits until whisper_full() is blocked.
void waitUntilHeld();
void letGo();

//! Calls hold(), and letGo() when it is deleted. If a test fails meanwhile, objects that wait for the engine in their
//! destructor aren't blocked forever: declare it after them.
class Held
{
public:
    Held() { hold(); }
    ~Held() { letGo(); }
    Held(const Held &) = delete;
    Held &operator=(const Held &) = delete;
};

//! The recorded calls, in order: "backends", "init PATH", "failed init PATH", "free", "full begins", "full ends".
//! Loading fails if the path isn't a file.
QStringList calls();
//! The number of contexts that aren't freed yet.
int livingContexts();

//! The last call of whisper_full().
struct Transcription
{
    const whisper_context *context = nullptr;
    whisper_full_params params {};
    QByteArray language;
    std::vector<float> samples;
    //! Times of the calls for the default parameters, the start and end of whisper_full(), and the number of segments.
    std::chrono::steady_clock::time_point asked, begun, ended, read;
};
Transcription lastTranscription();

//! The default parameters of the stand-in. Except the strategy all differ from those that the worker sets.
whisper_full_params defaults(whisper_sampling_strategy strategy);
//! Whether the last context was created with the stand-in's default parameters.
bool contextParamsWereDefault();

} // namespace WhisperStandIn
