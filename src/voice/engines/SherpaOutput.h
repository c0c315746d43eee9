// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

//! Parses what a sherpa-onnx program prints.
namespace SherpaOutput
{

//! The transcript, trimmed, or an empty string: the value of the first JSON field "text", even if that is empty. In
//! output without such a field it is the last line that is neither JSON nor a log line. Pure, any thread.
//! @param output standard output followed by standard error
//! @param logWord a line that contains this is a log line
QString transcriptIn(const QString &output, const QString &logWord);

} // namespace SherpaOutput
