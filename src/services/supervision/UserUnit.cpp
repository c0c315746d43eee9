// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeUserService.h"

#include <QProcess>
#include <QStandardPaths>

BridgeUserService::Outcome BridgeUserService::requestStart()
{
    const QString systemctl = QStandardPaths::findExecutable(QStringLiteral("systemctl"));
    if (systemctl.isEmpty()) {
        return Outcome::NoSystemctl;
    }
    const bool started = QProcess::startDetached(
        systemctl, {QStringLiteral("--user"), QStringLiteral("start"), QStringLiteral("tovi-bridge.service")});
    return started ? Outcome::Started : Outcome::NotStarted;
}
