// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class QString;

//! Turns a reply, which is markdown, into text to read aloud.
namespace SpeechText
{

//! The reply without code and markdown syntax.
QString cleanForSpeech(const QString &reply);

//! The same, trimmed, and cut after 1000 characters with "..." appended. Empty if there is nothing to say.
QString spoken(const QString &reply);

} // namespace SpeechText
