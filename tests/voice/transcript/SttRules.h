// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "MessageLog.h"
#include "SttPostProcessor.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

//! Builds rules for tests, and processors that use them.
namespace SttRules
{

inline QByteArray json(const QJsonArray &names, const QJsonArray &aliases = {}, const QJsonArray &words = {})
{
    return QJsonDocument(QJsonObject {{QStringLiteral("product_names"), names},
                                      {QStringLiteral("command_aliases"), aliases},
                                      {QStringLiteral("word_replacements"), words}})
        .toJson();
}

inline QJsonObject name(const char *canonical, std::initializer_list<const char *> variants)
{
    QJsonArray list;
    for (const char *variant : variants) {
        list.append(QString::fromUtf8(variant));
    }
    return {{QStringLiteral("canonical"), QString::fromUtf8(canonical)}, {QStringLiteral("variants"), list}};
}

inline QJsonObject alias(const char *pattern, const char *replacement)
{
    return {{QStringLiteral("pattern"), QString::fromUtf8(pattern)},
            {QStringLiteral("replacement"), QString::fromUtf8(replacement)}};
}

inline QJsonObject word(const char *from, const char *to)
{
    return {{QStringLiteral("from"), QString::fromUtf8(from)}, {QStringLiteral("to"), QString::fromUtf8(to)}};
}

//! A processor with these rules. Discards its log lines.
inline SttPostProcessor processor(const QByteArray &json)
{
    const MessageLog log;
    SttPostProcessor result;
    result.loadRules(json);
    return result;
}

//! The columns of a test whose rows are rules, a text and its correction.
inline void textColumns()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");
}

} // namespace SttRules
