// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "UserUnit.h"

#include <QProcess>
#include <QStandardPaths>

namespace UserUnit
{

static Outcome request(const QString &verb, const QString &unit)
{
    const QString systemctl = QStandardPaths::findExecutable(QStringLiteral("systemctl"));
    if (systemctl.isEmpty()) {
        return Outcome::NoSystemctl;
    }
    return QProcess::startDetached(systemctl, {QStringLiteral("--user"), verb, unit}) ? Outcome::Started
                                                                                      : Outcome::NotStarted;
}

Outcome start(const QString &unit)
{
    return request(QStringLiteral("start"), unit);
}

Outcome stop(const QString &unit)
{
    return request(QStringLiteral("stop"), unit);
}

} // namespace UserUnit
