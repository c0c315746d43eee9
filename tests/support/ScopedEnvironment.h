// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QtGlobal>

//! Gives an environment variable of this process another value while it lives, and then restores the old one.
class ScopedEnvironment
{
public:
    //! @param name must outlive this object
    //! @param value null unsets the variable
    ScopedEnvironment(const char *name, const QByteArray &value)
        : m_name(name)
        , m_oldValue(qgetenv(name))
    {
        set(name, value);
    }
    ~ScopedEnvironment() { set(m_name, m_oldValue); }
    Q_DISABLE_COPY_MOVE(ScopedEnvironment)

private:
    static void set(const char *name, const QByteArray &value)
    {
        if (value.isNull()) {
            qunsetenv(name);
        } else {
            qputenv(name, value);
        }
    }

    const char *const m_name;
    const QByteArray m_oldValue;
};
