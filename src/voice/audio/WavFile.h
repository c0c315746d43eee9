// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>

//! The file format in which engines that are separate programs take audio.
namespace WavFile
{

constexpr int HeaderBytes = 44;

//! The content of a WAV file with these samples: 16 kHz, mono, signed 16 bit, little-endian. Pure.
QByteArray fromPcm(const QByteArray &pcm16Data);

} // namespace WavFile
