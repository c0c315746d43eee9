// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class LoomraSDK;
class QObject;
class QQmlEngine;

//! The objects that QML knows by name.
namespace NativeObjects
{

//! The default of the advanced workspace-intelligence interface: LOOMRA_WI_ADVANCED_UI read as a whole number that
//! isn't zero. Unset, "0" and what is no number give false.
bool advancedWorkspaceInterface();

//! Creates the native objects as children of @p parent, in the order in which they depend on each other, and sets
//! them on the engine's root context. @p parent must outlive @p engine. Main thread.
//! @return the one that wants to be started and stopped
LoomraSDK *create(QObject *parent, QQmlEngine *engine);

} // namespace NativeObjects
