// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Microphone.h"

#include "Endpointer.h"

#include <QByteArray>
#include <QScopeGuard>

#include <pulse/error.h>
#include <pulse/simple.h>

namespace
{

struct FreeStream
{
    void operator()(pa_simple *stream) const { pa_simple_free(stream); }
};
using Stream = std::unique_ptr<pa_simple, FreeStream>;

class PulseMicrophone : public Microphone
{
public:
    explicit PulseMicrophone(Stream stream)
        : m_stream(std::move(stream))
    {
    }

    bool read(void *data, std::size_t bytes) override
    {
        // Why it failed isn't asked: what was heard so far is used as if the user had stopped.
        return pa_simple_read(m_stream.get(), data, bytes, nullptr) >= 0;
    }

private:
    Stream m_stream;
};

} // namespace

std::unique_ptr<Microphone> openPulseMicrophone(QString *reason)
{
    // Without buffer attributes the server delivers fragments of up to two seconds, and the end of speech would be seen
    // as late. This tells it the length of ours, for as long as the stream is made: no child process is to inherit it.
    // An engine that still works after a cancel has taken what it needs of the environment before, on this thread.
    constexpr auto latency = "PULSE_LATENCY_MSEC";
    const bool wasSet = qEnvironmentVariableIsSet(latency);
    const QByteArray old = qgetenv(latency);
    const auto restore = qScopeGuard([=] { wasSet ? qputenv(latency, old) : qunsetenv(latency); });
    qputenv(latency, QByteArray::number(Pcm::ChunkMs));

    const pa_sample_spec format {PA_SAMPLE_S16LE, Pcm::SampleRate, 1};
    int error = 0;
    Stream stream(pa_simple_new(nullptr, "tovictl-voice", PA_STREAM_RECORD, nullptr, "Voice capture", &format, nullptr,
                                nullptr, &error));
    if (!stream) {
        *reason = QString::fromUtf8(pa_strerror(error));
        return nullptr;
    }
    return std::make_unique<PulseMicrophone>(std::move(stream));
}
