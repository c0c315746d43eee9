// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

//! What a sherpa-onnx program prints.
namespace SherpaOutput
{

//! The transcript, trimmed; empty where there is none. That is the first JSON field "text", even an empty one, or, in
//! output without such a field, the last line that is neither JSON nor a line of the log. Pure, any thread.
//! @param output all that it printed, the standard error last
//! @param logWord marks a line as one of the log
QString transcriptIn(const QString &output, const QString &logWord);

} // namespace SherpaOutput
