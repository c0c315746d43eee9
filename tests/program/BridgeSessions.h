// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QStringList>

//! The sessions of the running bridge, through a client of the test's own.
namespace BridgeSessions
{

//! The folder of the bundled bridge.
QString bundledBridge();

//! Performs requests, each a JSON array of method and params, and returns the names of all sessions as "[A,B]", the one
//! that was used last first. In params, "last" is the session that was created last. Empty if no bridge listens.
QByteArray names(const QStringList &requests = {});

//! The messages of the session that was used last, as lines "role: text". Empty if there is none or no bridge listens.
QByteArray lastMessages();

} // namespace BridgeSessions
