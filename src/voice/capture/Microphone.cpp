// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Microphone.h"

#include "Endpointer.h"

#include <QByteArray>
#include <QLibrary>
#include <QScopeGuard>

#include <pulse/error.h>
#include <pulse/simple.h>

namespace
{

//! PulseAudio's client libraries. They bring ten more with them, so that they are loaded when somebody first speaks:
//! the start of the program is quicker, and who never speaks needs no memory for them.
struct Pulse
{
    decltype(&pa_simple_new) simpleNew;
    decltype(&pa_simple_read) simpleRead;
    decltype(&pa_simple_free) simpleFree;
    decltype(&pa_strerror) strerror;
    //! Why they can't be used; empty when they can.
    QString error {};

    //! Once for the process. Any thread.
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
        constexpr int version = 0; // of the binary interface
        QLibrary simple(QStringLiteral("pulse-simple"), version);
        QLibrary common(QStringLiteral("pulse"), version);
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
        // Why it failed isn't asked: what was heard so far is used as if the user had stopped.
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
    Stream stream(pulse.simpleNew(nullptr, "tovictl-voice", PA_STREAM_RECORD, nullptr, "Voice capture", &format,
                                  nullptr, nullptr, &error));
    if (!stream) {
        *reason = QString::fromUtf8(pulse.strerror(error));
        return nullptr;
    }
    return std::make_unique<PulseMicrophone>(std::move(stream));
}
