// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

#include <cstddef>
#include <functional>
#include <memory>

//! The audio source of a capture, in the format of Pcm. Opened on the main thread, read on one, deleted on any.
class Microphone
{
public:
    virtual ~Microphone() = default;

    //! Blocks until @p data is filled with @p bytes. Returns false if the source has failed and there is no more audio.
    virtual bool read(void *data, std::size_t bytes) = 0;
};

//! Opens a microphone. On failure it returns null and sets the reason, a text for the user.
using OpenMicrophone = std::function<std::unique_ptr<Microphone>(QString *reason)>;

//! Opens the default source of the PulseAudio server, on the main thread. Blocks until the server replies, for 30 s at
//! most.
std::unique_ptr<Microphone> openPulseMicrophone(QString *reason);
