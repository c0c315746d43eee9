// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class QString;

//! Units of systemd's user manager. Any thread.
namespace UserUnit
{

//! The result of a request. Started means that systemctl is running, not that it will succeed.
enum class Outcome
{
    NoSystemctl,
    NotStarted,
    Started,
};

//! Ask the user manager to start or stop a unit, without waiting for an answer.
//! @param unit its whole name, such as "tovi-bridge.service"
Outcome start(const QString &unit);
Outcome stop(const QString &unit);

} // namespace UserUnit
