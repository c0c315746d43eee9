// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class LoomraSDK;
class QObject;
class QQmlEngine;

//! The objects that QML knows by context name.
namespace NativeObjects
{

//! Whether the advanced workspace-intelligence interface is shown by default: true if LOOMRA_WI_ADVANCED_UI is a
//! nonzero integer, false if it is unset, zero or not a number.
bool advancedWorkspaceInterface();

//! Creates the native objects as children of @p parent, in the order of their dependencies, and sets them on the
//! engine's root context. @p parent must outlive @p engine. Main thread.
//! @return the object that the caller must start and stop
LoomraSDK *create(QObject *parent, QQmlEngine *engine);

} // namespace NativeObjects
