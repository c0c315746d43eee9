// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonArray>
#include <QString>

#include <chrono>

class QProcess;

//! Models that the agent CLI lists, in addition to those of the bridge.
//!
//! A row has the strings id and name (both the model), provider, fullId and displayName (both provider/model), and the
//! bool free.
namespace CliModels
{

constexpr std::chrono::milliseconds ListTimeout {6000};

//! Starts the CLI, which is searched on PATH, to list its models. The caller sets up its input and output before.
void start(QProcess &cli);

//! Parses the output of the CLI: one provider/model per line. Other lines, such as banners and warnings, are skipped.
//! Pure.
QJsonArray rowsIn(const QString &output);

//! The rows of the bridge unchanged, followed by those of the CLI whose fullId they don't contain. Pure.
QJsonArray merge(QJsonArray bridgeRows, const QJsonArray &cliRows);

//! Runs the CLI without input and blocks until it exits or the timeout expires. Returns no rows, and logs nothing, if
//! the CLI is missing, fails, crashes or times out.
QJsonArray list(std::chrono::milliseconds timeout = ListTimeout);

} // namespace CliModels
