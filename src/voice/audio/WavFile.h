// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>

//! The file format in which the engines that are programs of their own take speech.
namespace WavFile
{

//! Bytes that come before the samples.
constexpr int headerSize = 44;

//! A whole WAV file of the samples, which are 16 kHz, mono, signed 16 bit, little-endian, and stay as they are. Pure.
QByteArray fromPcm(const QByteArray &pcm16Data);

} // namespace WavFile
