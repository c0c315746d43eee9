// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

//! An engine without which VoiceBridge would not listen.
namespace Engine
{

//! Installs an engine in the home that does nothing, because it is never run. Its backend is "moonshine". Ends the
//! benchmark if it can't be written.
void install();

} // namespace Engine
