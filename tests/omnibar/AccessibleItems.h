// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QAccessible>
#include <QList>
#include <QRectF>
#include <QString>

class QQuickItem;

//! What the walk through a window knows about the items: which of them are controls, and which roles fit them.
namespace AccessibleItems
{

//! The name of its QML file, or of the C++ class.
QString typeOf(const QQuickItem *item);
QString nameOf(QQuickItem *item);
//! An item as failure messages name it: by its type, its name for screen readers and the objectNames from the window
QString described(QQuickItem *item);

//! The item's rectangle in the window.
QRectF placeOf(QQuickItem *item);
//! The part of it that isn't clipped away.
QRectF visiblePlaceOf(QQuickItem *item);
//! Whether an item can be seen in the window: neither hidden, nor faded out, nor clipped away.
bool isSeen(QQuickItem *item);

//! Whether the user can operate the item: it takes the focus, or it is of a type that is made for it.
bool isControl(QQuickItem *item);
//! Whether the item belongs to another control, as the input of a spin box does.
bool isPart(const QQuickItem *item);
//! An area that reacts to clicks without being a control or a part of one. Areas that only stop clicks are left out.
bool isBareClickArea(QQuickItem *item);
//! The row of a list that contains the item, or the item itself; null if there is none. Only the current row of a list
//! is in the tab order, because there may be a thousand.
QQuickItem *rowOf(QQuickItem *item);
bool isCurrentRow(QQuickItem *row);

//! The roles that fit a control or a display of the program; empty if the item is neither.
QList<QAccessible::Role> rolesOf(QQuickItem *item);

} // namespace AccessibleItems
