// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Conversation.h"

#include <QMetaType>

//! What the OmniBar shows in turn: the bar, the conversation, each tab of the settings and so on. For tests that hold
//! for all of it.
namespace Scenes
{

//! Brings an open window that bringBack() left to its scene. @return false on timeout
using Scene = bool (*)(Conversation &);

//! Adds the column "scene" and a row for each scene to the data of a test.
void add();
//! Adds rows for open menus, to which Tab does not go.
void addMenus();

// Scenes that tests also use alone: a prompt with its reply, the settings, and the list of sessions above the bar.
bool conversation(Conversation &bar);
bool settings(Conversation &bar);
bool sessions(Conversation &bar);

} // namespace Scenes

Q_DECLARE_METATYPE(Scenes::Scene)
