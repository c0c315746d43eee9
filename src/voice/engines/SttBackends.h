// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

//! The ids of the speech recognisers, as they are chosen and stored.
namespace SttBackends
{

inline const QLatin1String Whisper("whisper");
inline const QLatin1String WhisperSmall("whisper-small");
inline const QLatin1String WhisperSmallQ5("whisper-small-q5");
inline const QLatin1String Moonshine("moonshine");
inline const QLatin1String Nemotron("nemotron");

//! The id in a fresh store.
inline const QLatin1String Default = WhisperSmallQ5;

//! The id that @p text names, without regard to case and surrounding whitespace; "whisper" for any other text.
QString normalized(const QString &text);

} // namespace SttBackends
