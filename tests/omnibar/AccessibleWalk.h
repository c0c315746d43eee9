// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStringList>

class QQuickWindow;

//! Walks through a window as assistive technology and the keyboard do. Failure messages name an item by its type, its
//! name for screen readers and its objectName.
namespace AccessibleWalk
{

//! What is wrong with the visible controls: those that take the focus, that can be clicked or that have a value. Each
//! needs a name, the role of a control, and a place in the tree that assistive technology sees.
//! @param toolkit types of controls that aren't ours
QStringList controlFaults(QQuickWindow *window, const QStringList &toolkit = {});

//! What is wrong with the order in which Tab visits the window, from the item with the focus on. Each visible item that
//! takes the focus is visited once, shows that it has the focus, and is below or beside the one before; backwards, the
//! order is the same. An editor that takes Tab as a character is left with Ctrl+Tab, if its description says so.
//! The window must be at rest.
//! @param toolkit names of controls that aren't ours, whose looks depend on the style of the desktop
QStringList tabFaults(QQuickWindow *window, const QStringList &toolkit = {});

} // namespace AccessibleWalk
