// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

//! The speech-to-text engines by the ids under which they are chosen and stored.
namespace SttBackends
{

//! The one of a fresh store.
QString usual();

//! The id that @p words name, without regard to case and blanks around it; "whisper" for all others.
QString fromWords(const QString &words);

QString whisper();
QString whisperSmall();
QString whisperSmallQ5();
QString moonshine();
QString nemotron();

} // namespace SttBackends
