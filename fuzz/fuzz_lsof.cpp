// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes the output of lsof, whose processes may be killed: a wrong number would end another process.

#include "Require.h"
#include "StaleBridges.h"

#include <QStringList>

#include <algorithm>
#include <cstdint>

using StaleBridges::Verdict;

namespace
{

//! Whether a line is this number, with nothing else but whitespace and an explicit sign or leading zeros.
bool names(const QString &line, qint64 pid)
{
    QString digits = line.trimmed();
    if (digits.startsWith(QLatin1Char('+'))) {
        digits.remove(0, 1);
    }
    while (digits.startsWith(QLatin1Char('0'))) {
        digits.remove(0, 1);
    }
    return digits == QString::number(pid);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString output = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QVector<qint64> pids = StaleBridges::pidsIn(output);
    const QStringList lines = output.split(QLatin1Char('\n'));

    auto line = lines.cbegin();
    for (const qint64 pid : pids) {
        require(pid > 0, "neither a process group nor all processes are meant");
        line = std::find_if(line, lines.cend(), [pid](const QString &text) { return names(text, pid); });
        require(line != lines.cend(), "each number is a line of the output, in its order");
        ++line;
        require(StaleBridges::verdictOn(pid, pid, QStringLiteral("node")) == Verdict::SkipOwn,
                "this process is never killed");
        require(StaleBridges::verdictOn(pid, 0, output) == Verdict::SkipOther || output == QLatin1String("node"),
                "only processes named \"node\" are killed");
    }
    for (const QString &text : lines) {
        bool isNumber = false;
        const qint64 number = text.toLongLong(&isNumber);
        require(!isNumber || number <= 0 || pids.contains(number), "no process is missed");
    }
    return 0;
}
