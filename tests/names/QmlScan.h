// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "QmlTokens.h"

#include <QHash>
#include <QString>
#include <QVector>

//! A parser of QML and JavaScript that knows as much of both as a check of names needs. It never fails: what it doesn't
//! understand is skipped. Whether a file is valid is qmllint's business.
namespace QmlScan
{

//! Tokens by their index, without the end.
struct Range
{
    int begin = 0;
    int end = 0;

    bool isEmpty() const { return begin >= end; }
    bool contains(int token) const { return begin <= token && token < end; }
};

struct Member
{
    enum class Kind
    {
        Property,
        Function,
        Signal,
    };
    Kind kind;
    QString name;
    QString type; //!< of a property, such as "var", "alias" or "list<QtObject>"
    bool isReadOnly = false;
    //! How many arguments a function or signal takes. Those with a default are optional.
    int minimumArguments = 0;
    int maximumArguments = 0; //!< AnyNumber when the last parameter is "...rest"
    Range value; //!< the initial expression of a property
    int object = -1; //!< the index of the object that is the initial value of a property
    int line = 0;
};
constexpr int AnyNumber = 1000;

//! An object of a QML file. A group, as in "border { width: 1 }", counts as one, its type begins in lower case.
struct Object
{
    QString type;
    QString id;
    int line = 0;
    int parent = -1; //!< index, -1 for the root
    Range body; //!< between the braces
    QVector<Member> members; //!< those that the object declares itself
    QHash<QString, Range> bindings; //!< expressions by property; objects and blocks of statements are not among them
};

//! A variable, constant or parameter.
struct Local
{
    QString name;
    Range scope;
    Range value; //!< the initial expression, empty without one
};

struct Document
{
    QVector<Token> tokens;
    QVector<Object> objects; //!< the root first; none in a script
    QVector<Local> locals;
    QVector<int> closings; //!< of each token that is a bracket: the bracket that closes it
    QVector<int> owners; //!< the innermost object of each token, -1 outside of the root

    bool is(int token, const char *text) const;
    bool isName(int token) const;
    //! The token that closes the bracket at @p token; the number of tokens if none does or if it is no bracket.
    int closing(int token) const { return token < closings.size() ? closings.at(token) : closings.size(); }
    //! The parts of @p range that @p separator separates, outside of brackets. An empty range has none.
    QVector<Range> split(const Range &range, const char *separator) const;
    //! The arguments of the call whose "(" is at @p token.
    QVector<Range> arguments(int token) const;
    //! The source of a range, without whitespace.
    QString text(const Range &range) const;
};

Document parseQml(const QString &source);
//! A script of its own. It has locals only.
Document parseScript(const QString &source);

} // namespace QmlScan
