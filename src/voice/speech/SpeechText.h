// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class QString;

//! What is read aloud of a reply, which is written for the eye.
namespace SpeechText
{

//! The reply without code and the marks of markdown.
QString cleanForSpeech(const QString &reply);

//! The same without white space at its ends, and cut short with "..." behind 1000 characters. Empty when there is
//! nothing to say.
QString spoken(const QString &reply);

} // namespace SpeechText
