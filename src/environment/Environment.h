// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>

//! Changes the environment variables of this process while other threads read them.
//!
//! qputenv() and setenv() aren't safe for that. They change the array of variables in place or free it, while the C
//! library's resolver, graphics drivers and other libraries read it on their threads, and Qt's lock doesn't stop those.
//! These functions leave the array alone and replace it by another one. Both stay in memory, so that a reader finds
//! every variable either as it was or as it is now.
//!
//! Main thread, like all changes of the environment. Any thread may read it in any way.
namespace Environment
{

//! Adds a variable or replaces its value.
void set(const char *name, const QByteArray &value);
//! Removes a variable if there is one.
void unset(const char *name);

//! Sets a variable while this object lives, so that child processes that are started later don't inherit it. A value
//! that the user has set is kept.
class TemporaryVariable
{
public:
    //! @param name must outlive this object
    TemporaryVariable(const char *name, const QByteArray &value);
    ~TemporaryVariable();
    Q_DISABLE_COPY_MOVE(TemporaryVariable)

private:
    //! Null if the user has set the variable.
    const char *const m_name;
};

} // namespace Environment
