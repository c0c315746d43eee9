// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QMetaObject>
#include <QStringList>

//! The members that a class offers to QML, without inherited ones, in the order of their declarations.
namespace Members
{

//! "type name notifySignal(Type)", followed by " writable" if it is.
QStringList properties(const QMetaObject &type);

enum class Kind
{
    Signal,
    Operation, //!< public slots and invokables
    PrivateSlot,
};
//! "name(Type,Type) argument,argument"; QML signal handlers use the arguments by these names. An argument with a
//! default value adds an entry without it.
QStringList methods(const QMetaObject &type, Kind kind);
//! The operations that return a value: "Type name(Type,Type)".
QStringList answers(const QMetaObject &type);

} // namespace Members
