// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <optional>

//! The tokens of some messages.
struct DayTotals
{
    qint64 input = 0;
    qint64 output = 0;
    qint64 reasoning = 0;
    qint64 cacheRead = 0;
    qint64 cacheWrite = 0;
    qint64 messages = 0;

    //! All tokens. Like the sums, it stays within the range of its type.
    qint64 total() const;
    DayTotals &operator+=(const DayTotals &other);
};

//! What a message file of the agent tool tells about tokens.
struct MessageTokens
{
    //! In ms since 1970: when the message was finished, or, if that is unknown, begun. At least 1.
    qint64 stamp = 0;
    //! Of this message.
    DayTotals totals;
};

//! Parses the content of a message file, which is untrusted. Nothing unless it is a message of the assistant with
//! tokens and a time. Thread-safe.
std::optional<MessageTokens> parseMessageTokens(const QByteArray &content);
