// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "NameCheck.h"

#include <algorithm>

using QmlScan::Document;
using QmlScan::Member;
using QmlScan::Object;
using QmlScan::Range;
using QmlScan::Token;

namespace
{

const QStringList s_assignments =
    QStringLiteral("= += -= *= /= %= **= &= |= ^= <<= >>= >>>= ++ --").split(QLatin1Char(' '));

QString kindName(Member::Kind kind)
{
    switch (kind) {
    case Member::Kind::Property:
        return QStringLiteral("a property");
    case Member::Kind::Function:
        return QStringLiteral("a function");
    case Member::Kind::Signal:
        return QStringLiteral("a signal");
    }
    return QString();
}

QString rangeText(const QPair<int, int> &arguments)
{
    if (arguments.second == QmlScan::AnyNumber) {
        return QStringLiteral("%1 or more").arg(arguments.first);
    }
    return arguments.first == arguments.second ? QString::number(arguments.first)
                                               : QStringLiteral("%1 to %2").arg(arguments.first).arg(arguments.second);
}

//! "1 argument", "1 or 3 arguments", "1 to 2 arguments"
QString argumentsText(QVector<QPair<int, int>> arguments)
{
    std::sort(arguments.begin(), arguments.end());
    QStringList counts;
    for (const auto &overload : qAsConst(arguments)) {
        counts.append(rangeText(overload));
    }
    counts.removeDuplicates();
    const QString text = counts.join(QLatin1String(" or "));
    return text + QLatin1String(text == QLatin1String("1") ? " argument" : " arguments");
}

bool accepts(const QVector<QPair<int, int>> &overloads, int count)
{
    return std::any_of(overloads.begin(), overloads.end(), [count](const QPair<int, int> &overload) {
        return overload.first <= count && count <= overload.second;
    });
}

//! "agentReplied" for "onAgentReplied", "" if this is not the name of a handler.
QString signalOfHandler(const QString &name)
{
    if (name.size() < 3 || !name.startsWith(QLatin1String("on")) || !name.at(2).isUpper()) {
        return QString();
    }
    return name.at(2).toLower() + name.mid(3);
}

} // namespace

QString NameCheck::Finding::text() const
{
    return QStringLiteral("%1:%2: %3 %4").arg(file).arg(line).arg(name, problem);
}

QVector<NameCheck::Finding> NameCheck::check(const QString &path) const
{
    const Document &file = document(path);
    Findings findings;
    for (int i = 0; i < file.tokens.size(); ++i) {
        if (file.isName(i) && !file.is(i - 1, ".")) {
            checkChain(path, i, &findings);
            checkNativeCall(path, i, &findings);
            checkTypeof(path, i, &findings);
        }
    }
    for (const Object &object : file.objects) {
        if (object.type == QLatin1String("Connections")) {
            checkConnections(path, object, &findings);
        }
    }
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding &a, const Finding &b) { return a.line < b.line; });
    return findings;
}

//! Checks every member of the chain whose first name is at @p token.
void NameCheck::checkChain(const QString &path, int token, Findings *findings) const
{
    const Document &file = document(path);
    if (!file.is(token + 1, ".")) {
        return;
    }
    Type type = typeOfName(path, token, 0);
    for (int i = token + 2; type.isKnown() && file.is(i - 1, ".") && file.isName(i); i += 2) {
        const Use use = find(type, file.tokens.at(i).text);
        if (!use.isFound && use.isCertain) {
            findings->append({path, file.tokens.at(i).line, file.text({token, i + 1}),
                              QStringLiteral("is not declared by %1").arg(nameOf(type))});
        }
        if (!use.isFound) {
            return;
        }
        checkUse(path, {token, i + 1}, use, findings);
        type = use.type;
    }
}

//! Checks a call of the member at the end of @p chain, or an assignment to it.
void NameCheck::checkUse(const QString &path, const Range &chain, const Use &use, Findings *findings) const
{
    const Document &file = document(path);
    const auto report = [&](const QString &problem) {
        findings->append({path, file.tokens.at(chain.end - 1).line, file.text(chain), problem});
    };
    const Token next = chain.end < file.tokens.size() ? file.tokens.at(chain.end) : Token {};
    const bool isStep = file.is(chain.begin - 1, "++") || file.is(chain.begin - 1, "--");
    if (file.is(chain.end, "(")) {
        const QVector<Range> arguments = file.arguments(chain.end);
        const bool spreads = std::any_of(arguments.begin(), arguments.end(),
                                         [&](const Range &argument) { return file.is(argument.begin, "..."); });
        // A property may hold a function, of which nothing is known.
        if (use.kind != Member::Kind::Property && !spreads && !accepts(use.arguments, arguments.size())) {
            report(QStringLiteral("takes %1, but is called with %2")
                       .arg(argumentsText(use.arguments))
                       .arg(arguments.size()));
        }
    } else if (next.kind == Token::Kind::Punctuator && !file.is(chain.end, ".")
               && (s_assignments.contains(next.text) || isStep) && !use.isWritable) {
        report(use.kind == Member::Kind::Property ? QStringLiteral("is read-only")
                                                  : QStringLiteral("is %1, not a property").arg(kindName(use.kind)));
    }
}

