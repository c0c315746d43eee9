// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Microphone.h"

#include "Endpointer.h"
#include "Environment.h"

#include <QByteArray>
#include <QLibrary>

#include <pulse/error.h>
#include <pulse/simple.h>

namespace
{

//! PulseAudio's client libraries. They depend on ten more libraries, so they are loaded when the microphone is first
//! opened: this shortens the start of the program and saves memory for users who never speak.
struct Pulse
{
    decltype(&pa_simple_new) simpleNew;
    decltype(&pa_simple_read) simpleRead;
    decltype(&pa_simple_free) simpleFree;
    decltype(&pa_strerror) strerror;
    //! Why they can't be used; empty if they can.
    QString error {};

    //! Loads them at the first call. Any thread.
    static const Pulse &instance();
};

template<typename Function>
void resolve(QLibrary &library, const char *name, Function &function, QString &error)
{
    function = reinterpret_cast<Function>(library.resolve(name));
    if (!function && error.isEmpty()) {
        error = library.errorString();
    }
}

const Pulse &Pulse::instance()
{
    static const Pulse pulse = [] {
        constexpr int abiVersion = 0;
        QLibrary simple(QStringLiteral("pulse-simple"), abiVersion);
        QLibrary common(QStringLiteral("pulse"), abiVersion);
        Pulse loaded {};
        resolve(simple, "pa_simple_new", loaded.simpleNew, loaded.error);
        resolve(simple, "pa_simple_read", loaded.simpleRead, loaded.error);
        resolve(simple, "pa_simple_free", loaded.simpleFree, loaded.error);
        resolve(common, "pa_strerror", loaded.strerror, loaded.error);
        return loaded;
    }();
    return pulse;
}

struct FreeStream
{
    void operator()(pa_simple *stream) const { Pulse::instance().simpleFree(stream); }
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
        // The reason for a failure doesn't matter: the audio so far is used as if the user had stopped.
        return Pulse::instance().simpleRead(m_stream.get(), data, bytes, nullptr) >= 0;
    }

private:
    Stream m_stream;
};

} // namespace

std::unique_ptr<Microphone> openPulseMicrophone(QString *reason)
{
    const Pulse &pulse = Pulse::instance();
    if (!pulse.error.isEmpty()) {
        *reason = pulse.error;
        return nullptr;
    }

    // By default the server delivers fragments of up to two seconds, and the end of speech would be noticed that late.
    // This variable asks for fragments of one chunk, unless the user has set it.
    const Environment::TemporaryVariable latency("PULSE_LATENCY_MSEC",
                                                 QByteArray::number(int(Pcm::ChunkDuration.count())));

    const pa_sample_spec format {PA_SAMPLE_S16LE, Pcm::SampleRate, 1};
    int error = 0;
    Stream stream(pulse.simpleNew(nullptr, "tovictl-voice", PA_STREAM_RECORD, nullptr, "Voice capture", &format,
                                  nullptr, nullptr, &error));
    if (!stream) {
        *reason = QString::fromUtf8(pulse.strerror(error));
        return nullptr;
    }
    return std::make_unique<PulseMicrophone>(std::move(stream));
}
