// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QList>
#include <QStringList>

class QQuickItem;
class QQuickWindow;

//! Walks through a window as assistive technology and the keyboard do. Failure messages name an item by its type, its
//! name for screen readers and its objectName. The window must be at rest. Call QAccessible::setActive(true) before it
//! is created: controls have names only then.
namespace AccessibleWalk
{

//! Controls that aren't ours.
struct Toolkit
{
    //! Types whose name and role aren't checked.
    QStringList types;
    //! Names of controls that need not show their focus, because their looks depend on the style of the desktop.
    QStringList looks;
};

//! All that is wrong with a window: the faults below.
QStringList faults(QQuickWindow *window, const Toolkit &toolkit = {});

//! What is wrong with the visible controls: those that take the focus, that can be clicked or that have a value. Each
//! needs a name, a role that fits its type, and a place in the tree that assistive technology sees.
QStringList controlFaults(QQuickWindow *window, const Toolkit &toolkit = {});

//! Visible texts that assistive technology doesn't find, neither as themselves nor as the name, description or value of
//! something else. Single characters are left out, such as the cross of a button.
QStringList textFaults(QQuickWindow *window);

//! What is wrong with the order in which Tab visits the window. Each visible control, or the current row of its list,
//! is visited once, is scrolled into view, shows that it has the focus, and is below or beside the one before;
//! backwards, the order is the same. An editor that takes Tab as a character is left with Ctrl+Tab, if its description
//! says so.
QStringList tabFaults(QQuickWindow *window, const Toolkit &toolkit = {});

//! The items that Tab visits until the focus is back where it was, beginning with that one.
QList<QQuickItem *> stops(QQuickWindow *window);

} // namespace AccessibleWalk
