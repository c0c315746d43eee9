// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QMetaObject>
#include <QStringList>

//! What a class offers to QML by itself, without what it inherits. In the order of the declarations.
namespace Members
{

//! "type name notifySignal(Type)", and " writable" behind it where it is.
QStringList properties(const QMetaObject &type);

enum class Kind
{
    Signal,
    Operation, //!< public slots and what can be invoked
    PrivateSlot,
};
//! "name(Type,Type) argument,argument"; QML knows the arguments by these names. An argument with a default may be left
//! out, which makes an entry without it.
QStringList methods(const QMetaObject &type, Kind kind);
//! The operations that return something: "Type name(Type,Type)".
QStringList answers(const QMetaObject &type);

} // namespace Members
