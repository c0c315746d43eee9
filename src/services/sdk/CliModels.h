// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonArray>
#include <QString>

class QProcess;

//! The models that the agent CLI lists, beside those that the bridge knows.
//!
//! A row has the texts id and name (both the model), provider, fullId and displayName (both provider/model), and the
//! bool free.
namespace CliModels
{

//! Starts the CLI's list of models. PATH tells where the CLI lies.
void start(QProcess &cli);

//! Reads the rows from what the CLI prints: one model a line, as provider/model. Lines of another form, such as
//! banners and warnings, are passed over. Pure.
QJsonArray rowsIn(const QString &output);

//! The bridge's rows as they stand, and behind them those of the CLI whose fullId isn't there yet. Pure.
QJsonArray merge(QJsonArray bridgeRows, const QJsonArray &cliRows);

//! Runs the CLI and blocks until it ends. No rows, and no word, when it is missing, fails, crashes or takes too long.
//! @param patience in ms
QJsonArray list(int patience = 6000);

} // namespace CliModels
