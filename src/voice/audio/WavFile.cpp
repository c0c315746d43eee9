// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "WavFile.h"

#include "Pcm.h"

#include <QtEndian>

namespace
{

constexpr quint16 s_pcmFormat = 1;
constexpr quint16 s_channels = 1;
constexpr quint32 s_sampleRate = Pcm::SampleRate;
constexpr quint16 s_bitsPerSample = Pcm::SampleBytes * 8;
constexpr quint16 s_blockAlign = s_channels * Pcm::SampleBytes; // bytes
constexpr quint32 s_byteRate = s_sampleRate * s_blockAlign; // bytes per second
constexpr quint32 s_formatSize = 16; // bytes of the "fmt " chunk after its size field
//! The part of the header that the size field of "RIFF" counts: what follows that field.
constexpr quint32 s_countedHeader = WavFile::HeaderBytes - 8;

template<typename Number>
void append(QByteArray &bytes, Number number)
{
    const Number little = qToLittleEndian(number);
    bytes.append(reinterpret_cast<const char *>(&little), sizeof little);
}

} // namespace

QByteArray WavFile::fromPcm(const QByteArray &pcm16Data)
{
    const auto dataSize = static_cast<quint32>(pcm16Data.size());
    QByteArray file;
    file.reserve(HeaderBytes + pcm16Data.size());
    file.append("RIFF");
    append(file, dataSize + s_countedHeader);
    file.append("WAVEfmt ");
    append(file, s_formatSize);
    append(file, s_pcmFormat);
    append(file, s_channels);
    append(file, s_sampleRate);
    append(file, s_byteRate);
    append(file, s_blockAlign);
    append(file, s_bitsPerSample);
    file.append("data");
    append(file, dataSize);
    file.append(pcm16Data);
    return file;
}
