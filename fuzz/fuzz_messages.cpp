// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes what is read of the agent tool's message files.

#include "Require.h"
#include "TokenTotals.h"

#include <cstdint>

namespace
{

constexpr qint64 s_largest = Q_INT64_C(1) << 53;

bool isInRange(qint64 value)
{
    return value >= -s_largest && value <= s_largest;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto tokens = parseMessageTokens(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    if (!tokens) {
        return 0;
    }
    const DayTotals &totals = tokens->totals;
    require(tokens->stamp >= 1 && tokens->stamp <= s_largest, "a message has a time");
    require(totals.messages == 1, "a file is one message");
    for (const qint64 value : {totals.input, totals.output, totals.reasoning, totals.cacheRead, totals.cacheWrite}) {
        require(isInRange(value), "a number of tokens is in the range of whole numbers");
    }
    require(totals.total() == totals.input + totals.output + totals.reasoning + totals.cacheRead + totals.cacheWrite,
            "the total is the sum");
    return 0;
}
