// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "VoiceFixture.h"

//! The old name of VoiceFixture, for tests that still use it.
namespace VoiceRig
{

inline VoiceParts partsWith(ScriptedMicrophone &microphone)
{
    return VoiceFixture::parts(microphone);
}

} // namespace VoiceRig
