// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QVector>

namespace QmlScan
{

//! Comments and whitespace are no tokens.
struct Token
{
    enum class Kind
    {
        Name, //!< an identifier or a keyword
        Number,
        String, //!< without its quotes; also each literal part of a template
        Pattern, //!< a regular expression
        Punctuator, //!< "${" and "}" enclose an expression of a template
    };
    Kind kind;
    QString text;
    int line; //!< from 1
    bool startsLine; //!< nothing but whitespace and comments is before it in its line
};

QVector<Token> tokenize(const QString &source);

//! Whether an expression begins after this name, as after "return".
bool isOperator(const QString &name);

} // namespace QmlScan
