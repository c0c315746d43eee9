// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

#include <cstddef>
#include <functional>
#include <memory>

//! Where a capture gets its sound from, in the format of Pcm. Opened and freed on any thread, read on one.
class Microphone
{
public:
    virtual ~Microphone() = default;

    //! Fills @p data with @p bytes, and blocks until they are there. False when there won't be any more.
    virtual bool read(void *data, std::size_t bytes) = 0;
};

//! Opens a microphone, or gives null and the reason in plain words.
using OpenMicrophone = std::function<std::unique_ptr<Microphone>(QString *reason)>;

//! Opens the default source of the PulseAudio server. Blocks as long as the server takes, 30 s at most.
std::unique_ptr<Microphone> openPulseMicrophone(QString *reason);
