// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes the escaping of untrusted texts for the debug log: a text must not be able to forge entries of its own.

#include "DebugEventLog.h"
#include "Require.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cstdint>

namespace
{

//! The string that this is the content of, in JSON.
QString unescaped(const QString &content)
{
    const QByteArray json = QByteArray("{\"t\":\"") + content.toUtf8() + "\"}";
    const QJsonDocument document = QJsonDocument::fromJson(json);
    require(document.isObject() && document.object().size() == 1, "an escaped text stays within its string");
    return document.object().value(QLatin1String("t")).toString();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    if (text.startsWith(QChar(QChar::ByteOrderMark))) {
        return 0; // Qt's JSON parser removes it from a string
    }
    require(unescaped(DebugEventLog::escaped(text)) == text, "escaping keeps the text");
    const QString lines = DebugEventLog::escapedLines(text);
    require(unescaped(lines) == text, "escaping keeps the text and its lines");
    require(!lines.contains(QLatin1Char('\n')), "no line ends within an entry");

    const QString place = QStringLiteral("fuzz.cpp:1");
    const QString values = QLatin1String("{\"text\":\"") + lines + QLatin1String("\"}");
    const QByteArray entry = DebugEventLog::line(place, QStringLiteral("say \"hi\""), values, 1);
    require(entry.endsWith('\n') && entry.count('\n') == 1, "an entry is one line");
    const QJsonObject parsed = QJsonDocument::fromJson(entry).object();
    require(parsed.size() == 4 && parsed.value(QLatin1String("location")).toString() == place
                && parsed.value(QLatin1String("message")).toString() == QLatin1String("say \"hi\"")
                && parsed.value(QLatin1String("timestamp")).toInt() == 1,
            "data changes no other field");
    require(parsed.value(QLatin1String("data")).toObject().value(QLatin1String("text")).toString() == text,
            "the data has the text");
    return 0;
}