//! Checks the name and arguments in "Native.call(object, "name", ...)" and "Native.offers(object, "name")".
void NameCheck::checkNativeCall(const QString &path, int token, Findings *findings) const
{
    const Document &file = document(path);
    const QString function = file.text({token, std::min(token + 3, int(file.tokens.size()))});
    const bool isCall = function == QLatin1String("Native.call");
    if ((!isCall && function != QLatin1String("Native.offers")) || !file.is(token + 3, "(")) {
        return;
    }
    const QVector<Range> arguments = file.arguments(token + 3);
    if (arguments.size() < 2 || file.tokens.at(arguments.at(1).begin).kind != Token::Kind::String) {
        return;
    }
    const Type type = typeOfExpression(path, arguments.at(0), 0);
    const QString name = file.text(arguments.at(1));
    const Use use = find(type, name);
    const auto report = [&](const QString &problem) {
        const QString chain = file.text(arguments.at(0)) + QLatin1Char('.') + name;
        findings->append({path, file.tokens.at(arguments.at(1).begin).line, chain, problem});
    };
    const int count = arguments.size() - 2;
    if (!use.isFound && use.isCertain) {
        report(QStringLiteral("is not declared by %1").arg(nameOf(type)));
    } else if (use.isFound && use.kind != Member::Kind::Function) {
        report(QStringLiteral("is %1, not a function").arg(kindName(use.kind)));
    } else if (use.isFound && isCall && !accepts(use.arguments, count)) {
        report(QStringLiteral("takes %1, but is called with %2").arg(argumentsText(use.arguments)).arg(count));
    }
}

//! In "typeof name !== "undefined"" the name must be that of a native object.
void NameCheck::checkTypeof(const QString &path, int token, Findings *findings) const
{
    const Document &file = document(path);
    const QString name = token + 1 < file.tokens.size() ? file.tokens.at(token + 1).text : QString();
    const bool asks = file.tokens.at(token).text == QLatin1String("typeof")
        && (file.is(token + 2, "!==") || file.is(token + 2, "===") || file.is(token + 2, "!=")
            || file.is(token + 2, "=="))
        && token + 3 < file.tokens.size() && file.tokens.at(token + 3).text == QLatin1String("undefined");
    const bool isLocal = std::any_of(file.locals.begin(), file.locals.end(), [&](const QmlScan::Local &local) {
        return local.name == name && local.scope.contains(token);
    });
    if (asks && !isLocal && !m_natives.contains(name)) {
        findings->append({path, file.tokens.at(token).line, name, QStringLiteral("is no native object")});
    }
}

//! Checks that the target has a signal for each handler.
void NameCheck::checkConnections(const QString &path, const Object &object, Findings *findings) const
{
    const Type target = typeOfExpression(path, object.bindings.value(QStringLiteral("target")), 0);
    for (const Member &handler : object.members) {
        const QString signal = signalOfHandler(handler.name);
        if (handler.kind != Member::Kind::Function || signal.isEmpty() || !target.isKnown()) {
            continue;
        }
        const Use use = find(target, signal);
        const auto report = [&](const QString &problem) {
            findings->append({path, handler.line, handler.name, problem});
        };
        if (use.isFound ? use.kind != Member::Kind::Signal : use.isCertain) {
            report(QStringLiteral("handles \"%1\", which is no signal of %2").arg(signal, nameOf(target)));
        } else if (use.isFound
                   && std::none_of(use.arguments.begin(), use.arguments.end(), [&](const QPair<int, int> &overload) {
                          return handler.maximumArguments <= overload.second;
                      })) {
            report(QStringLiteral("has %1 parameters, but \"%2\" of %3 has %4")
                       .arg(handler.maximumArguments)
                       .arg(signal, nameOf(target), argumentsText(use.arguments)));
        }
    }
}

QVector<NameCheck::Finding> NameCheck::checkFake(const QString &fake, const QString &real,
                                                 const QStringList &except) const
{
    const Type fakeType = qmlType(fake);
    Type realType = qmlType(real);
    if (m_natives.contains(real)) {
        realType = {Type::Kind::Native, QString(), 0, real, m_natives.value(real)};
    }
    if (!fakeType.isKnown() || !realType.isKnown()) {
        return {{fake, 0, real, QStringLiteral("or its fake is not known")}};
    }
    Findings findings;
    for (const Member &member : document(fakeType.path).objects.at(fakeType.object).members) {
        if (except.contains(member.name)) {
            continue;
        }
        const Use use = find(realType, member.name);
        const auto report = [&](const QString &problem) {
            findings.append({fakeType.path, member.line, member.name, problem});
        };
        if (!use.isFound) {
            report(QStringLiteral("is not declared by %1").arg(nameOf(realType)));
        } else if (use.kind != member.kind) {
            report(
                QStringLiteral("is %1, but %2 in %3").arg(kindName(member.kind), kindName(use.kind), nameOf(realType)));
        } else if (member.kind != Member::Kind::Property
                   && !use.arguments.contains({member.minimumArguments, member.maximumArguments})) {
            report(QStringLiteral("takes %1, but %2 in %3")
                       .arg(argumentsText({{member.minimumArguments, member.maximumArguments}}),
                            argumentsText(use.arguments), nameOf(realType)));
        }
    }
    return findings;
}
